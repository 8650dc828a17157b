#include "App/Platform/Linux/Machine/LinkDump.h"
#include "Tests/Platform/Linux/Machine/LinkMessages.h"

#include <QTest>

#include <memory>

using namespace LinkMessages;
using namespace Qt::StringLiterals;

namespace {

using State = LinkDump::State;

constexpr std::uint32_t asked = 7;
constexpr std::uint64_t wrap = std::uint64_t { 1 } << 32U;

// Copied to the byte, so that a sanitizer sees a read behind the end.
LinkDump dumpOf(const QByteArray& datagram)
{
    const auto size = static_cast<std::size_t>(datagram.size());
    const auto copy = std::make_unique<std::byte[]>(size);
    std::copy_n(reinterpret_cast<const std::byte*>(datagram.data()), size, copy.get());
    LinkDump dump(asked);
    dump.take({ copy.get(), size });
    return dump;
}

NetworkBytes countersOf(const QByteArray& links)
{
    return dumpOf(links + done(asked)).counters().value_or(NetworkBytes());
}

}

class LinkDumpTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void countsLinksThatAreUpAndNoLoopback();
    void aNameIsNewWithItsIndex();
    void countersAreCutTo32Bits();
    void oldCountersDoWhereThereAreNoOthers();
    void oldCountersStandBackInEitherOrder();
    void aLinkWithoutCountersIsLeftOut();
    void manyDatagramsAreOneAnswer();
    void linksOfWhichNoneIsUpAreAnAnswer();
    void noLinkAtAllIsNoAnswer();
    void answersToOthersArePassedOver();
    void anInterruptedAnswerIsNone();
    void aFailureIsNoAnswer_data();
    void aFailureIsNoAnswer();
    void isNeverWholeWhenCutOff();
    void outlivesEveryWrongByte();
};

void LinkDumpTest::countsLinksThatAreUpAndNoLoopback()
{
    const auto counted
        = countersOf(link(asked, 1, IFF_UP | IFF_LOOPBACK, name("lo") + counters(1, 2))
            + link(asked, 2, IFF_UP | IFF_RUNNING, name("eth0") + counters(30, 40))
            + link(asked, 3, IFF_BROADCAST, name("eth1") + counters(5, 6))
            + link(asked, 4, IFF_UP | IFF_POINTOPOINT, name("tun0") + counters(70, 80)));
    QCOMPARE(counted.size(), 2);
    QCOMPARE(counted.value(u"eth0#2"_s).received, 30U);
    QCOMPARE(counted.value(u"eth0#2"_s).sent, 40U);
    QCOMPARE(counted.value(u"tun0#4"_s).received, 70U);
    QCOMPARE(counted.value(u"tun0#4"_s).sent, 80U);
}

void LinkDumpTest::aNameIsNewWithItsIndex()
{
    const auto before = countersOf(link(asked, 2, IFF_UP, name("eth0") + counters(1, 2)));
    const auto after = countersOf(link(asked, 3, IFF_UP, name("eth0") + counters(1, 2)));
    QCOMPARE(before.size(), 1);
    QCOMPARE(after.size(), 1);
    QVERIFY(before.keys() != after.keys());
}

void LinkDumpTest::countersAreCutTo32Bits()
{
    const auto counted = countersOf(upLink(asked, wrap + 5, 3 * wrap - 1));
    QCOMPARE(counted.value(u"eth0#2"_s).received, 5U);
    QCOMPARE(counted.value(u"eth0#2"_s).sent, 4294967295U);
}

void LinkDumpTest::oldCountersDoWhereThereAreNoOthers()
{
    const auto counted = countersOf(link(asked, 2, IFF_UP, name("eth0") + oldCounters(50, 60)));
    QCOMPARE(counted.value(u"eth0#2"_s).received, 50U);
    QCOMPARE(counted.value(u"eth0#2"_s).sent, 60U);
}

void LinkDumpTest::oldCountersStandBackInEitherOrder()
{
    const auto before = oldCounters(1, 2) + counters(50, 60);
    const auto after = counters(50, 60) + oldCounters(1, 2);
    for (const auto& both : { before, after }) {
        const auto counted = countersOf(link(asked, 2, IFF_UP, name("eth0") + both));
        QCOMPARE(counted.value(u"eth0#2"_s).received, 50U);
        QCOMPARE(counted.value(u"eth0#2"_s).sent, 60U);
    }
}

void LinkDumpTest::aLinkWithoutCountersIsLeftOut()
{
    const auto shortOnes = attribute(IFLA_STATS64, "short") + attribute(IFLA_STATS, "short");
    const auto counted = dumpOf(link(asked, 2, IFF_UP, name("eth0"))
        + link(asked, 3, IFF_UP, name("eth1") + shortOnes) + done(asked));
    QVERIFY(counted.counters());
    QVERIFY(counted.counters()->isEmpty());
}

