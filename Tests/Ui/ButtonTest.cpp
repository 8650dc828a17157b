#include "App/Ui/Button.h"
#include "App/Ui/Theme.h"
#include "Tests/Ui/Painted.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

struct Setup {
    Setup()
    {
        Theme::apply({});
        window.resize(200, 100);
        button.placeBox({ 20, 30, 64, 24 });
        window.show();
    }

    QColor fill()
    {
        const QImage image = button.grab().toImage();
        return image.pixelColor(button.box().topLeft() + QPoint(5, 5));
    }

    QColor ring() { return button.grab().toImage().pixelColor(button.box().center().x(), 1); }

    QAccessibleInterface& accessible() { return *QAccessible::queryAccessibleInterface(&button); }

    QWidget window;
    QWidget before { &window };
    Button button { Button::Kind::normal, u"Reset"_s, &window };
};

class ButtonTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theVisibleBoxStandsWhereItIsPlaced()
    {
        Setup s;
        QCOMPARE(s.button.geometry().topLeft() + s.button.box().topLeft(), QPoint(20, 30));
        QCOMPARE(s.button.box().size(), QSize(64, 24));
    }

    void everyWidthIsEven()
    {
        for (const QString& text : { u"R"_s, u"Re"_s, u"Res"_s, u"Rese"_s, u"Reset"_s }) {
            const Button button(Button::Kind::normal, text);
            QCOMPARE(button.boxSize().width() % 2, 0);
            QVERIFY(button.boxSize().width() > 24);
        }
    }

    void theKindGivesTheSize()
    {
        QCOMPARE(Button(Button::Kind::icon, u"Again"_s).boxSize(), QSize(28, 24));
        QCOMPARE(Button(Button::Kind::small, u"Copy"_s).boxSize().height(), 20);
        Button fixed(Button::Kind::prominent, u"Start"_s);
        fixed.setBoxWidth(64);
        QCOMPARE(fixed.boxSize(), QSize(64, 24));
    }

    void aClickInTheBoxCountsAndOneInTheMarginDoesNot()
    {
        Setup s;
        const QSignalSpy clicks(&s.button, &Button::clicked);
        QTest::mouseClick(&s.button, Qt::LeftButton, {}, QPoint(1, 12));
        QCOMPARE(clicks.count(), 0);
        QTest::mouseClick(&s.button, Qt::LeftButton, {}, QPoint(3, 12));
        QCOMPARE(clicks.count(), 1);
    }

    void returnClicksOnceHoweverLongItIsHeld()
    {
        Setup s;
        const QSignalSpy clicks(&s.button, &Button::clicked);
        QTest::keyClick(&s.button, Qt::Key_Return);
        QTest::keyClick(&s.button, Qt::Key_Enter);
        QCOMPARE(clicks.count(), 2);
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(&s.button, &held);
        QCOMPARE(clicks.count(), 2);
    }

    void aFaintButtonIsFaintAsAWhole()
    {
        Setup s;
        s.button.setText(u"██████"_s);
        const auto at
            = [&](const QPoint& place) { return s.button.grab().toImage().pixelColor(place); };
        const auto words = s.button.box().center();
        const auto ground = at({ 0, 0 });
        const auto whole = at(words);
        s.button.setStrength(0.45);
        const double expected = ground.red() + 0.45 * (whole.red() - ground.red());
        QVERIFY2(std::abs(at(words).red() - expected) < 2, QByteArray::number(at(words).red()));
        s.button.setStrength(1);
        QCOMPARE(at(words), whole);
    }

    void spaceClicks()
    {
        Setup s;
        const QSignalSpy clicks(&s.button, &Button::clicked);
        QTest::keyClick(&s.button, Qt::Key_Space);
        QCOMPARE(clicks.count(), 1);
    }

    void hoverAndPressChangeTheFillAtOnce()
    {
        Setup s;
        const Colors& c = Theme::current().colors;
        QCOMPARE(s.fill(), c.button);
        QHoverEvent enter(QEvent::HoverEnter, QPointF(20, 12), QPointF(20, 12), QPointF(-1, -1));
        QApplication::sendEvent(&s.button, &enter);
        QCOMPARE(s.fill(), c.buttonHover);
        QTest::mousePress(&s.button, Qt::LeftButton, {}, QPoint(20, 12));
        QCOMPARE(s.fill(), c.buttonPressed);
        QTest::mouseRelease(&s.button, Qt::LeftButton, {}, QPoint(20, 12));
        QCOMPARE(s.fill(), c.buttonHover);
        QHoverEvent margin(QEvent::HoverMove, QPointF(1, 1), QPointF(1, 1), QPointF(20, 12));
        QApplication::sendEvent(&s.button, &margin);
        QCOMPARE(s.fill(), c.button);
    }

    void onlyTheKeyboardBringsTheFocusRing()
    {
        Setup s;
        s.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&s.window));
        const QColor bare = s.ring();
        s.button.setFocus(Qt::MouseFocusReason);
        QCOMPARE(s.ring(), bare);
        s.button.clearFocus();
        s.button.setFocus(Qt::TabFocusReason);
        QVERIFY(s.ring() != bare);
        s.button.clearFocus();
        QCOMPARE(s.ring(), bare);
    }

    void whatDoesNotChangeIsNotPainted()
    {
        Setup s;
        QVERIFY(QTest::qWaitForWindowExposed(&s.window));
        QCoreApplication::processEvents();
        Painted painted(s.button);
        s.button.setText(u"Reset"_s);
        s.button.setKind(Button::Kind::normal);
        s.button.setSymbol({});
        s.button.setEnabled(true);
        QCoreApplication::processEvents();
        QCOMPARE(painted.count, 0);
        s.button.setText(u"Again"_s);
        QTRY_COMPARE(painted.count, 1);
    }

    void aNewThemeRepaints()
    {
        Setup s;
        QVERIFY(QTest::qWaitForWindowExposed(&s.window));
        QCoreApplication::processEvents();
        Painted painted(s.button);
        Theme::apply({ .dark = true });
        QTRY_VERIFY(painted.count > 0);
        QCOMPARE(s.fill(), Theme::current().colors.button);
    }

    void assistiveTechnologyCanNameAndPressIt()
    {
        Setup s;
        const QSignalSpy clicks(&s.button, &Button::clicked);
        QCOMPARE(s.accessible().role(), QAccessible::Button);
        QCOMPARE(s.accessible().text(QAccessible::Name), u"Reset"_s);
        s.accessible().actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(clicks.count(), 1);
    }

    void anIconButtonIsNamedByItsUnseenText()
    {
        Button icon(Button::Kind::icon, u"Check again"_s);
        auto* accessible = QAccessible::queryAccessibleInterface(&icon);
        QCOMPARE(accessible->text(QAccessible::Name), u"Check again"_s);
    }

    void aDisabledButtonOffersNoAction()
    {
        Setup s;
        s.button.setEnabled(false);
        QVERIFY(s.accessible().actionInterface()->actionNames().isEmpty());
        QVERIFY(s.accessible().state().disabled);
    }
};

QTEST_MAIN(ButtonTest)
#include "ButtonTest.moc"
