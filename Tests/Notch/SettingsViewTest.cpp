#include "App/Notch/SettingsView.h"
#include "App/Ui/Button.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Label.h"
#include "App/Ui/Switch.h"
#include "App/Ui/Theme.h"
#include "Tests/Fakes/FakeLoginItem.h"
#include "Tests/Fakes/FakeUserDefaults.h"

#include <QTest>

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
        s.item.failure.reset();
        QTest::mouseClick(&s.login(), Qt::LeftButton);
        QVERIFY(s.login().isChecked());
        QVERIFY(!s.error().isVisible());
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
        const QPoint words(100, s.boxOf(s.widget()).center().y());
        QTest::mouseClick(&s.view, Qt::LeftButton, {}, words);
        QCOMPARE(s.defaults.boolean(showNotch), false);
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
};

QTEST_MAIN(SettingsViewTest)
#include "SettingsViewTest.moc"