void LinkDumpTest::manyDatagramsAreOneAnswer()
{
    LinkDump dump(asked);
    for (int index = 1; index <= 300; ++index) {
        const auto one = link(asked, index, IFF_UP, name("eth0") + counters(1, 2));
        dump.take(std::as_bytes(std::span(one.data(), static_cast<std::size_t>(one.size()))));
        QCOMPARE(dump.state(), State::unfinished);
        QVERIFY(!dump.counters());
    }
    const auto end = done(asked);
    dump.take(std::as_bytes(std::span(end.data(), static_cast<std::size_t>(end.size()))));
    QCOMPARE(dump.state(), State::whole);
    QCOMPARE(dump.counters()->size(), 300);
}

void LinkDumpTest::linksOfWhichNoneIsUpAreAnAnswer()
{
    const auto dump = dumpOf(link(asked, 1, IFF_UP | IFF_LOOPBACK, name("lo") + counters(1, 2))
        + link(asked, 2, 0, name("eth0") + counters(3, 4)) + done(asked));
    QVERIFY(dump.counters());
    QVERIFY(dump.counters()->isEmpty());
}

void LinkDumpTest::noLinkAtAllIsNoAnswer()
{
    const auto dump = dumpOf(done(asked));
    QCOMPARE(dump.state(), State::whole);
    QVERIFY(!dump.counters());
}

void LinkDumpTest::answersToOthersArePassedOver()
{
    const auto stale = upLink(asked - 1, 1, 2) + error(asked - 1) + done(asked - 1);
    const auto dump = dumpOf(stale + upLink(asked, 30, 40) + stale + done(asked));
    QVERIFY(dump.counters());
    QCOMPARE(dump.counters()->value(u"eth0#2"_s).received, 30U);
}

void LinkDumpTest::anInterruptedAnswerIsNone()
{
    const auto hint = message(NLMSG_NOOP, asked, NLM_F_DUMP_INTR, {});
    for (const auto& end : { hint + done(asked), done(asked, NLM_F_DUMP_INTR) }) {
        const auto dump = dumpOf(upLink(asked, 1, 2) + end);
        QCOMPARE(dump.state(), State::interrupted);
        QVERIFY(!dump.counters());
    }
}

void LinkDumpTest::aFailureIsNoAnswer_data()
{
    QTest::addColumn<QByteArray>("failure");
    QTest::newRow("an error") << error(asked);
    QTest::newRow("lost messages") << message(NLMSG_OVERRUN, asked, 0, {});
    QTest::newRow("given up in the end") << done(asked, 0, -EMSGSIZE);
    QTest::newRow("a message of no length") << QByteArray(sizeof(nlmsghdr), '\0');
    const auto attribute = QByteArray(sizeof(rtattr), '\0');
    QTest::newRow("an attribute of no length") << link(asked, 3, IFF_UP, attribute);
    auto beyond = name("eth0");
    beyond[0] = static_cast<char>(beyond.size() + 1);
    QTest::newRow("an attribute beyond the end") << link(asked, 3, IFF_UP, beyond);
    auto longer = upLink(asked, 1, 2);
    longer[0] = static_cast<char>(longer[0] + 1);
    QTest::newRow("a message beyond the end") << longer;
    QTest::newRow("no link in it") << message(RTM_NEWLINK, asked, 0, "short");
}

void LinkDumpTest::aFailureIsNoAnswer()
{
    QFETCH(QByteArray, failure);
    const auto dump = dumpOf(upLink(asked, 1, 2) + failure);
    QCOMPARE(dump.state(), State::broken);
    QVERIFY(!dump.counters());
}

void LinkDumpTest::isNeverWholeWhenCutOff()
{
    const auto whole = upLink(asked, 1, 2) + upLink(asked, 3, 4) + done(asked);
    for (qsizetype size = 0; size < whole.size(); ++size)
        QVERIFY(!dumpOf(whole.first(size)).counters());
    QVERIFY(dumpOf(whole).counters());
}

void LinkDumpTest::outlivesEveryWrongByte()
{
    const auto right = upLink(asked, 1, 2) + done(asked);
    for (qsizetype at = 0; at < right.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            auto wrong = right;
            wrong[at] = static_cast<char>(value);
            const auto counted = dumpOf(wrong).counters();
            QVERIFY(!counted || counted->size() <= 1);
        }
    }
}

QTEST_GUILESS_MAIN(LinkDumpTest)
#include "LinkDumpTest.moc"
