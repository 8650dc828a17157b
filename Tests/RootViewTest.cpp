#include "App/RootView.h"
#include "App/TabButton.h"

#include <QAccessible>
#include <QLabel>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

struct Setup {
    Setup()
    {
        view.show();
        QCoreApplication::processEvents();
    }

    TabButton& button(const QString& name) { return *view.findChild<TabButton*>(name); }

    QStringList highlighted()
    {
        QStringList names;
        for (const auto* each : view.findChildren<TabButton*>()) {
            if (each->isChecked())
                names << each->objectName();
        }
        return names;
    }

    QString content() { return view.findChild<QLabel*>(u"content"_s)->text(); }
    void press(const QString& name) { QTest::mouseClick(&button(name), Qt::LeftButton); }

    RootView view { Tab::focus, false, [](std::optional<Tab> tab) {
                       auto label = std::make_unique<QLabel>(tab ? rawValue(*tab) : u"settings"_s);
                       label->setObjectName(u"content"_s);
                       label->setFocusPolicy(Qt::StrongFocus);
                       return label;
                   } };
};

class RootViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsOnItsTabWithOneHighlight()
    {
        Setup s;
        QCOMPARE(s.view.size(), QSize(400, 500));
        QCOMPARE(s.highlighted(), QStringList { u"Focus"_s });
        QCOMPARE(s.content(), u"Focus"_s);
    }

    void pressingATabShowsItsView()
    {
        Setup s;
        for (const auto tab : allTabs) {
            s.press(rawValue(tab));
            QCOMPARE(s.content(), rawValue(tab));
            QCOMPARE(s.highlighted(), QStringList { rawValue(tab) });
            QCOMPARE(s.view.tab(), tab);
        }
    }

    void settingsTakeTheHighlightFromTheTab()
    {
        Setup s;
        s.press(u"Meetings"_s);
        s.press(u"gear"_s);
        QCOMPARE(s.content(), u"settings"_s);
        QCOMPARE(s.highlighted(), QStringList { u"gear"_s });
        QCOMPARE(s.view.tab(), Tab::meetings);
    }

    void pressingTheSameTabClosesSettings()
    {
        Setup s;
        s.press(u"gear"_s);
        s.press(u"Focus"_s);
        QCOMPARE(s.content(), u"Focus"_s);
        QCOMPARE(s.highlighted(), QStringList { u"Focus"_s });
    }

    void pressingTheGearTwiceReturnsToTheTab()
    {
        Setup s;
        s.press(u"System"_s);
        s.press(u"gear"_s);
        s.press(u"gear"_s);
        QCOMPARE(s.content(), u"System"_s);
        QCOMPARE(s.highlighted(), QStringList { u"System"_s });
        QVERIFY(!s.view.showsSettings());
    }

    void tabsShareTheRowEquallyAndTheGearKeepsItsSize()
    {
        Setup s;
        for (int i = 0; i < int(allTabs.size()); ++i)
            QCOMPARE(
                s.button(rawValue(allTabs[size_t(i)])).geometry(), QRect(8 + 70 * i, 8, 68, 44));
        QCOMPARE(s.button(u"gear"_s).geometry(), QRect(358, 11, 34, 38));
    }

    void theWholeLabelOfATabIsPressed()
    {
        Setup s;
        for (const auto corner : { QPoint(0, 0), QPoint(67, 0), QPoint(0, 43), QPoint(67, 43) }) {
            s.press(u"Focus"_s);
            QTest::mouseClick(&s.button(u"Actions"_s), Qt::LeftButton, {}, corner);
            QCOMPARE(s.content(), u"Actions"_s);
        }
    }

    void contentFillsWhatTheTabBarLeaves()
    {
        Setup s;
        QCOMPARE(s.view.findChild<QLabel*>(u"content"_s)->geometry(), QRect(0, 61, 400, 439));
    }

    void aViewIsDroppedWhenAnotherIsShown()
    {
        Setup s;
        const QPointer<QLabel> first = s.view.findChild<QLabel*>(u"content"_s);
        s.press(u"Actions"_s);
        QVERIFY(!first);
    }

    void pressingTheTabThatIsShownKeepsItsView()
    {
        Setup s;
        const QPointer<QLabel> first = s.view.findChild<QLabel*>(u"content"_s);
        s.press(u"Focus"_s);
        QVERIFY(first);
    }

    void tabAndSettingsSurviveClosing()
    {
        Setup s;
        s.press(u"System"_s);
        s.press(u"gear"_s);
        s.view.hide();
        s.view.show();
        QCOMPARE(s.content(), u"settings"_s);
        s.press(u"gear"_s);
        QCOMPARE(s.content(), u"System"_s);
    }

    void tabsCanBePressedByKeyboard()
    {
        Setup s;
        s.button(u"Actions"_s).setFocus(Qt::TabFocusReason);
        QTest::keyClick(&s.button(u"Actions"_s), Qt::Key_Space);
        QCOMPARE(s.content(), u"Actions"_s);
        QVERIFY(s.button(u"Actions"_s).showsFocus());
    }

    void tabsComeInTheirOrderByKeyboardTheGearAndTheContentAfterThem()
    {
        Setup s;
        s.button(u"Focus"_s).setFocus(Qt::TabFocusReason);
        QStringList order;
        for (int i = 0; i < 7; ++i) {
            order << s.view.focusWidget()->objectName();
            QTest::keyClick(s.view.focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(order,
            (QStringList { u"Focus"_s, u"Actions"_s, u"Meetings"_s, u"System"_s, u"Shortcuts"_s,
                u"gear"_s, u"content"_s }));
    }

    void theFocusIsStillShownWhenTheWindowComesBack()
    {
        Setup s;
        auto& button = s.button(u"Actions"_s);
        for (const auto& [reason, shows] :
            { std::pair { Qt::TabFocusReason, true }, { Qt::MouseFocusReason, false } }) {
            s.view.setFocus();
            button.setFocus(reason);
            QFocusEvent left(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
            QCoreApplication::sendEvent(&button, &left);
            QVERIFY(!button.showsFocus());
            QFocusEvent back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
            QCoreApplication::sendEvent(&button, &back);
            QCOMPARE(button.showsFocus(), shows);
        }
    }

    void assistiveTechnologySeesTabsAndSelectsThem()
    {
        Setup s;
        auto* const tab = QAccessible::queryAccessibleInterface(&s.button(u"System"_s));
        QCOMPARE(tab->role(), QAccessible::PageTab);
        QCOMPARE(tab->text(QAccessible::Name), u"System"_s);
        QVERIFY(!tab->state().selected);
        tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(s.content(), u"System"_s);
        QVERIFY(tab->state().selected);
        auto* const gear = QAccessible::queryAccessibleInterface(&s.button(u"gear"_s));
        QCOMPARE(gear->role(), QAccessible::CheckBox);
        QCOMPARE(gear->text(QAccessible::Name), u"Settings"_s);
    }

    void keystrokesGoToTheNewContentWhenTheOldOneHadThem()
    {
        Setup s;
        s.view.activateWindow();
        QTRY_COMPARE(s.view.focusWidget(), s.view.findChild<QLabel*>(u"content"_s));
        s.press(u"Actions"_s);
        QCOMPARE(s.view.focusWidget(), s.view.findChild<QLabel*>(u"content"_s));
    }

    void keystrokesGoToTheContentAtOnce()
    {
        Setup s;
        s.view.activateWindow();
        QTRY_COMPARE(s.view.focusWidget(), s.view.findChild<QLabel*>(u"content"_s));
    }
};

QTEST_MAIN(RootViewTest)
#include "RootViewTest.moc"
