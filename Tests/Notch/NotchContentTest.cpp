#include "App/Notch/NotchContent.h"
#include "App/Meetings/MeetingTimes.h"
#include "Tests/Focus/FocusSetup.h"
#include "Tests/Meetings/TodaySetup.h"

#include <QTest>

using namespace Qt::StringLiterals;

struct Setup {
    NotchContent content() const
    {
        const MeetingTimes times(today.model.zone(), QLocale(u"en_GB"_s));
        return notchContent(focus.model, today.model, times);
    }

    void grant()
    {
        today.store.status = AuthorizationStatus::fullAccess;
        today.model.checkAuthorization();
    }

    FocusSetup focus;
    TodaySetup today;
};

class NotchContentTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anIdleTimerIsGray()
    {
        const Setup s;
        QCOMPARE(s.content().dot, NotchContent::Dot::stopped);
        QCOMPARE(s.content().title, u"Corvella"_s);
    }

    void aRunningFocusIsRed()
    {
        Setup s;
        s.focus.model.start();
        s.focus.tickAfter(61);
        QCOMPARE(s.content().dot, NotchContent::Dot::focus);
        QCOMPARE(s.content().title, u"23:59"_s);
    }

    void aPausedOneIsGrayWithItsTime()
    {
        Setup s;
        s.focus.model.start();
        s.focus.tickAfter(61);
        s.focus.model.pause();
        QCOMPARE(s.content().dot, NotchContent::Dot::stopped);
        QCOMPARE(s.content().title, u"23:59"_s);
    }

    void aRunningBreakIsGreen()
    {
        Setup s;
        s.focus.completePhase();
        QCOMPARE(s.content().dot, NotchContent::Dot::stopped);
        s.focus.model.start();
        QCOMPARE(s.content().dot, NotchContent::Dot::rest);
        QCOMPARE(s.content().title, u"05:00"_s);
    }

    void aLongBreakIsGreenToo()
    {
        Setup s;
        for (int i = 0; i < 7; ++i)
            s.focus.completePhase();
        QCOMPARE(s.focus.model.phase(), Phase::longBreak);
        s.focus.model.start();
        QCOMPARE(s.content().dot, NotchContent::Dot::rest);
    }

    void theTaskIsShownOrThatThereIsNone()
    {
        Setup s;
        QCOMPARE(s.content().task, u"No task set"_s);
        s.focus.model.setTaskName(u"Write"_s);
        QCOMPARE(s.content().task, u"Write"_s);
    }

    void beforeAccessIsAskedForItIsOff()
    {
        const Setup s;
        QCOMPARE(s.content().meeting, u"Meetings: calendar access off"_s);
    }

    void refusedAccessIsOffToo()
    {
        Setup s;
        s.today.store.status = AuthorizationStatus::denied;
        s.today.model.checkAuthorization();
        QCOMPARE(s.content().meeting, u"Meetings: calendar access off"_s);
    }

    void theNextMeetingIsShownWithItsTime()
    {
        Setup s;
        s.today.addTypicalDay();
        s.grant();
        QCOMPARE(s.content().meeting, u"Design review · 10:30"_s);
    }

    void aMeetingInProgressIsTheNextOne()
    {
        Setup s;
        s.today.addTypicalDay();
        s.grant();
        s.today.clock.time = s.today.at(11, 14);
        QCOMPARE(s.content().meeting, u"Design review · 10:30"_s);
    }

    void afterTheLastMeetingThereAreNoMore()
    {
        Setup s;
        s.today.addTypicalDay();
        s.grant();
        s.today.clock.time = s.today.at(20, 0);
        QCOMPARE(s.content().meeting, u"No more meetings today"_s);
    }

    void aTextOfAnyKindBecomesOneLine()
    {
        Setup s;
        s.focus.model.setTaskName(u"Write\nthe\0\t report\x01\r"_s);
        QCOMPARE(s.content().task, u"Write the report"_s);
        s.today.add(u"Design\u2028review\n"_s, s.today.at(10, 30), s.today.at(11, 0));
        s.grant();
        QCOMPARE(s.content().meeting, u"Design review · 10:30"_s);
    }

    void aTitleTurnsNothingAround()
    {
        Setup s;
        s.today.add(u"a\u202Eb"_s, s.today.at(10, 30), s.today.at(11, 0));
        s.grant();
        QCOMPARE(s.content().meeting, u"\u2068a\u202Eb\u2069 · 10:30"_s);
    }

    void anEndlessTextIsCut()
    {
        Setup s;
        s.focus.model.setTaskName(QString(1'000'000, u'W'));
        s.today.add(QString(1'000'000, u'M'), s.today.at(10, 30), s.today.at(11, 0));
        s.grant();
        QCOMPARE(s.content().task, QString(500, u'W'));
        QCOMPARE(s.content().meeting, QString(500, u'M') + u" · 10:30"_s);
    }

    void itIsSpokenWithTheDotInWords()
    {
        Setup s;
        const auto rest = u"; No task set; Meetings: calendar access off"_s;
        QCOMPARE(spoken(s.content()), u"Corvella, not running"_s + rest);
        s.focus.model.start();
        QCOMPARE(spoken(s.content()), u"25:00, focus"_s + rest);
        s.focus.tickAfter(1500);
        s.focus.model.start();
        QCOMPARE(spoken(s.content()), u"05:00, break"_s + rest);
    }
};

QTEST_GUILESS_MAIN(NotchContentTest)
#include "NotchContentTest.moc"
