#include "App/Platform/Linux/Session/EndSignals.h"

#include <QSignalSpy>
#include <QTest>

#include <csignal>

namespace {

auto handlerOf(int signal)
{
    struct sigaction current { };
    sigaction(signal, nullptr, &current);
    return current.sa_handler;
}

}

class EndSignalsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anEndingIsHeardAndSurvived_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("the session ends") << SIGTERM;
        QTest::newRow("a key in the terminal") << SIGINT;
        QTest::newRow("the terminal closes") << SIGHUP;
    }

    void anEndingIsHeardAndSurvived()
    {
        QFETCH(int, signal);
        EndSignals signals;
        QSignalSpy received(&signals, &EndSignals::received);
        QCOMPARE(raise(signal), 0);
        QTRY_COMPARE(received.size(), 1);
    }

    void theSameEndingAgainIsFinal()
    {
        const EndSignals signals;
        QVERIFY(handlerOf(SIGTERM) != SIG_DFL);
        QCOMPARE(raise(SIGTERM), 0);
        QVERIFY(handlerOf(SIGTERM) == SIG_DFL);
        QVERIFY(handlerOf(SIGINT) != SIG_DFL);
    }

    void whatWasIgnoredFromTheStartStaysIgnored()
    {
        std::signal(SIGHUP, SIG_IGN);
        {
            const EndSignals signals;
            QVERIFY(handlerOf(SIGHUP) == SIG_IGN);
        }
        QVERIFY(handlerOf(SIGHUP) == SIG_IGN);
        std::signal(SIGHUP, SIG_DFL);
    }

    void nothingIsHeldAfterwards()
    {
        {
            const EndSignals signals;
            QVERIFY(handlerOf(SIGTERM) != SIG_DFL);
        }
        QVERIFY(handlerOf(SIGTERM) == SIG_DFL);
    }
};

QTEST_GUILESS_MAIN(EndSignalsTest)
#include "EndSignalsTest.moc"
