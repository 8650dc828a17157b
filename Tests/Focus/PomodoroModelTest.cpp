#include "Tests/Focus/FocusSetup.h"

#include <QTest>

#include <csignal>
#include <limits>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Pairs = QList<std::pair<QString, QString>>;

using Setup = FocusSetup;

// Runs the body in a child process and tells whether it was aborted.
template <typename Body>
bool aborts(Body body)
{
    const pid_t child = fork();
    if (child == 0) {
        const rlimit none {};
        setrlimit(RLIMIT_CORE, &none);
        std::signal(SIGABRT, SIG_DFL); // The test driver would print a stack trace first.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        body();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
}

class PomodoroModelTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFirstRunHasTheDefaultLengths()
    {
        Setup s;
        QCOMPARE(s.model.focusMinutes(), 25);
        QCOMPARE(s.model.shortMinutes(), 5);
        QCOMPARE(s.model.longMinutes(), 15);
        QCOMPARE(s.model.timeString(), u"25:00"_s);
        QCOMPARE(s.model.taskName(), QString());
        QCOMPARE(s.model.phase(), Phase::focus);
        QVERIFY(!s.model.isActive());
        QCOMPARE(s.defaults.writes, 0);
    }

    void storedLengthsAndTaskAreLoaded()
    {
        Setup s({ { u"focusMinutes"_s, qint64 { 50 } }, { u"shortMinutes"_s, qint64 { 7 } },
            { u"longMinutes"_s, qint64 { 30 } }, { u"taskName"_s, u"Write"_s } });
        QCOMPARE(s.model.focusMinutes(), 50);
        QCOMPARE(s.model.shortMinutes(), 7);
        QCOMPARE(s.model.longMinutes(), 30);
        QCOMPARE(s.model.taskName(), u"Write"_s);
        QCOMPARE(s.model.remaining(), 3000);
    }

    void aStoredValueOfAnotherTypeGivesTheDefault()
    {
        Setup s({ { u"focusMinutes"_s, u"50"_s }, { u"shortMinutes"_s, 7.0 },
            { u"longMinutes"_s, true }, { u"taskName"_s, qint64 { 3 } } });
        QCOMPARE(s.model.focusMinutes(), 25);
        QCOMPARE(s.model.shortMinutes(), 5);
        QCOMPARE(s.model.longMinutes(), 15);
        QCOMPARE(s.model.taskName(), QString());
    }

    void aStoredLengthOutsideTheSteppersRangeIsUsedAsItIs()
    {
        Setup s({ { u"focusMinutes"_s, qint64 { 100'000 } } });
        QCOMPARE(s.model.timeString(), u"100000:00"_s);
    }

    void minutesAreNotCappedAtTwoDigits()
    {
        Setup s({ { u"focusMinutes"_s, qint64 { 100 } } });
        QCOMPARE(s.model.timeString(), u"100:00"_s);
    }

    void aLengthWithTooManySecondsIsFatal()
    {
        QVERIFY(aborts([] {
            Setup s({ { u"focusMinutes"_s, std::numeric_limits<qint64>::max() } });
        }));
        QVERIFY(!aborts([] { Setup s({ { u"focusMinutes"_s, qint64 { 1 } << 57 } }); }));
    }

    void anEndOutOfReachOfTheClockIsFatal()
    {
        QVERIFY(aborts([] {
            Setup s;
            s.model.start();
            s.tickAfter(-1e19);
        }));
        QVERIFY(aborts([] {
            Setup s;
            s.model.start();
            s.tickAfter(std::numeric_limits<double>::quiet_NaN());
        }));
    }

    void startingTicksTwiceASecond()
    {
        Setup s;
        s.model.start();
        QVERIFY(s.model.running());
        QVERIFY(s.ticker.isRunning());
        QCOMPARE(s.ticker.interval, 500ms);
    }

    void aSecondStartChangesNothing()
    {
        Setup s;
        s.model.start();
        s.clock.advance(10);
        s.model.start();
        s.ticker.fire();
        QCOMPARE(s.model.remaining(), 1490);
    }

    void pausingBeforeTheFirstTickLeavesThePhaseWhole()
    {
        Setup s;
        s.model.start();
        s.model.pause();
        QCOMPARE(s.model.remaining(), s.model.total());
        QVERIFY(!s.model.isActive());
        QVERIFY(!s.ticker.isRunning());
    }

    void pausingLaterKeepsTheTimeLeft()
    {
        Setup s;
        s.model.start();
        s.tickAfter(90.5);
        s.model.pause();
        s.clock.advance(1000);
        QCOMPARE(s.model.timeString(), u"23:30"_s);
        QVERIFY(s.model.isActive());
        s.model.start();
        s.tickAfter(10);
        QCOMPARE(s.model.timeString(), u"23:20"_s);
    }

    void theFirstSecondShowsTheWholeLength()
    {
        Setup s;
        s.model.start();
        s.tickAfter(0);
        QCOMPARE(s.model.timeString(), u"25:00"_s);
        s.tickAfter(0.999);
        QCOMPARE(s.model.timeString(), u"25:00"_s);
        s.tickAfter(0.001);
        QCOMPARE(s.model.timeString(), u"24:59"_s);
    }

    void thePhaseEndsExactlyAtItsEnd()
    {
        Setup s;
        s.model.start();
        s.tickAfter(1499.999);
        QCOMPARE(s.model.timeString(), u"00:01"_s);
        QVERIFY(s.model.running());
        s.tickAfter(0.001);
        QVERIFY(!s.model.running());
        QCOMPARE(s.model.phase(), Phase::shortBreak);
    }

    void readersHearOfTheTimeOnceASecond()
    {
        Setup s;
        s.model.start();
        s.tickAfter(0.75);
        int announcements = 0;
        connect(&s.model, &Model::willChange, this, [&] { ++announcements; });
        s.tickAfter(0.5);
        s.tickAfter(0.5);
        QCOMPARE(announcements, 1);
    }

    void aTickMadeAfterSleepCompletesAPhaseThatEndedMeanwhile()
    {
        Setup s;
        s.model.start();
        s.clock.advance(8 * 3600);
        Q_EMIT s.clock.jumped();
        QCOMPARE(s.model.sessions(), 1);
        QCOMPARE(s.model.phase(), Phase::shortBreak);
        QCOMPARE(s.model.timeString(), u"05:00"_s);
        QVERIFY(!s.model.running());
        QCOMPARE(s.sounds.played.size(), 1);
    }

    void aClockSetForwardShortensThePhase()
    {
        Setup s;
        s.model.start();
        s.clock.advance(600);
        Q_EMIT s.clock.jumped();
        QCOMPARE(s.model.timeString(), u"15:00"_s);
        QVERIFY(s.model.running());
    }

    void aClockSetBackLengthensThePhase()
    {
        Setup s;
        s.model.start();
        s.clock.advance(-600);
        Q_EMIT s.clock.jumped();
        QCOMPARE(s.model.timeString(), u"35:00"_s);
        QVERIFY(s.model.running());
    }

    void aClockThatJumpsWhileTheTimerStandsChangesNothing()
    {
        Setup s;
        s.clock.advance(8 * 3600);
        Q_EMIT s.clock.jumped();
        QCOMPARE(s.model.timeString(), u"25:00"_s);
        QCOMPARE(s.model.sessions(), 0);
    }

    void everyFourthCompletedSessionEarnsALongBreak()
    {
        Setup s;
        QList<Phase> breaks;
        for (int session = 0; session < 5; ++session) {
            s.completePhase();
            breaks << s.model.phase();
            s.completePhase();
            QCOMPARE(s.model.phase(), Phase::focus);
        }
        using enum Phase;
        QCOMPARE(
            breaks, (QList<Phase> { shortBreak, shortBreak, shortBreak, longBreak, shortBreak }));
        QCOMPARE(s.model.sessions(), 5);
    }

    void aCompletedPhaseIsFollowedByAWholeOneThatStands()
    {
        Setup s;
        s.completePhase();
        QCOMPARE(s.model.timeString(), u"05:00"_s);
        QVERIFY(!s.model.running());
        QVERIFY(!s.model.isActive());
        QVERIFY(!s.ticker.isRunning());
    }

    void skippingTheFirstFocusLeadsToAShortBreak()
    {
        Setup s;
        s.model.skip();
        QCOMPARE(s.model.phase(), Phase::shortBreak);
        QCOMPARE(s.model.sessions(), 0);
        QVERIFY(s.sounds.played.isEmpty());
        QVERIFY(s.notifier.notifications.isEmpty());
    }

    void skippingABreakLeadsToAWholeFocus()
    {
        Setup s;
        s.completePhase();
        s.model.start();
        s.tickAfter(60);
        s.model.skip();
        QCOMPARE(s.model.phase(), Phase::focus);
        QCOMPARE(s.model.timeString(), u"25:00"_s);
        QCOMPARE(s.model.sessions(), 1);
        QVERIFY(!s.model.running());
    }

    void skippingAFocusRightAfterALongBreakLeadsToAnother()
    {
        Setup s;
        for (int phase = 0; phase < 8; ++phase)
            s.completePhase();
        QCOMPARE(s.model.sessions(), 4);
        s.model.skip();
        QCOMPARE(s.model.phase(), Phase::longBreak);
        QCOMPARE(s.model.sessions(), 4);
    }

    void resettingStopsAndRestoresTheSamePhase()
    {
        Setup s;
        s.model.skip();
        s.model.start();
        s.tickAfter(100);
        s.model.reset();
        QCOMPARE(s.model.phase(), Phase::shortBreak);
        QCOMPARE(s.model.timeString(), u"05:00"_s);
        QVERIFY(!s.model.isActive());
        QVERIFY(!s.ticker.isRunning());
    }

    void aLengthSetWhileRunningAppliesFromTheNextArming()
    {
        Setup s;
        s.model.start();
        s.tickAfter(60);
        s.model.setFocusMinutes(50);
        QCOMPARE(s.defaults.integer(u"focusMinutes"_s), 50);
        QCOMPARE(s.model.timeString(), u"24:00"_s);
        s.tickAfter(60);
        QCOMPARE(s.model.timeString(), u"23:00"_s);
        s.model.reset();
        QCOMPARE(s.model.timeString(), u"50:00"_s);
    }

    void aLengthChangedWhileRunningLeavesAStoppedPhaseActive()
    {
        Setup s;
        s.model.start();
        s.model.setFocusMinutes(50);
        s.model.pause();
        QVERIFY(s.model.isActive());
    }

    void anyLengthChangeArmsAStandingPhaseAfresh()
    {
        Setup s;
        s.model.skip();
        s.model.start();
        s.tickAfter(100);
        s.model.pause();
        s.model.setFocusMinutes(30);
        QCOMPARE(s.model.phase(), Phase::shortBreak);
        QCOMPARE(s.model.timeString(), u"05:00"_s);
    }

    void everyLengthIsStoredUnderItsKey()
    {
        Setup s;
        s.model.setFocusMinutes(1);
        s.model.setShortMinutes(2);
        s.model.setLongMinutes(3);
        QCOMPARE(s.defaults.integer(u"focusMinutes"_s), 1);
        QCOMPARE(s.defaults.integer(u"shortMinutes"_s), 2);
        QCOMPARE(s.defaults.integer(u"longMinutes"_s), 3);
    }

    void everyAssignmentOfTheTaskIsStored()
    {
        Setup s;
        for (const auto& name : { u"W"_s, u"Wr"_s, u"Wr"_s })
            s.model.setTaskName(name);
        QCOMPARE(s.defaults.writes, 3);
        QCOMPARE(s.defaults.text(u"taskName"_s), u"Wr"_s);
    }

    void aPhaseThatHasRunOutIsArmedAgainByStart()
    {
        Setup s({ { u"focusMinutes"_s, qint64 { 0 } } });
        s.model.setFocusMinutes(0);
        QCOMPARE(s.model.remaining(), 0);
        s.model.start();
        s.model.setFocusMinutes(2);
        s.model.pause();
        QCOMPARE(s.model.remaining(), 0);
        s.model.start();
        QCOMPARE(s.model.remaining(), 120);
    }

    void aLengthOfZeroCompletesAtTheFirstTick()
    {
        Setup s({ { u"focusMinutes"_s, qint64 { 0 } } });
        s.model.start();
        QVERIFY(s.model.running());
        QCOMPARE(s.model.remaining(), 0);
        s.tickAfter(0.5);
        QCOMPARE(s.model.phase(), Phase::shortBreak);
        QCOMPARE(s.model.sessions(), 1);
    }

    void progressGrowsFromZeroToOne()
    {
        Setup s;
        QCOMPARE(s.model.progress(), 0.0);
        s.model.start();
        s.tickAfter(375);
        QCOMPARE(s.model.progress(), 0.25);
        s.tickAfter(1124.5);
        QVERIFY(s.model.progress() > 0.999);
    }

    void aPhaseOfNoLengthHasNoProgress()
    {
        Setup s({ { u"focusMinutes"_s, qint64 { 0 } } });
        QCOMPARE(s.model.progress(), 0.0);
    }

    void theEndOfAFocusIsHeardAndNotified()
    {
        Setup s;
        s.completePhase();
        QCOMPARE(s.sounds.played, QStringList { u"Glass"_s });
        QCOMPARE(s.notifier.notifications,
            (Pairs { { u"Focus session complete"_s, u"Time for a break."_s } }));
    }

    void aNamedTaskIsPraisedWithItsNameUnchanged()
    {
        Setup s;
        s.model.setTaskName(u"the \"C:\\\" <b>mess</b>"_s);
        s.completePhase();
        QCOMPARE(s.notifier.notifications,
            (Pairs { { u"Focus session complete"_s,
                u"Nice work on “the \"C:\\\" <b>mess</b>”. Time for a break."_s } }));
    }

    void theEndOfEitherBreakAsksForTheNextFocus()
    {
        Setup s;
        s.model.setTaskName(u"Write"_s);
        s.model.skip();
        s.completePhase();
        QCOMPARE(s.notifier.notifications,
            (Pairs { { u"Break over"_s, u"Ready for the next focus session?"_s } }));
        QCOMPARE(s.model.sessions(), 0);
    }

    void everyChangeIsAnnouncedBeforeItIsStored()
    {
        Setup s;
        QStringList seen;
        connect(&s.model, &Model::willChange, this, [&] { seen << s.model.taskName(); });
        s.model.setTaskName(u"Write"_s);
        QCOMPARE(seen, QStringList { QString() });
    }

    void phasesAreKnownByTheirTitles()
    {
        for (const auto& [phase, title] : { std::pair { Phase::focus, u"Focus"_s },
                 { Phase::shortBreak, u"Short break"_s }, { Phase::longBreak, u"Long break"_s } }) {
            QCOMPARE(rawValue(phase), title);
            QCOMPARE(phaseFromRawValue(title), phase);
        }
        QVERIFY(!phaseFromRawValue(u"focus"_s));
    }
};

QTEST_GUILESS_MAIN(PomodoroModelTest)
#include "PomodoroModelTest.moc"
