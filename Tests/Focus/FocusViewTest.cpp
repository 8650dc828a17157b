#include "App/Focus/FocusView.h"
#include "App/Focus/LengthStepper.h"
#include "App/Focus/ProgressRing.h"
#include "App/Focus/SessionCount.h"
#include "App/Ui/Button.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Label.h"
#include "App/Ui/Stepper.h"
#include "App/Ui/TextField.h"
#include "Tests/Fakes/FakeClipboard.h"
#include "Tests/Focus/FocusSetup.h"

#include <QAccessible>
#include <QShortcut>
#include <QTest>

using namespace Qt::StringLiterals;

struct Setup : FocusSetup {
    explicit Setup(const QHash<QString, UserDefaults::Value>& stored = {})
        : FocusSetup(stored)
    {
        view.resize(400, 439);
        view.show();
        view.activateWindow();
        QCoreApplication::processEvents();
    }

    template <typename T>
    T& find(const QString& name)
    {
        return *view.findChild<T*>(name);
    }

    Button& button(const QString& name) { return find<Button>(name); }
    QString time() { return find<ProgressRing>(u"ring"_s).time(); }
    double progress() { return find<ProgressRing>(u"ring"_s).progress(); }

    void click(const QString& name)
    {
        QTest::mouseClick(&button(name), Qt::LeftButton);
        QCoreApplication::processEvents();
    }

    void key(Qt::Key which)
    {
        QTest::keyClick(&view, which);
        QCoreApplication::processEvents();
    }

    void stepUp(const QString& title)
    {
        QTest::keyClick(&find<Stepper>(title), Qt::Key_Up);
        QCoreApplication::processEvents();
    }

    FakeClipboard clipboard;
    FocusView view { model, clipboard };
};

class FocusViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsPastedIsAskedOfTheClipboard()
    {
        Setup s({ { u"taskName"_s, u"Write"_s } });
        s.clipboard.text = u" a letter"_s;
        auto& task = s.find<TextField>(u"task"_s);
        task.setFocus();
        QTest::keySequence(&task, QKeySequence::Paste);
        QCOMPARE(s.model.taskName(), u"Write"_s);
        QCOMPARE(s.clipboard.readings.first().mode, QClipboard::Clipboard);
        s.clipboard.answer();
        QCOMPARE(s.model.taskName(), u"Write a letter"_s);
    }

    void showsTheModelFromTheStart()
    {
        Setup s({ { u"taskName"_s, u"Write"_s } });
        QCOMPARE(s.find<Label>(u"phase"_s).text(), u"Focus"_s);
        QCOMPARE(s.time(), u"25:00"_s);
        QCOMPARE(s.progress(), 0.0);
        QCOMPARE(s.find<TextField>(u"task"_s).text(), u"Write"_s);
        QCOMPARE(s.button(u"toggle"_s).text(), u"Start"_s);
        QCOMPARE(s.find<SessionCount>(u"sessions"_s).accessibleName(), u"0 sessions"_s);
    }

    void everythingStandsInItsPlace()
    {
        Setup s;
        const auto boxOf = [&](QWidget& widget) {
            return widget.geometry().adjusted(
                ControlBox::margin, ControlBox::margin, -ControlBox::margin, -ControlBox::margin);
        };
        QCOMPARE(s.find<Label>(u"phase"_s).y(), 60);
        QCOMPARE(s.find<ProgressRing>(u"ring"_s).geometry(), QRect(124, 87, 152, 152));
        QCOMPARE(boxOf(s.find<TextField>(u"task"_s)), QRect(16, 252, 368, 24));
        QCOMPARE(boxOf(s.button(u"toggle"_s)), QRect(16, 290, 64, 24));
        QCOMPARE(boxOf(s.button(u"reset"_s)).topLeft(), QPoint(88, 290));
        int x = 16;
        for (auto* length : s.view.findChildren<LengthStepper*>()) {
            QCOMPARE(boxOf(*length), QRect(x, 343, 112, 36));
            // All of the stepper is inside, the margin of its focus ring too.
            QVERIFY(length->rect().contains(length->findChild<Stepper*>()->geometry()));
            x += 128;
        }
        QCOMPARE(x, 400);
    }

    void startAndPauseShareOneButton()
    {
        Setup s;
        const auto width = s.button(u"toggle"_s).width();
        s.click(u"toggle"_s);
        QVERIFY(s.model.running());
        QCOMPARE(s.button(u"toggle"_s).text(), u"Pause"_s);
        QCOMPARE(s.button(u"toggle"_s).width(), width);
        s.click(u"toggle"_s);
        QVERIFY(!s.model.running());
        QCOMPARE(s.button(u"toggle"_s).text(), u"Start"_s);
    }

    void returnPausesAndResumesFromTheTimeLeft()
    {
        Setup s;
        s.key(Qt::Key_Return);
        s.tickAfter(60);
        s.key(Qt::Key_Return);
        QVERIFY(!s.model.running());
        s.clock.advance(600);
        s.key(Qt::Key_Return);
        QVERIFY(s.model.running());
        s.tickAfter(1);
        QCoreApplication::processEvents();
        QCOMPARE(s.time(), u"23:59"_s);
    }

    void returnStartsAlsoFromTheTaskAndFromAnotherButton()
    {
        Setup s;
        QTest::keyClick(&s.find<TextField>(u"task"_s), Qt::Key_Return);
        QVERIFY(s.model.running());
        s.button(u"reset"_s).setFocus(Qt::TabFocusReason);
        QTest::keyClick(&s.button(u"reset"_s), Qt::Key_Enter);
        QVERIFY(!s.model.running());
    }

    void thePointerLeavesTheKeyboardWithTheTask()
    {
        Setup s;
        auto& task = s.find<TextField>(u"task"_s);
        task.setFocus();
        s.click(u"toggle"_s);
        QTest::mouseClick(&s.find<Stepper>(u"Focus"_s), Qt::LeftButton);
        QCOMPARE(s.view.focusWidget(), &task);
    }

    void aHeldReturnPressesOnce()
    {
        Setup s;
        const auto shortcuts = s.view.findChildren<QShortcut*>();
        QCOMPARE(shortcuts.size(), 2);
        for (const auto* shortcut : shortcuts)
            QVERIFY(!shortcut->autoRepeat());
    }

    void resettingWhileRunningShowsTheWholePhase()
    {
        Setup s;
        s.model.start();
        s.tickAfter(100);
        s.click(u"reset"_s);
        QVERIFY(!s.model.running());
        QVERIFY(!s.model.isActive());
        QCOMPARE(s.time(), u"25:00"_s);
        QCOMPARE(s.progress(), 0.0);
    }

    void skippingAFocusShowsTheShortBreak()
    {
        Setup s;
        s.click(u"skip"_s);
        QCOMPARE(s.find<Label>(u"phase"_s).text(), u"Short break"_s);
        QCOMPARE(s.time(), u"05:00"_s);
        QCOMPARE(s.find<SessionCount>(u"sessions"_s).accessibleName(), u"0 sessions"_s);
    }

    void thePluralIsUsedForOneSessionToo()
    {
        Setup s;
        s.completePhase();
        QCoreApplication::processEvents();
        QCOMPARE(s.find<SessionCount>(u"sessions"_s).accessibleName(), u"1 sessions"_s);
    }

    void everyKeystrokeInTheTaskIsStored()
    {
        Setup s;
        QTest::keyClicks(&s.find<TextField>(u"task"_s), u"abc"_s);
        QCOMPARE(s.defaults.writes, 3);
        QCOMPARE(s.defaults.text(u"taskName"_s), u"abc"_s);
        QCOMPARE(s.model.taskName(), u"abc"_s);
    }

    void aTaskIsKeptHoweverLongItIs()
    {
        const QString longTask(100'000, u'y');
        Setup s({ { u"taskName"_s, longTask } });
        QCOMPARE(s.defaults.text(u"taskName"_s), longTask);
        auto& task = s.find<TextField>(u"task"_s);
        task.end(false);
        QTest::keyClicks(&task, u"!"_s);
        QCOMPARE(s.model.taskName(), longTask + u'!');
    }

    void theCaretStaysWhereTheUserTypes()
    {
        Setup s({ { u"taskName"_s, u"ad"_s } });
        auto& task = s.find<TextField>(u"task"_s);
        task.setCursorPosition(1);
        QTest::keyClicks(&task, u"bc"_s);
        QCoreApplication::processEvents();
        QCOMPARE(task.text(), u"abcd"_s);
        QCOMPARE(task.cursorPosition(), 3);
    }

    void theTaskHasItsPlaceholder()
    {
        Setup s;
        QCOMPARE(s.find<TextField>(u"task"_s).placeholderText(), u"What are you working on?"_s);
    }

    void steppingAStandingPhaseChangesTheTimeAtOnce()
    {
        Setup s;
        s.stepUp(u"Focus"_s);
        QCOMPARE(s.time(), u"26:00"_s);
        QCOMPARE(s.defaults.integer(u"focusMinutes"_s), 26);
    }

    void steppingARunningPhaseChangesNothingVisibleYet()
    {
        Setup s;
        s.model.start();
        s.tickAfter(60);
        s.stepUp(u"Focus"_s);
        QCOMPARE(s.time(), u"24:00"_s);
        s.click(u"reset"_s);
        QCOMPARE(s.time(), u"26:00"_s);
    }

    void lengthsStayWithinTheirRanges_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("most");
        QTest::newRow("focus") << u"Focus"_s << u"focusMinutes"_s << 120;
        QTest::newRow("short") << u"Short"_s << u"shortMinutes"_s << 60;
        QTest::newRow("long") << u"Long"_s << u"longMinutes"_s << 90;
    }

    void lengthsStayWithinTheirRanges()
    {
        QFETCH(QString, title);
        QFETCH(QString, key);
        QFETCH(int, most);
        Setup s;
        QTest::keyClick(&s.find<Stepper>(title), Qt::Key_End);
        s.stepUp(title);
        QCOMPARE(s.defaults.integer(key), most);
        QTest::keyClick(&s.find<Stepper>(title), Qt::Key_Home);
        QTest::keyClick(&s.find<Stepper>(title), Qt::Key_Down);
        QCOMPARE(s.defaults.integer(key), 1);
    }

    void aStoredLengthOfZeroShowsAnEmptyRing()
    {
        Setup s({ { u"focusMinutes"_s, qint64 { 0 } } });
        QCOMPARE(s.time(), u"00:00"_s);
        QCOMPARE(s.progress(), 0.0);
    }

    void aStoredLengthOfZeroIsSteppedUpToOne()
    {
        Setup s({ { u"focusMinutes"_s, qint64 { 0 } } });
        s.stepUp(u"Focus"_s);
        QCOMPARE(s.defaults.integer(u"focusMinutes"_s), 1);
    }

    void aStoredLengthAboveTheRangeIsSteppedDownIntoIt()
    {
        Setup s({ { u"focusMinutes"_s, qint64 { 10'000'000'000 } } });
        QTest::keyClick(&s.find<Stepper>(u"Focus"_s), Qt::Key_Down);
        QCOMPARE(s.defaults.integer(u"focusMinutes"_s), 120);
    }

    void theRingFillsAsTimePasses()
    {
        Setup s;
        s.model.start();
        s.tickAfter(750);
        QCoreApplication::processEvents();
        QCOMPARE(s.progress(), 0.5);
    }

    void assistiveTechnologyReadsRingAndCount()
    {
        Setup s;
        s.model.start();
        s.tickAfter(750);
        QCoreApplication::processEvents();
        auto* const ring = QAccessible::queryAccessibleInterface(&s.find<ProgressRing>(u"ring"_s));
        QCOMPARE(ring->role(), QAccessible::ProgressBar);
        QCOMPARE(ring->text(QAccessible::Name), u"Time left: 12:30"_s);
        QCOMPARE(ring->valueInterface()->currentValue().toInt(), 50);
        auto* const count
            = QAccessible::queryAccessibleInterface(&s.find<SessionCount>(u"sessions"_s));
        QCOMPARE(count->role(), QAccessible::StaticText);
        QCOMPARE(count->text(QAccessible::Name), u"0 sessions"_s);
    }

    void theViewLeavesTheTimerRunningWhenItGoes()
    {
        FocusSetup s;
        {
            FakeClipboard clipboard;
            FocusView view(s.model, clipboard);
            s.model.start();
        }
        s.tickAfter(1);
        QCoreApplication::processEvents();
        QCOMPARE(s.model.timeString(), u"24:59"_s);
    }
};

QTEST_MAIN(FocusViewTest)
#include "FocusViewTest.moc"
