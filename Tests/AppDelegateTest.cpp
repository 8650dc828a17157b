#include "App/AppDelegate.h"
#include "App/Notch/NotchController.h"
#include "App/Notch/NotchPanel.h"
#include "Tests/Fakes/FakePopoverWindow.h"
#include "Tests/Fakes/FakeScreens.h"
#include "Tests/Fakes/FakeStatusItem.h"
#include "Tests/Focus/FocusSetup.h"
#include "Tests/Meetings/MeetingsSetup.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

struct BarePanel final : NotchPanel {
    void orderFront() override { }
    void setFrame(const QRect&, bool) override { }
};

struct Setup {
    std::unique_ptr<NotchController> makeNotch()
    {
        ++notches;
        wasShownBeforeNotch = item.shown;
        checksBeforeNotch = meetings.store.checks;
        return std::make_unique<NotchController>(focus.defaults, screens,
            [](NotchState&, const auto&) { return std::make_unique<BarePanel>(); });
    }

    QString title() const { return item.titles.last().text; }

    void launch()
    {
        delegate.applicationDidFinishLaunching();
        QCoreApplication::processEvents();
    }

    FocusSetup focus;
    MeetingsSetup meetings;
    FakeStatusItem item;
    FakePopoverWindow popover;
    FakeScreens screens;
    int notches = 0;
    bool wasShownBeforeNotch = false;
    int checksBeforeNotch = -1;
    AppDelegate delegate { item, popover, focus.model, meetings.model,
        [this] { return makeNotch(); } };
};

class AppDelegateTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void launchingPutsUpTheItemWithTheCircle()
    {
        Setup s;
        s.delegate.applicationDidFinishLaunching();
        QVERIFY(s.item.shown);
        QCOMPARE(s.item.titles.size(), 1);
        QCOMPARE(s.title(), u"●"_s);
        QVERIFY(!s.popover.shown);
    }

    void startingTheTimerShowsTheTime()
    {
        Setup s;
        s.launch();
        s.focus.model.start();
        QCoreApplication::processEvents();
        QCOMPARE(s.title(), u"25:00"_s);
        s.focus.tickAfter(1);
        QCoreApplication::processEvents();
        QCOMPARE(s.title(), u"24:59"_s);
    }

    void theTitleIsReadAfterTheChangeAndOnlyOnce()
    {
        Setup s;
        s.launch();
        s.focus.model.start();
        QCOMPARE(s.item.titles.size(), 1);
        s.focus.tickAfter(1);
        s.focus.model.pause();
        QCoreApplication::processEvents();
        QCOMPARE(s.item.titles.size(), 2);
        QCOMPARE(s.title(), u"24:59"_s);
    }

    void pausingKeepsTheTimeAndResettingBringsTheCircleBack()
    {
        Setup s;
        s.launch();
        s.focus.model.start();
        s.focus.tickAfter(1);
        s.focus.model.pause();
        QCoreApplication::processEvents();
        QCOMPARE(s.title(), u"24:59"_s);
        s.focus.model.reset();
        QCoreApplication::processEvents();
        QCOMPARE(s.title(), u"●"_s);
    }

    void aPhaseThatEndsBringsTheCircleAndItsBreakTheCup()
    {
        Setup s;
        s.launch();
        s.focus.completePhase();
        QCoreApplication::processEvents();
        QCOMPARE(s.title(), u"●"_s);
        s.focus.model.start();
        s.focus.tickAfter(1);
        QCoreApplication::processEvents();
        QCOMPARE(s.title(), u"\u2615\uFE0E 04:59"_s);
    }

    void pressingTheItemOpensThePopoverAtItAndClosesItAgain()
    {
        Setup s;
        s.launch();
        Q_EMIT s.item.activated();
        QVERIFY(s.popover.shown);
        QCOMPARE(s.popover.anchor, s.item.place);
        Q_EMIT s.item.activated();
        QVERIFY(!s.popover.shown);
    }

    void askingForThePopoverNeverClosesIt()
    {
        Setup s;
        s.launch();
        s.delegate.showPopover();
        s.delegate.showPopover();
        QVERIFY(s.popover.shown);
        QCOMPARE(s.popover.shows, 1);
    }

    void accessToTheCalendarGrantedEarlierLoadsToday()
    {
        Setup s;
        s.meetings.store.status = AuthorizationStatus::fullAccess;
        s.meetings.store.stored = { s.meetings.event(u"a"_s, 9, 10) };
        s.launch();
        QVERIFY(s.meetings.model.authorized());
        QCOMPARE(s.meetings.titles(), QStringList { u"a"_s });
    }

    void accessToTheCalendarRefusedEarlierIsKnown()
    {
        Setup s;
        s.meetings.store.status = AuthorizationStatus::denied;
        s.launch();
        QVERIFY(s.meetings.model.denied());
        QVERIFY(s.meetings.store.queries.isEmpty());
    }

    void accessToTheCalendarIsNeverAskedForAtLaunch()
    {
        Setup s;
        s.launch();
        QCOMPARE(s.meetings.store.checks, 1);
        QVERIFY(!s.meetings.store.pendingRequest);
        QVERIFY(!s.meetings.model.authorized() && !s.meetings.model.denied());
    }

    void theItemIsUpBeforeTheCalendarIsAsked()
    {
        Setup s;
        bool wasShown = false;
        connect(&s.meetings.model, &Model::willChange, this, [&] { wasShown = s.item.shown; });
        s.meetings.store.status = AuthorizationStatus::denied;
        s.delegate.applicationDidFinishLaunching();
        QVERIFY(wasShown);
    }

    void theWidgetComesAfterTheItemAndBeforeTheCalendar()
    {
        Setup s;
        QCOMPARE(s.notches, 0);
        s.launch();
        QCOMPARE(s.notches, 1);
        QVERIFY(s.wasShownBeforeNotch);
        QCOMPARE(s.checksBeforeNotch, 0);
    }

    void theItemCanQuitTheProgram()
    {
        Setup s;
        s.launch();
        QSignalSpy quitting(QCoreApplication::instance(), &QCoreApplication::aboutToQuit);
        QMetaObject::invokeMethod(
            &s.item, [&] { Q_EMIT s.item.quitRequested(); }, Qt::QueuedConnection);
        QCoreApplication::exec();
        QCOMPARE(quitting.size(), 1);
    }
};

QTEST_GUILESS_MAIN(AppDelegateTest)
#include "AppDelegateTest.moc"
