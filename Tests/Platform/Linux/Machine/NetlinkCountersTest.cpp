#include "App/Platform/Linux/Machine/NetlinkCounters.h"
#include "Tests/Platform/Linux/Machine/LinkMessages.h"

#include <QDir>
#include <QTest>

#include <sys/socket.h>
#include <unistd.h>

using namespace LinkMessages;
using namespace Qt::StringLiterals;

namespace {

// Stands in for the kernel: what it will say through each socket lies there from the start.
struct Setup {
    explicit Setup(const QList<QByteArrayList>& sockets)
        : answers(sockets)
    {
    }

    ~Setup()
    {
        for (const int end : std::as_const(ends))
            ::close(end);
    }

    Q_DISABLE_COPY_MOVE(Setup)

    int open()
    {
        if (answers.isEmpty())
            return -1;
        int pair[2] {};
        if (::socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, pair) != 0)
            return -1;
        ends << pair[1];
        for (const auto& datagram : answers.takeFirst())
            ::send(pair[1], datagram.data(), static_cast<std::size_t>(datagram.size()), 0);
        return pair[0];
    }

    // The header of the next request that came through a socket.
    nlmsghdr request(qsizetype socket) const
    {
        nlmsghdr head {};
        ::recv(ends[socket], &head, sizeof head, MSG_DONTWAIT);
        return head;
    }

    // What the subject found for the only link that is ever told of; 0 for nothing.
    std::uint32_t received()
    {
        const auto network = counters.read();
        return network ? network->value(u"eth0#2"_s).received : 0;
    }

    QList<QByteArrayList> answers;
    QList<int> ends;
    NetlinkCounters counters { [this] { return open(); } };
};

auto openDescriptors()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System).size();
}

}

class NetlinkCountersTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void asksThisKernelAgainAndAgain();
    void asksForAllLinksThroughOneSocket();
    void staleAnswersArePassedOver();
    void anInterruptedAnswerIsAskedForOnceMore();
    void twoInterruptedAnswersAreNone();
    void anotherSocketIsOpenedAfter_data();
    void anotherSocketIsOpenedAfter();
    void twoFailuresAreNoAnswer();
    void silenceIsNotWaitedFor();
    void noSocketIsNoAnswer();
};

void NetlinkCountersTest::asksThisKernelAgainAndAgain()
{
    const int probe = NetlinkCounters::openSocket();
    if (probe < 0)
        QSKIP("No netlink sockets here: the kernel was not asked.");
    ::close(probe);
    const auto before = openDescriptors();
    {
        NetlinkCounters counters;
        for (int time = 0; time < 20; ++time)
            QVERIFY(counters.read());
        QCOMPARE(openDescriptors(), before + 1);
    }
    QCOMPARE(openDescriptors(), before);
}

void NetlinkCountersTest::asksForAllLinksThroughOneSocket()
{
    Setup s({ { upLink(1, 30, 40) + done(1), upLink(2, 50, 60), done(2) } });
    QCOMPARE(s.received(), 30U);
    QCOMPARE(s.received(), 50U);
    for (std::uint32_t sequence = 1; sequence <= 2; ++sequence) {
        const auto request = s.request(0);
        QCOMPARE(request.nlmsg_seq, sequence);
        QCOMPARE(request.nlmsg_type, RTM_GETLINK);
        QCOMPARE(request.nlmsg_flags, NLM_F_REQUEST | NLM_F_DUMP);
    }
}

void NetlinkCountersTest::staleAnswersArePassedOver()
{
    Setup s({ { upLink(0, 10, 20) + done(0), error(0), upLink(1, 30, 40) + done(1) } });
    QCOMPARE(s.received(), 30U);
}

void NetlinkCountersTest::anInterruptedAnswerIsAskedForOnceMore()
{
    Setup s({ { upLink(1, 10, 20) + done(1, NLM_F_DUMP_INTR), upLink(2, 30, 40) + done(2) } });
    QCOMPARE(s.received(), 30U);
}

void NetlinkCountersTest::twoInterruptedAnswersAreNone()
{
    Setup s(
        { { done(1, NLM_F_DUMP_INTR), done(2, NLM_F_DUMP_INTR), upLink(3, 30, 40) + done(3) } });
    QVERIFY(!s.counters.read());
    QCOMPARE(s.received(), 30U);
}

void NetlinkCountersTest::anotherSocketIsOpenedAfter_data()
{
    QTest::addColumn<QByteArrayList>("answer");
    const auto row
        = [](const char* name, const QByteArrayList& answer) { QTest::newRow(name) << answer; };
    row("an error", { error(1) });
    row("a broken message", { upLink(1, 10, 20).chopped(4) });
    row("half an answer", { upLink(1, 10, 20) });
    // Cut off between two messages, which looks like a whole datagram.
    constexpr qsizetype buffer = 32'768;
    const auto attributes = name("eth0") + counters(10, 20);
    const auto unpadded = link(1, 2, IFF_UP, attributes + attribute(IFLA_ALT_IFNAME, {})).size();
    const auto padding = attribute(IFLA_ALT_IFNAME, QByteArray(buffer - unpadded, 'x'));
    const auto largest = link(1, 2, IFF_UP, attributes + padding);
    QCOMPARE(largest.size(), buffer);
    row("a datagram beyond the buffer", { largest + upLink(1, 10, 20), done(1) });
}

void NetlinkCountersTest::anotherSocketIsOpenedAfter()
{
    QFETCH(QByteArrayList, answer);
    Setup s({ answer, { upLink(2, 30, 40) + done(2) } });
    QCOMPARE(s.received(), 30U);
}

void NetlinkCountersTest::twoFailuresAreNoAnswer()
{
    Setup s({ { error(1) }, { error(2) }, { upLink(3, 30, 40) + done(3) } });
    const auto before = openDescriptors();
    QVERIFY(!s.counters.read());
    QCOMPARE(openDescriptors(), before + s.ends.size()); // Only this side's are still open.
    QCOMPARE(s.received(), 30U);
}

void NetlinkCountersTest::silenceIsNotWaitedFor()
{
    Setup s({ {}, {}, { upLink(3, 30, 40) + done(3) } });
    QVERIFY(!s.counters.read());
    QCOMPARE(s.received(), 30U);
}

void NetlinkCountersTest::noSocketIsNoAnswer()
{
    Setup s({});
    QVERIFY(!s.counters.read());
    s.answers = { { upLink(3, 30, 40) + done(3) } };
    QCOMPARE(s.received(), 30U);
}

QTEST_GUILESS_MAIN(NetlinkCountersTest)
#include "NetlinkCountersTest.moc"
