#include "App/Platform/Linux/Calendar/HelperEventExpander.h"
#include "App/Platform/Linux/Calendar/ExpanderPipe.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

struct Setup {
    explicit Setup(const QString& helper = QStringLiteral(CORVELLA_HELPERS_DIR "/expand-events"),
        std::chrono::milliseconds longestRun = 4s)
        : expander(helper, longestRun)
    {
    }

    static EventExpander::Request request(const QString& source, const QByteArray& uid = "event")
    {
        EventExpander::Request request;
        request.start = Moment(std::chrono::seconds(1774738800));
        request.end = Moment(std::chrono::seconds(1774821600));
        request.source = source;
        request.text
            = "BEGIN:VEVENT\r\nUID:" + uid + "\r\nDTSTART:20260329T100000Z\r\nEND:VEVENT\r\n";
        return request;
    }

    void expand(const EventExpander::Request& request)
    {
        expander.expand(request, &context, [this](const auto& result) {
            answers << (result && !result->events.isEmpty()
                    ? result->events.first().identifier.value_or(QString())
                    : result ? u"none"_s
                             : u"absent"_s);
            last = result;
        });
    }

    QObject context;
    HelperEventExpander expander;
    QStringList answers;
    std::optional<EventExpander::Result> last;
};

class HelperEventExpanderTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void answersEveryRequestInTurn()
    {
        Setup s;
        s.expand(Setup::request(u"one"_s));
        s.expand(Setup::request(u"two"_s));
        QVERIFY(s.answers.isEmpty());
        QTRY_COMPARE(s.answers, QStringList({ u"one\nevent\n"_s, u"two\nevent\n"_s }));
        s.expand(Setup::request(u"three"_s));
        QTRY_COMPARE(s.answers.size(), 3);
    }

    void aNewerRequestTakesThePlaceOfOneThatWaits()
    {
        Setup s;
        s.expand(Setup::request(u"one"_s));
        s.expand(Setup::request(u"two"_s, "old"));
        s.expand(Setup::request(u"three"_s));
        s.expand(Setup::request(u"two"_s, "new"));
        QTRY_COMPARE(
            s.answers, QStringList({ u"one\nevent\n"_s, u"two\nnew\n"_s, u"three\nevent\n"_s }));
    }

    void nothingIsToldToWhoIsGone()
    {
        Setup s;
        auto gone = std::make_unique<QObject>();
        int answers = 0;
        const auto count = [&](const auto&) { ++answers; };
        s.expander.expand(Setup::request(u"one"_s), gone.get(), count);
        QTest::qWait(0);
        s.expander.expand(Setup::request(u"two"_s), gone.get(), count);
        gone.reset();
        s.expand(Setup::request(u"three"_s));
        QTRY_COMPARE(s.answers, QStringList(u"three\nevent\n"_s));
        QCOMPARE(answers, 0);
    }

    void aLongTextHoldsNobodyUp()
    {
        Setup s;
        auto request = Setup::request(u"source"_s);
        request.text += QByteArray("X:").leftJustified(8 * 1024 * 1024, 'x');
        QElapsedTimer elapsed;
        elapsed.start();
        s.expand(request);
        QTest::qWait(0);
        QVERIFY2(elapsed.elapsed() < 150, QByteArray::number(elapsed.elapsed()));
        QTRY_COMPARE(s.answers, QStringList(u"source\nevent\n"_s));
    }

    void allOfAnEventArrives()
    {
        Setup s;
        auto request = Setup::request(u"source"_s);
        request.text
            = "BEGIN:VEVENT\r\nUID:u\r\nDTSTART;TZID=None:20260329T120000\r\nDURATION:"
              "PT1H\r\nSUMMARY:Ä\r\nLOCATION:l\r\n"
              "DESCRIPTION:n://\r\nURL:a\r\nEND:VEVENT\r\nBEGIN:VEVENT\r\nDTSTART;VALUE=DATE:"
              "20260329\r\nEND:VEVENT\r\n";
        s.expand(request);
        QTRY_VERIFY(s.last);
        QCOMPARE(s.last->unknownZones, QStringList(u"None"_s));
        QVERIFY(s.last->isComplete);
        QCOMPARE(s.last->events.size(), 2);
        QVERIFY(s.last->events[0].isAllDay && !s.last->events[0].identifier
            && !s.last->events[0].title);
        const auto event = s.last->events[1];
        QCOMPARE(QStringList({ *event.title, *event.location, *event.notes, *event.url }),
            QStringList({ u"Ä"_s, u"l"_s, u"n://"_s, u"a"_s }));
        QCOMPARE(event.end - event.start, Moment::duration(3600));
        QCOMPARE(ExpanderPipe::result(ExpanderPipe::answer(*s.last))->events, s.last->events);
    }

    void aHelperThatFailsGivesNoAnswer_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::newRow("ends with an error") << QByteArray("cat >/dev/null; exit 1");
        QTest::newRow("crashes") << QByteArray("kill -SEGV $$");
        QTest::newRow("is killed") << QByteArray("kill -KILL $$");
        QTest::newRow("says nothing") << QByteArray("cat >/dev/null");
        QTest::newRow("talks nonsense") << QByteArray("cat >/dev/null; echo nonsense");
        QTest::newRow("reads nothing") << QByteArray("exec 0<&-; exit 0");
        QTest::newRow("answers, then fails")
            << QByteArray(CORVELLA_HELPERS_DIR "/expand-events; exit 3");
        QTest::newRow("answers, then talks on")
            << QByteArray(CORVELLA_HELPERS_DIR "/expand-events; echo more");
        QTest::newRow("breaks off")
            << QByteArray(CORVELLA_HELPERS_DIR "/expand-events | head -c 60");
        QTest::newRow("never stops talking") << QByteArray("exec cat /dev/zero");
        QTest::newRow("claims too much")
            << QByteArray("cat >/dev/null; printf 'CORV\\1\\377\\377\\377\\377'");
    }

    void aHelperThatFailsGivesNoAnswer()
    {
        QFETCH(const QByteArray, script);
        Setup s(helper(script));
        s.expand(Setup::request(u"one"_s));
        s.expand(Setup::request(u"two"_s));
        QTRY_COMPARE(s.answers, QStringList({ u"absent"_s, u"absent"_s }));
    }

    void aHelperThatIsMissingGivesNoAnswer()
    {
        Setup s(u"/nonexistent/expand-events"_s);
        s.expand(Setup::request(u"one"_s));
        s.expand(Setup::request(u"two"_s));
        QVERIFY(s.answers.isEmpty());
        QTRY_COMPARE(s.answers, QStringList({ u"absent"_s, u"absent"_s }));
    }

    void aHelperThatHangsIsEnded()
    {
        Setup s(helper("echo $$ >\"$0.pid\"; exec sleep 60"), 1s);
        QElapsedTimer elapsed;
        elapsed.start();
        s.expand(Setup::request(u"one"_s));
        QTRY_COMPARE(s.answers, QStringList(u"absent"_s));
        QVERIFY(elapsed.elapsed() >= 900);
        QFile pid(m_dir.filePath(u"helper.pid"_s));
        QVERIFY(pid.open(QIODevice::ReadOnly));
        const auto process = u"/proc/%1"_s.arg(QString::fromLatin1(pid.readAll().trimmed()));
        QTRY_VERIFY(!QFile::exists(process));
    }

    void leavesNoProcessBehind()
    {
        auto s = std::make_unique<Setup>(helper("echo $$ >\"$0.pid\"; exec sleep 60"));
        QFile pid(m_dir.filePath(u"helper.pid"_s));
        s->expand(Setup::request(u"one"_s));
        QTRY_VERIFY(pid.exists() && pid.size() > 0);
        s.reset();
        QVERIFY(pid.open(QIODevice::ReadOnly));
        QVERIFY(!QFile::exists(u"/proc/%1"_s.arg(QString::fromLatin1(pid.readAll().trimmed()))));
    }

private:
    QString helper(const QByteArray& script)
    {
        const auto path = m_dir.filePath(u"helper"_s);
        QFile::remove(path + u".pid"_s);
        QFile::remove(path);
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write("#!/bin/sh\n" + script + '\n');
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        return path;
    }

    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(HelperEventExpanderTest)
#include "HelperEventExpanderTest.moc"
