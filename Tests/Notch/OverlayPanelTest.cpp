#include "App/Notch/OverlayPanel.h"
#include "Tests/Fakes/FakeOverlayWindow.h"
#include "Tests/Notch/NotchSetup.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

static const QRect collapsed(681, 0, 150, 30);
static const QRect expanded(596, 0, 320, 96);

struct Setup : NotchSetup {
    Setup()
    {
        auto made = makeView();
        view = made.get();
        panel = std::make_unique<OverlayPanel>(
            std::move(made), [this](std::unique_ptr<QWidget> content) {
                return std::make_unique<FakeOverlayWindow>(record, std::move(content));
            });
    }

    // Shown, and as yet nothing recorded.
    void showAt(const QRect& frame)
    {
        panel->setFrame(frame, false);
        panel->orderFront();
        forget();
    }

    void forget()
    {
        record.frames.clear();
        record.frames << view->geometry();
        record.sights.clear();
    }

    QSize tab() const { return view->tab(); }
    bool rests(const QRect& at) const
    {
        return record.frames.last() == at && tab() == at.size() && record.sights.last().tab == at;
    }
    bool isUnderWay(const QRect& from, const QRect& to) const
    {
        return tab() != from.size() && tab() != to.size();
    }

    FakeOverlayWindow::Record record;
    NotchView* view = nullptr;
    std::unique_ptr<OverlayPanel> panel;
};

// How often the program wakes up in a fifth of a second. An animation does it a dozen times; the
// last picture and the end of the wait take a few.
static int wakeups()
{
    QCoreApplication::processEvents(); // What is still to be painted.
    int count = 0;
    QEventLoop loop;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &loop,
        [&count] { ++count; });
    QTimer::singleShot(200, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
    return count;
}

static bool rests()
{
    const int count = wakeups();
    if (count > 5)
        qInfo("%d wakeups", count);
    return count <= 5;
}

class OverlayPanelTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutAScreenItIsCollapsedAtTheOrigin()
    {
        const Setup s;
        QVERIFY(s.rests({ 0, 0, 150, 30 }));
        QCOMPARE(s.record.ordered, 0);
    }

    void itIsPlacedAtOnceWithoutAnAnimation()
    {
        Setup s;
        s.panel->setFrame(collapsed, false);
        QVERIFY(s.rests(collapsed));
        s.panel->setFrame(expanded, false);
        QVERIFY(s.rests(expanded));
    }

    void itGrowsInTwoTenthsOfASecond()
    {
        Setup s;
        s.showAt(collapsed);
        QElapsedTimer elapsed;
        elapsed.start();
        s.panel->setFrame(expanded, true);
        QCOMPARE(s.record.sights.last().frame, expanded);
        QCOMPARE(s.record.sights.last().tab, collapsed);
        QTRY_VERIFY(s.rests(expanded));
        QVERIFY2(elapsed.elapsed() >= 190, QByteArray::number(elapsed.elapsed()));
        QVERIFY(s.record.sights.size() > 3);
    }

    // A pointer in what it covers before and after must find it there all the time.
    void itOnlyGrowsOrOnlyShrinks_data()
    {
        QTest::addColumn<QRect>("from");
        QTest::addColumn<QRect>("to");
        QTest::newRow("grows") << collapsed << expanded;
        QTest::newRow("shrinks") << expanded << collapsed;
    }

    void itOnlyGrowsOrOnlyShrinks()
    {
        QFETCH(QRect, from);
        QFETCH(QRect, to);
        Setup s;
        // It comes from where it goes to, so that the animation has been through once.
        s.showAt(to);
        s.panel->setFrame(from, true);
        QTRY_VERIFY(s.rests(from));
        s.forget();
        s.panel->setFrame(to, true);
        QTRY_VERIFY(s.rests(to));
        auto before = from;
        for (const auto& sight : std::as_const(s.record.sights)) {
            const bool grows = from.width() < to.width();
            QVERIFY(grows ? sight.tab.contains(before) : before.contains(sight.tab));
            QCOMPARE(sight.tab.top(), 0);
            QVERIFY(qAbs(sight.tab.center().x() - from.center().x()) <= 1);
            before = sight.tab;
        }
    }

    void theWindowIsAsLargeAsItWillBeWhileItMoves()
    {
        Setup s;
        s.showAt(collapsed);
        s.panel->setFrame(expanded, true);
        QTRY_VERIFY(s.isUnderWay(collapsed, expanded));
        QCOMPARE(s.record.frames.last(), expanded);
        QTRY_VERIFY(s.rests(expanded));
        s.panel->setFrame(collapsed, true);
        QTRY_VERIFY(s.isUnderWay(expanded, collapsed));
        QCOMPARE(s.record.frames.last(), expanded);
        QTRY_VERIFY(s.rests(collapsed));
    }

    void itSetsOutSlowly()
    {
        Setup s;
        s.showAt(collapsed);
        QElapsedTimer elapsed;
        elapsed.start();
        s.panel->setFrame(expanded, true);
        bool isSeen = false;
        while (!s.rests(expanded) && elapsed.elapsed() < 20'000) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            const double time = std::min(1.0, double(elapsed.elapsed()) / 200);
            const double part = (s.tab().height() - collapsed.height()) / 66.0;
            // A smoothstep runs a little ahead of the curve there; the animation never does.
            if (time < 0.5)
                QVERIFY2(part <= time * time * (3 - 2 * time), QByteArray::number(part));
            isSeen = isSeen || (time < 0.4 && part > 0);
        }
        if (!isSeen)
            QSKIP("The machine is too busy to see how the animation begins");
    }

    void turnedRoundInTheMiddleItGoesOnFromWhereItIs()
    {
        Setup s;
        s.showAt(collapsed);
        s.panel->setFrame(expanded, true);
        QTRY_VERIFY(s.isUnderWay(collapsed, expanded));
        const auto reached = s.record.sights.last().tab;
        s.forget();
        s.panel->setFrame(collapsed, true);
        QCOMPARE(s.record.sights.first().tab, reached);
        QCOMPARE(s.record.frames.last(), expanded);
        QTRY_VERIFY(s.rests(collapsed));
        for (const auto& sight : std::as_const(s.record.sights))
            QVERIFY(reached.contains(sight.tab));
    }

    void turnedRoundTwiceItStillHasRoom()
    {
        Setup s;
        s.showAt(collapsed);
        s.panel->setFrame(expanded, true);
        QTRY_VERIFY(s.isUnderWay(collapsed, expanded));
        s.panel->setFrame(collapsed, true);
        s.panel->setFrame(expanded, true);
        QCOMPARE(s.record.frames.last(), expanded);
        QTRY_VERIFY(s.rests(expanded));
    }

    void toldTheSameAgainItGoesOn()
    {
        Setup s;
        s.showAt(collapsed);
        s.panel->setFrame(expanded, true);
        QTRY_VERIFY(s.isUnderWay(collapsed, expanded));
        const auto reached = s.tab();
        const auto told = s.record.frames.size();
        s.panel->setFrame(expanded, true);
        QCOMPARE(s.tab(), reached);
        QCOMPARE(s.record.frames.size(), told);
        QTRY_VERIFY(s.rests(expanded));
    }

    void anAnimationIsCutShortByAPlainChange()
    {
        Setup s;
        s.showAt(collapsed);
        s.panel->setFrame(expanded, true);
        QTRY_VERIFY(s.isUnderWay(collapsed, expanded));
        s.panel->setFrame(expanded, false);
        QVERIFY(s.rests(expanded));
        QVERIFY(rests());
    }

    void toAnotherScreenItDoesNotGrow_data()
    {
        QTest::addColumn<QRect>("place");
        QTest::newRow("beside") << expanded.translated(1512, 0);
        QTest::newRow("below") << expanded.translated(0, 982);
    }

    void toAnotherScreenItDoesNotGrow()
    {
        QFETCH(QRect, place);
        Setup s;
        s.showAt(collapsed);
        s.panel->setFrame(place, true);
        QVERIFY(s.rests(place));
        QVERIFY(rests());
    }

    void movedWhileItGrowsItRestsAtTheNewPlace()
    {
        Setup s;
        s.showAt(collapsed);
        s.panel->setFrame(expanded, true);
        QTRY_VERIFY(s.isUnderWay(collapsed, expanded));
        const auto moved = expanded.translated(300, 0);
        s.panel->setFrame(moved, false);
        QVERIFY(s.rests(moved));
        s.panel->setFrame(collapsed.translated(300, 0), true);
        QCOMPARE(s.record.frames.last(), moved);
        QTRY_VERIFY(s.rests(collapsed.translated(300, 0)));
    }

    void theShapeIsRoundBelow()
    {
        Setup s;
        s.showAt(expanded);
        s.panel->setFrame(expanded, false);
        const auto& shape = s.record.shape;
        QCOMPARE(shape, s.view->shape());
        QCOMPARE(shape.boundingRect(), QRect(0, 0, 320, 96));
        QVERIFY(shape.contains(QPoint(0, 0)));
        QVERIFY(shape.contains(QPoint(319, 0)));
        QVERIFY(!shape.contains(QPoint(1, 95)));
        QVERIFY(!shape.contains(QPoint(318, 95)));
    }

    void atRestNothingWakesUp()
    {
        Setup s;
        s.showAt(collapsed);
        s.panel->setFrame(expanded, true);
        QTRY_VERIFY(s.isUnderWay(collapsed, expanded));
        QTRY_VERIFY(s.rests(expanded));
        QVERIFY(rests());
        s.panel->setFrame(expanded, true);
        QVERIFY(rests());
    }

    void itMayGoWhileItGrows()
    {
        Setup s;
        s.showAt(collapsed);
        s.panel->setFrame(expanded, true);
        QTRY_VERIFY(s.isUnderWay(collapsed, expanded));
        s.panel.reset();
        QCOMPARE(s.record.alive, 0);
        const auto told = s.record.sights.size();
        QVERIFY(!QTest::qWaitFor([&] { return s.record.sights.size() > told; }, 300));
    }

    void itIsOrderedToTheFront()
    {
        Setup s;
        s.panel->orderFront();
        s.panel->orderFront();
        QCOMPARE(s.record.ordered, 2);
    }
};

QTEST_MAIN(OverlayPanelTest)
#include "OverlayPanelTest.moc"
