#include "App/Ui/Stepper.h"
#include "App/Ui/Theme.h"
#include "Tests/Ui/Painted.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace {

const QPoint minus(14, 12);
const QPoint plus(36, 12);

}

struct Setup {
    Setup()
    {
        Theme::apply({});
        window.resize(200, 100);
        stepper.placeBox({ { 20, 30 }, Stepper::boxSize() });
        stepper.setRange(1, 180);
        stepper.setStep(5);
        stepper.setValue(25);
        window.show();
    }

    void turn(int angle)
    {
        QWheelEvent event(
            QPointF(10, 10), QPointF(10, 10), {}, { 0, angle }, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&stepper, &event);
    }

    QWidget window;
    Stepper stepper { u"Focus minutes"_s, &window };
    QSignalSpy edits { &stepper, &Stepper::edited };
};

class StepperTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theHalvesStep()
    {
        Setup s;
        QTest::mouseClick(&s.stepper, Qt::LeftButton, {}, plus);
        QCOMPARE(s.stepper.value(), 30);
        QTest::mouseClick(&s.stepper, Qt::LeftButton, {}, minus);
        QTest::mouseClick(&s.stepper, Qt::LeftButton, {}, minus);
        QCOMPARE(s.stepper.value(), 20);
        QCOMPARE(s.edits.count(), 3);
    }

    void theHalvesChangeSidesFromRightToLeft()
    {
        Setup s;
        s.stepper.setLayoutDirection(Qt::RightToLeft);
        QTest::mouseClick(&s.stepper, Qt::LeftButton, {}, plus);
        QCOMPARE(s.stepper.value(), 20);
    }

    void aClickInTheMarginDoesNothing()
    {
        Setup s;
        QTest::mouseClick(&s.stepper, Qt::LeftButton, {}, QPoint(1, 12));
        QCOMPARE(s.edits.count(), 0);
    }

    void keysStep_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<int>("value");
        QTest::newRow("up") << Qt::Key_Up << 30;
        QTest::newRow("down") << Qt::Key_Down << 20;
        QTest::newRow("plus") << Qt::Key_Plus << 30;
        QTest::newRow("minus") << Qt::Key_Minus << 20;
        QTest::newRow("page up") << Qt::Key_PageUp << 50;
        QTest::newRow("page down") << Qt::Key_PageDown << 1;
        QTest::newRow("home") << Qt::Key_Home << 1;
        QTest::newRow("end") << Qt::Key_End << 180;
        QTest::newRow("another") << Qt::Key_A << 25;
    }

    void keysStep()
    {
        QFETCH(Qt::Key, key);
        Setup s;
        QTest::keyClick(&s.stepper, key);
        QTEST(s.stepper.value(), "value");
    }

    void smallTurnsOfTheWheelAddUp()
    {
        Setup s;
        s.turn(60);
        QCOMPARE(s.stepper.value(), 25);
        s.turn(60);
        QCOMPARE(s.stepper.value(), 30);
        s.turn(-240);
        QCOMPARE(s.stepper.value(), 20);
    }

    void aValueAboveTheRangeIsKeptUntilAStepLeadsBackIntoIt()
    {
        Setup s;
        s.stepper.setValue(500);
        QCOMPARE(s.stepper.value(), 500);
        QTest::mouseClick(&s.stepper, Qt::LeftButton, {}, plus);
        QCOMPARE(s.edits.count(), 0);
        QTest::keyClick(&s.stepper, Qt::Key_Down);
        QCOMPARE(s.stepper.value(), 180);
    }

    void aValueBelowTheRangeIsKeptUntilAStepLeadsBackIntoIt()
    {
        Setup s;
        s.stepper.setRange(10, 60);
        s.stepper.setValue(0);
        QTest::keyClick(&s.stepper, Qt::Key_Up);
        QCOMPARE(s.stepper.value(), 10);
    }

    void settingTheValueIsSilent()
    {
        Setup s;
        s.stepper.setValue(45);
        QCOMPARE(s.edits.count(), 0);
    }

    void holdingAHalfRepeatsUntilTheLimit()
    {
        Setup s;
        s.stepper.setRange(1, 40);
        QTest::mousePress(&s.stepper, Qt::LeftButton, {}, plus);
        QCOMPARE(s.stepper.value(), 30);
        QTRY_COMPARE(s.stepper.value(), 40);
        QCOMPARE(s.edits.count(), 3);
        QTest::mouseRelease(&s.stepper, Qt::LeftButton, {}, plus);
    }

    void lettingGoEndsTheRepeating()
    {
        Setup s;
        QTest::mousePress(&s.stepper, Qt::LeftButton, {}, plus);
        QTRY_VERIFY(s.stepper.value() > 30);
        QTest::mouseRelease(&s.stepper, Qt::LeftButton, {}, plus);
        auto* timer = s.stepper.findChild<QTimer*>();
        QVERIFY(!timer || !timer->isActive());
        const int reached = s.stepper.value();
        QVERIFY(!s.edits.wait(300));
        QCOMPARE(s.stepper.value(), reached);
    }

    void onlyAHalfAtItsLimitIsPaintedAnew()
    {
        Setup s;
        QVERIFY(QTest::qWaitForWindowExposed(&s.window));
        QCoreApplication::processEvents();
        Painted painted(s.stepper);
        s.stepper.setValue(30);
        s.stepper.setRange(1, 180);
        QCoreApplication::processEvents();
        QCOMPARE(painted.count, 0);
        s.stepper.setValue(180);
        QTRY_COMPARE(painted.count, 1);
    }

    void assistiveTechnologyReadsAndStepsIt()
    {
        Setup s;
        auto* accessible = QAccessible::queryAccessibleInterface(&s.stepper);
        QCOMPARE(accessible->role(), QAccessible::SpinBox);
        QCOMPARE(accessible->text(QAccessible::Name), u"Focus minutes"_s);
        auto* value = accessible->valueInterface();
        QVERIFY(value);
        QCOMPARE(value->currentValue().toInt(), 25);
        QCOMPARE(value->minimumValue().toInt(), 1);
        QCOMPARE(value->maximumValue().toInt(), 180);
        QCOMPARE(value->minimumStepSize().toInt(), 5);
        value->setCurrentValue(40);
        QCOMPARE(s.stepper.value(), 40);
        accessible->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
        QCOMPARE(s.stepper.value(), 45);
        QCOMPARE(s.edits.count(), 2);
    }
};

QTEST_MAIN(StepperTest)
#include "StepperTest.moc"
