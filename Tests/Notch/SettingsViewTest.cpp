#include "App/Notch/SettingsView.h"
#include "App/Ui/Button.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Label.h"
#include "App/Ui/Switch.h"
#include "App/Ui/Theme.h"
#include "Tests/Fakes/FakeLoginItem.h"
#include "Tests/Fakes/FakeUserDefaults.h"

#include <QAccessible>
#include <QTest>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

static const auto showNotch = u"showNotch"_s;

struct Setup {
    explicit Setup(const QHash<QString, UserDefaults::Value>& stored = {})
        : defaults(stored)
    {
        Theme::apply({});
        view.resize(400, 439);
        view.show();
    }

    template <typename T>
    T& find(const QString& name)
    {
        return *view.findChild<T*>(name);
    }

    Switch& widget() { return find<Switch>(showNotch); }
    Switch& login() { return find<Switch>(u"launchAtLogin"_s); }
    Label& error() { return find<Label>(u"error"_s); }
    Button& quit() { return find<Button>(u"quit"_s); }
    const Label* words(const QString& text)
    {
        const auto labels = view.findChildren<Label*>();
        return *std::ranges::find_if(
            labels, [&](const Label* label) { return label->text() == text; });
    }
    QRect boxOf(const QWidget& control)
    {
        return ControlBox::of(control).translated(control.pos());
    }

    FakeUserDefaults defaults;
    FakeLoginItem item;
    int terminations = 0;
    SettingsView view { defaults, item, [this] { ++terminations; } };
};

class SettingsViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theWidgetIsShownUnlessItIsSwitchedOff()
    {
        QVERIFY(Setup().widget().isChecked());
        QVERIFY(!Setup({ { showNotch, false } }).widget().isChecked());
        QVERIFY(Setup({ { showNotch, u"false"_s } }).widget().isChecked());
    }

    void theSwitchOfTheWidgetIsStoredAtOnce()
    {
        Setup s;
        QTest::mouseClick(&s.widget(), Qt::LeftButton);
        QCOMPARE(s.defaults.boolean(showNotch), false);
        QTest::mouseClick(&s.widget(), Qt::LeftButton);
        QCOMPARE(s.defaults.boolean(showNotch), true);
    }

    void aChangeElsewhereMovesTheSwitch()
    {
        Setup s;
        s.defaults.setBoolean(showNotch, false);
        QVERIFY(!s.widget().isChecked());
    }

    void theLoginItemIsRegisteredAndUnregistered()
    {
        Setup s;
        QVERIFY(!s.login().isChecked());
        QTest::mouseClick(&s.login(), Qt::LeftButton);
        QCOMPARE(s.item.state, LoginItem::Status::enabled);
        QVERIFY(s.login().isChecked());
        QTest::mouseClick(&s.login(), Qt::LeftButton);
        QCOMPARE(s.item.state, LoginItem::Status::notRegistered);
        QVERIFY(!s.login().isChecked());
        QVERIFY(!s.error().isVisible());
    }

    void aFailureFlipsTheSwitchBackAndSaysWhy()
    {
        Setup s;
        s.item.failure = u"Read-only file system"_s;
        QTest::mouseClick(&s.login(), Qt::LeftButton);
        QVERIFY(!s.login().isChecked());
        QVERIFY(s.error().isVisible());
        QCOMPARE(s.error().text(),
            u"Couldn't change login item (run Corvella as an app bundle): Read-only file system"_s);
        QCOMPARE(
            s.error().palette().color(QPalette::WindowText), Theme::current().colors.orangeText);
        s.view.hide();
        s.view.show();
        QVERIFY(s.error().isVisible());
        s.item.failure.reset();
        QTest::mouseClick(&s.login(), Qt::LeftButton);
        QVERIFY(s.login().isChecked());
        QVERIFY(!s.error().isVisible());
        QCOMPARE(s.error().text(), QString());
    }

    void aLongFailureLeavesRoomForTheButton()
    {
        Setup s;
        s.item.failure = u"No such file or directory: "_s.repeated(100);
        QTest::mouseClick(&s.login(), Qt::LeftButton);
        QCOMPARE(s.error().height(), 8 * Theme::lineHeight(TextRole::caption));
        QVERIFY(s.view.rect().contains(s.boxOf(s.quit())));
    }

    void anItemThatCannotBeTakenAwayStaysOn()
    {
        Setup s;
        s.item.state = LoginItem::Status::enabled;
        s.view.hide();
        s.view.show();
        s.item.failure = u"Permission denied"_s;
        QTest::mouseClick(&s.login(), Qt::LeftButton);
        QVERIFY(s.login().isChecked());
        QVERIFY(s.error().isVisible());
    }

    void anItemThatAwaitsApprovalIsOff()
    {
        Setup s;
        s.item.state = LoginItem::Status::requiresApproval;
        s.view.hide();
        s.view.show();
        QVERIFY(!s.login().isChecked());
    }

    void aChangeElsewhereShowsWhenThePaneAppears()
    {
        Setup s;
        s.item.state = LoginItem::Status::enabled;
        QVERIFY(!s.login().isChecked());
        s.view.hide();
        s.view.show();
        QVERIFY(s.login().isChecked());
    }

    void theWordsSwitchToo()
    {
        Setup s;
        const QPoint widget(100, s.boxOf(s.widget()).center().y());
        const QPoint login(100, s.boxOf(s.login()).center().y());
        QTest::mouseClick(&s.view, Qt::LeftButton, {}, widget);
        QCOMPARE(s.defaults.boolean(showNotch), false);
        QCOMPARE(s.item.state, LoginItem::Status::notRegistered);
        QTest::mouseClick(&s.view, Qt::LeftButton, {}, login);
        QCOMPARE(s.item.state, LoginItem::Status::enabled);
        QCOMPARE(s.defaults.boolean(showNotch), false);
    }

    void nothingElseSwitches()
    {
        Setup s;
        const QPoint words(100, s.boxOf(s.widget()).center().y());
        QTest::mouseClick(&s.view, Qt::RightButton, {}, words);
        const QPoint ground(200, 300);
        QTest::mousePress(&s.view, Qt::LeftButton, {}, ground);
        QTest::mouseRelease(&s.view, Qt::LeftButton, {}, words);
        QTest::mousePress(&s.view, Qt::LeftButton, {}, words);
        QTest::mouseRelease(&s.view, Qt::LeftButton, {}, ground);
        QTest::mouseRelease(&s.view, Qt::LeftButton, {}, words);
        for (const QPoint& beside : { QPoint(100, 24), QPoint(55, words.y()), QPoint(200, 300) })
            QTest::mouseClick(&s.view, Qt::LeftButton, {}, beside);
        QCOMPARE(s.defaults.boolean(showNotch), std::nullopt);
        QCOMPARE(s.item.state, LoginItem::Status::notRegistered);
    }

    void quitEndsTheProgram()
    {
        Setup s;
        QTest::mouseClick(&s.quit(), Qt::LeftButton);
        QCOMPARE(s.terminations, 1);
    }

    void partsStandAsDrawn()
    {
        Setup s;
        QCOMPARE(s.find<Label>(u"title"_s).geometry(), QRect(16, 16, 368, 16));
        QCOMPARE(s.boxOf(s.widget()), QRect(16, 46, 34, 20));
        QCOMPARE(s.boxOf(s.login()), QRect(16, 80, 34, 20));
        QCOMPARE(s.boxOf(s.quit()).topLeft(), QPoint(16, 114));
        s.item.failure = u"Read-only file system"_s;
        QTest::mouseClick(&s.login(), Qt::LeftButton);
        QCOMPARE(s.error().geometry(), QRect(16, 114, 368, 28));
        QCOMPARE(s.boxOf(s.quit()).top(), 156);
    }

    void fromRightToLeftAllIsMirrored()
    {
        Setup s;
        s.view.setLayoutDirection(Qt::RightToLeft);
        s.view.resize(401, 439);
        QCOMPARE(s.boxOf(s.widget()), QRect(351, 46, 34, 20));
        QCOMPARE(s.boxOf(s.login()), QRect(351, 80, 34, 20));
        QCOMPARE(s.boxOf(s.quit()).right(), 384);
        QCOMPARE(s.words(u"Launch at login"_s)->geometry(), QRect(16, 80, 325, 20));
    }

    void wordsStandBesideTheirSwitches()
    {
        Setup s;
        QCOMPARE(s.words(u"Show notch widget"_s)->geometry(), QRect(60, 46, 324, 20));
        QCOMPARE(s.words(u"Launch at login"_s)->geometry(), QRect(60, 80, 324, 20));
    }

    void aScreenReaderIsToldWhatTheyAre()
    {
        Setup s;
        const auto described = [](QWidget& widget) {
            auto* const interface = QAccessible::queryAccessibleInterface(&widget);
            return std::pair(interface->role(), interface->text(QAccessible::Name));
        };
        QCOMPARE(described(s.view), std::pair(QAccessible::Grouping, u"Settings"_s));
        QCOMPARE(described(s.widget()), std::pair(QAccessible::CheckBox, u"Show notch widget"_s));
        QCOMPARE(described(s.login()), std::pair(QAccessible::CheckBox, u"Launch at login"_s));
        QCOMPARE(described(s.quit()), std::pair(QAccessible::PushButton, u"Quit Corvella"_s));
        QCOMPARE(s.find<Label>(u"title"_s).text(), u"Settings"_s);
    }
};

QTEST_MAIN(SettingsViewTest)
#include "SettingsViewTest.moc"
