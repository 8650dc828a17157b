#include "App/Notch/NotchController.h"
#include "App/Notch/NotchPanel.h"
#include "Tests/Fakes/FakeScreens.h"
#include "Tests/Fakes/FakeUserDefaults.h"

#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

static const auto showNotch = u"showNotch"_s;

// What became of the panels that were made.
struct Panels {
    int made = 0;
    int alive = 0;
    int ordered = 0; // To the front.
    int placed = 0;
    QRect frame;
    bool animated = false;
    NotchState* state = nullptr;
    std::function<void(bool)> hover;
};

struct FakePanel final : NotchPanel {
    explicit FakePanel(Panels& panels)
        : all(panels)
    {
        ++all.made;
        ++all.alive;
    }
    FakePanel(const FakePanel&) = delete;
    FakePanel& operator=(const FakePanel&) = delete;
    ~FakePanel() override { --all.alive; }

    void orderFront() override { ++all.ordered; }
    void setFrame(const QRect& frame, bool animated) override
    {
        ++all.placed;
        all.frame = frame;
        all.animated = animated;
    }

    Panels& all;
};

struct Setup {
    explicit Setup(const QHash<QString, UserDefaults::Value>& stored = {})
        : defaults(stored)
    {
    }

    FakeUserDefaults defaults;
    FakeScreens screens;
    Panels panels;
    NotchController controller { defaults, screens,
        [this](NotchState& state, std::function<void(bool)> onHover) {
            panels.state = &state;
            panels.hover = std::move(onHover);
            return std::make_unique<FakePanel>(panels);
        } };
};

class NotchControllerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void atTheFirstLaunchThePanelIsShown()
    {
        const Setup s;
        QCOMPARE(s.panels.alive, 1);
        QCOMPARE(s.panels.ordered, 1);
        QCOMPARE(s.panels.state, &s.controller.state());
        QVERIFY(!s.controller.state().expanded());
        QVERIFY(!s.panels.animated);
    }

    void switchedOffThereIsNone()
    {
        const Setup s({ { showNotch, false } });
        QCOMPARE(s.panels.made, 0);
    }

    void whatIsNoBooleanCountsAsTrue_data()
    {
        QTest::addColumn<UserDefaults::Value>("value");
        QTest::newRow("text") << UserDefaults::Value(u"false"_s);
        QTest::newRow("integer") << UserDefaults::Value(qint64 { 0 });
        QTest::newRow("real") << UserDefaults::Value(0.0);
        QTest::newRow("data") << UserDefaults::Value(QByteArray());
    }

    void whatIsNoBooleanCountsAsTrue()
    {
        QFETCH(UserDefaults::Value, value);
        const Setup s({ { showNotch, value } });
        QCOMPARE(s.panels.alive, 1);
    }

    // The origin of the figures is the lower left corner of the screen.
    void itHangsFromTheMiddleOfTheUpperEdge()
    {
        const Setup s;
        const auto fromBelow = [&] {
            const auto& frame = s.panels.frame;
            return QRect(frame.left(), 982 - frame.bottom() - 1, frame.width(), frame.height());
        };
        QCOMPARE(fromBelow(), QRect(681, 952, 150, 30));
        s.panels.hover(true);
        QCOMPARE(fromBelow(), QRect(596, 886, 320, 96));
    }

    void hoveringExpandsItWithAnAnimation()
    {
        const Setup s;
        s.panels.hover(true);
        QVERIFY(s.controller.state().expanded());
        QVERIFY(s.panels.animated);
        QCOMPARE(s.panels.frame.size(), NotchController::expandedSize);
        s.panels.hover(false);
        QVERIFY(!s.controller.state().expanded());
        QVERIFY(s.panels.animated);
        QCOMPARE(s.panels.frame.size(), NotchController::collapsed);
    }

    void switchedOffWhileExpandedItComesBackCollapsed()
    {
        Setup s;
        s.panels.hover(true);
        s.defaults.setBoolean(showNotch, false);
        QCOMPARE(s.panels.alive, 0);
        QVERIFY(!s.controller.state().expanded());
        s.defaults.setBoolean(showNotch, true);
        QCOMPARE(s.panels.alive, 1);
        QCOMPARE(s.panels.made, 2);
        QCOMPARE(s.panels.frame.size(), NotchController::collapsed);
        QCOMPARE(s.panels.ordered, 2);
    }

    void otherSettingsOnlyBringItToTheFront()
    {
        Setup s;
        s.panels.hover(true);
        s.defaults.setText(u"taskName"_s, u"Write"_s);
        QCOMPARE(s.panels.made, 1);
        QCOMPARE(s.panels.ordered, 2);
        QCOMPARE(s.panels.placed, 2);
        QVERIFY(s.controller.state().expanded());
    }

    void itFollowsTheMainScreenWithoutAnAnimation()
    {
        Setup s;
        s.panels.hover(true);
        s.screens.change(QRect(1512, -200, 1001, 800));
        QCOMPARE(s.panels.frame, QRect(1852, -200, 320, 96));
        QVERIFY(!s.panels.animated);
    }

    void aScreenThatBecameTheMainOneIsFoundAtTheNextHover()
    {
        Setup s;
        s.screens.mainScreen = QRect(1512, 0, 1000, 800);
        s.panels.hover(true);
        QCOMPARE(s.panels.frame, QRect(1852, 0, 320, 96));
    }

    void withoutAScreenItKeepsItsFrame()
    {
        Setup s;
        const auto frame = s.panels.frame;
        s.screens.change(std::nullopt);
        QCOMPARE(s.panels.frame, frame);
        QCOMPARE(s.panels.placed, 1);
        QCOMPARE(s.panels.alive, 1);
    }

    void withoutAWidgetScreensMayChange()
    {
        Setup s({ { showNotch, false } });
        s.screens.change(QRect(0, 0, 100, 100));
        QCOMPARE(s.panels.placed, 0);
    }
};

QTEST_GUILESS_MAIN(NotchControllerTest)
#include "NotchControllerTest.moc"
