#include "App/Ui/Switch.h"
#include "App/Ui/Theme.h"
#include "Tests/Ui/Painted.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

struct Setup {
    Setup()
    {
        Theme::apply({});
        window.resize(200, 100);
        lever.placeBox({ { 20, 30 }, Switch::boxSize() });
        window.show();
    }

    QColor at(int x) { return lever.grab().toImage().pixelColor(x, lever.height() / 2); }

    QWidget window;
    Switch lever { u"Show the panel"_s, &window };
};

class SwitchTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theKnobSlidesToTheOtherEnd()
    {
        Setup s;
        QVERIFY(QTest::qWaitForWindowExposed(&s.window));
        const QColor on = Theme::current().colors.accent;
        QCOMPARE(s.at(12), QColor(Qt::white));
        QTest::mouseClick(&s.lever, Qt::LeftButton, {}, QPoint(12, 12));
        QVERIFY(s.lever.isChecked());
        QTRY_COMPARE(s.at(12), on);
        QCOMPARE(s.at(28), QColor(Qt::white));
    }

    void aSwitchSetBeforeItIsSeenDoesNotSlide()
    {
        Switch lever(u"Switch"_s);
        lever.resize(lever.sizeHint());
        lever.setChecked(true);
        QCOMPARE(lever.grab().toImage().pixelColor(28, 13), QColor(Qt::white));
    }

    void spaceToggles()
    {
        Setup s;
        const QSignalSpy clicks(&s.lever, &Switch::clicked);
        QTest::keyClick(&s.lever, Qt::Key_Space);
        QVERIFY(s.lever.isChecked());
        QCOMPARE(clicks.count(), 1);
    }

    void settingTheSameStateDoesNotPaint()
    {
        Setup s;
        QVERIFY(QTest::qWaitForWindowExposed(&s.window));
        QCoreApplication::processEvents();
        Painted painted(s.lever);
        s.lever.setChecked(false);
        QCoreApplication::processEvents();
        QCOMPARE(painted.count, 0);
    }

    void rightToLeftBeginsAtTheOtherEnd()
    {
        Setup s;
        s.lever.setLayoutDirection(Qt::RightToLeft);
        QCOMPARE(s.at(28), QColor(Qt::white));
        QVERIFY(s.at(12) != QColor(Qt::white));
    }

    void assistiveTechnologyTogglesIt()
    {
        Setup s;
        auto* accessible = QAccessible::queryAccessibleInterface(&s.lever);
        QCOMPARE(accessible->role(), QAccessible::CheckBox);
        QCOMPARE(accessible->text(QAccessible::Name), u"Show the panel"_s);
        QVERIFY(accessible->state().checkable && !accessible->state().checked);
        accessible->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(accessible->state().checked);
    }
};

QTEST_MAIN(SwitchTest)
#include "SwitchTest.moc"
