#include "App/System/SystemView.h"
#include "App/System/Sparkline.h"
#include "App/System/StatHeading.h"
#include "App/System/StatRow.h"
#include "App/Ui/Bar.h"
#include "App/Ui/Label.h"
#include "App/Ui/Theme.h"
#include "Tests/Fakes/FakeProcessInfo.h"
#include "Tests/System/SystemSetup.h"
#include "Tests/Ui/Painted.h"

#include <QAccessible>
#include <QShowEvent>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

struct Setup : SystemSetup {
    Setup()
    {
        Theme::apply({});
        window.resize(400, 439);
        counters.memory = { .usedBytes = 4ULL << 30U, .physicalBytes = 16ULL << 30U };
        counters.volume = { .availableBytes = 212'000'000'000, .totalBytes = 494'000'000'000 };
        power.list.emplace();
        work(0);
        transfer(0, 0);
        info.state = ThermalState::nominal;
        info.uptime = std::chrono::hours(37);
    }

    void show()
    {
        view = std::make_unique<SystemView>(monitor, info);
        view->setParent(&window);
        view->setGeometry(window.rect());
        window.show();
        view->show();
        QCoreApplication::processEvents();
    }

    void sample()
    {
        sampleAfter(2);
        QCoreApplication::processEvents();
    }

    StatRow& row(const QString& title)
    {
        for (auto* const row : view->findChildren<StatRow*>()) {
            if (row->title() == title)
                return *row;
        }
        qFatal("No such row");
    }

    QString value(const QString& title) { return row(title).value(); }
    Sparkline& chart(const QString& title) { return *row(title).findChild<Sparkline*>(); }
    Bar& bar(const QString& title) { return *row(title).findChild<Bar*>(); }
    QString footer() { return view->findChild<Label*>(u"footer"_s)->text(); }

    // In the view's coordinates.
    QRect placeOf(QWidget& widget) { return { widget.mapTo(view.get(), QPoint()), widget.size() }; }

    QColor colorOf(Bar& bar) { return bar.grab().toImage().pixelColor(10, 3); }

    FakeProcessInfo info;
    QWidget window;
    std::unique_ptr<SystemView> view;
};

class SystemViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theRowsStandInTheirOrderWithTheirFirstValues()
    {
        Setup s;
        s.show();
        QStringList rows;
        for (auto* const row : s.view->findChildren<StatRow*>())
            rows << row->title() + u'|' + row->value();
        QCOMPARE(rows,
            (QStringList { u"CPU|0%"_s, u"Memory|4.0 of 16.0 GB"_s, u"Disk|212 GB free of 494 GB"_s,
                u"Battery|No battery"_s, u"Download|0 B/s"_s, u"Upload|0 B/s"_s }));
        QCOMPARE(s.footer(), u"Thermal: Normal · Up 37h"_s);
    }

    void everythingStandsInItsPlace()
    {
        Setup s;
        s.power.list = { { .currentCapacity = 87, .maxCapacity = 100 } };
        s.show();
        QCOMPARE(s.placeOf(s.row(u"CPU"_s)), QRect(14, 14, 372, 52));
        QCOMPARE(s.placeOf(s.chart(u"CPU"_s)), QRect(14, 32, 372, 34));
        QCOMPARE(s.placeOf(*s.row(u"CPU"_s).findChild<StatHeading*>()), QRect(14, 14, 372, 15));
        QCOMPARE(s.placeOf(s.row(u"Memory"_s)), QRect(14, 78, 372, 52));
        QCOMPARE(s.placeOf(s.row(u"Disk"_s)), QRect(14, 142, 372, 24));
        QCOMPARE(s.placeOf(s.bar(u"Disk"_s)), QRect(14, 160, 372, 6));
        QCOMPARE(s.placeOf(s.row(u"Battery"_s)), QRect(14, 178, 372, 24));
        QCOMPARE(s.placeOf(s.row(u"Download"_s)), QRect(14, 214, 372, 52));
        QCOMPARE(s.placeOf(s.row(u"Upload"_s)), QRect(14, 278, 372, 52));
        const auto footer = s.placeOf(*s.view->findChild<Label*>(u"footer"_s));
        QCOMPARE(footer.top(), 342);
        QCOMPARE(footer.height(), 14);
        QCOMPARE(footer.center().x(), 199);
    }

    void withoutABatteryItsRowIsTheHeadingOnly()
    {
        Setup s;
        s.show();
        QVERIFY(s.bar(u"Battery"_s).isHidden());
        QCOMPARE(s.placeOf(s.row(u"Battery"_s)), QRect(14, 178, 372, 15));
        QCOMPARE(s.placeOf(s.row(u"Download"_s)).top(), 205);
    }

    void aBatteryThatComesAndGoesTakesItsBarAlong()
    {
        Setup s;
        s.show();
        s.power.list = { { .currentCapacity = 435, .maxCapacity = 500 } };
        s.sample();
        QVERIFY(s.bar(u"Battery"_s).isVisible());
        QCOMPARE(s.bar(u"Battery"_s).fraction(), 0.87);
        QCOMPARE(s.value(u"Battery"_s), u"87% · on battery"_s);
        s.power.list->clear();
        s.sample();
        QVERIFY(s.bar(u"Battery"_s).isHidden());
        QCOMPARE(s.value(u"Battery"_s), u"No battery"_s);
    }

    void theBatteryIsRedBelowTwentyPercentAsMeasured_data()
    {
        QTest::addColumn<int>("permille");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isRed");
        QTest::newRow("rounded up to twenty") << 196 << u"20% · on battery"_s << true;
        QTest::newRow("twenty") << 200 << u"20% · on battery"_s << false;
        QTest::newRow("full") << 1000 << u"100% · on battery"_s << false;
    }

    void theBatteryIsRedBelowTwentyPercentAsMeasured()
    {
        QFETCH(int, permille);
        QFETCH(QString, text);
        QFETCH(bool, isRed);
        Setup s;
        s.power.list = { { .currentCapacity = permille, .maxCapacity = 1000 } };
        s.show();
        const auto& colors = Theme::current().colors;
        QCOMPARE(s.value(u"Battery"_s), text);
        QCOMPARE(s.colorOf(s.bar(u"Battery"_s)), isRed ? colors.red : colors.green);
    }

    void theDiskBarShowsWhatIsUsed()
    {
        Setup s;
        s.show();
        QCOMPARE(s.bar(u"Disk"_s).fraction(), 1 - 212.0 / 494);
        QCOMPARE(s.colorOf(s.bar(u"Disk"_s)), Theme::current().colors.mark);
    }

    void theChartsFollowTheHistories()
    {
        Setup s;
        s.show();
        s.work(29);
        s.transfer(3072, 512);
        s.sample();
        QCOMPARE(s.value(u"CPU"_s), u"29%"_s);
        QCOMPARE(s.value(u"Download"_s), u"1.5 KB/s"_s);
        QCOMPARE(s.value(u"Upload"_s), u"256 B/s"_s);
        QCOMPARE(s.chart(u"CPU"_s).values(), s.monitor.cpu());
        QCOMPARE(s.chart(u"Memory"_s).values(), (QList<double> { 25, 25 }));
        QCOMPARE(s.chart(u"Download"_s).values(), (QList<double> { 0, 1536 }));
        QCOMPARE(s.chart(u"Upload"_s).values(), (QList<double> { 0, 256 }));
    }

    void processorAndMemoryAreDrawnToAHundred()
    {
        Setup s;
        s.show();
        QCOMPARE(s.chart(u"CPU"_s).maxY(), 100.0);
        QCOMPARE(s.chart(u"Memory"_s).maxY(), 100.0);
    }

    void bothDirectionsOfTheNetworkAreDrawnToOneScale()
    {
        Setup s;
        s.show();
        QCOMPARE(s.chart(u"Download"_s).maxY(), 1024.0);
        QCOMPARE(s.chart(u"Upload"_s).maxY(), 1024.0);
        constexpr std::uint32_t mega = 1024 * 1024;
        s.transfer(10, 20 * mega);
        s.sample();
        QCOMPARE(s.chart(u"Download"_s).maxY(), 12.0 * mega);
        QCOMPARE(s.chart(u"Upload"_s).maxY(), 12.0 * mega);
    }

    void everyChartHasItsColour()
    {
        Setup s;
        s.show();
        s.sample();
        const auto& colors = Theme::current().colors;
        // At the bottom of an area of some height, and on the flat lines of a quiet network.
        const auto inked = [&](const QString& title) {
            return s.chart(title).grab().toImage().pixelColor(2, 33);
        };
        QCOMPARE(inked(u"CPU"_s), colors.blue);
        QCOMPARE(inked(u"Download"_s), colors.green);
        QCOMPARE(inked(u"Upload"_s), colors.orange);
        // Memory at a quarter: 34 - 0.75 - 0.25 * 32.5 = 25.1
        const auto line = s.chart(u"Memory"_s).grab().toImage().pixelColor(2, 24);
        QVERIFY(line.green() < 200);
        QVERIFY(line.red() > line.green());
    }

    void theFooterIsReadAgainAtEverySample()
    {
        Setup s;
        s.show();
        s.info.uptime = std::chrono::hours(38);
        s.sample();
        QCOMPARE(s.footer(), u"Thermal: Normal · Up 38h"_s);
        s.info.isLowPower = true;
        Q_EMIT s.info.changed();
        QCOMPARE(s.footer(), u"Thermal: Normal · Low Power Mode · Up 38h"_s);
    }

    void theMachineIsSampledOnlyWhileTheViewIsOnScreen()
    {
        Setup s;
        s.view = std::make_unique<SystemView>(s.monitor, s.info);
        QVERIFY(!s.ticker.isRunning());
        s.show();
        QVERIFY(s.ticker.isRunning());
        QVERIFY(s.info.isFollowed);
        s.window.hide();
        QVERIFY(!s.ticker.isRunning());
        QVERIFY(!s.info.isFollowed);
        s.window.show();
        QVERIFY(s.ticker.isRunning());
        s.view.reset();
        QVERIFY(!s.ticker.isRunning());
        QVERIFY(!s.info.isFollowed);
    }

    void beingShownTwiceCountsOnce()
    {
        Setup s;
        s.show();
        QShowEvent mapped; // As the window system sends it when a window comes back.
        QCoreApplication::sendEvent(s.view.get(), &mapped);
        s.window.hide();
        QVERIFY(!s.ticker.isRunning());
    }

    void aViewUnderAClosedWindowSamplesNothing()
    {
        Setup s;
        s.view = std::make_unique<SystemView>(s.monitor, s.info);
        s.view->setParent(&s.window);
        s.view->show();
        QVERIFY(!s.ticker.isRunning());
    }

    void theFirstPictureShowsTheFirstSample()
    {
        Setup s;
        s.show();
        s.window.hide();
        s.counters.memory->usedBytes *= 2;
        s.window.show();
        QCOMPARE(s.value(u"Memory"_s), u"8.0 of 16.0 GB"_s);
    }

    void onlyWhatChangedIsPainted()
    {
        Setup s;
        s.show();
        s.sample();
        const Painted disk(s.bar(u"Disk"_s));
        const Painted diskHeading(*s.row(u"Disk"_s).findChild<StatHeading*>());
        const Painted chart(s.chart(u"Memory"_s));
        const Painted heading(*s.row(u"Memory"_s).findChild<StatHeading*>());
        s.sample();
        QCOMPARE(disk.count, 0);
        QCOMPARE(diskHeading.count, 0);
        QCOMPARE(chart.count, 1);
        QCOMPARE(heading.count, 0);
    }

    void assistiveTechnologyHearsEveryRow()
    {
        Setup s;
        s.power.list = { { .currentCapacity = 87, .maxCapacity = 100, .minutesToEmpty = 185 } };
        s.show();
        QStringList rows;
        QStringList headings;
        for (auto* const row : s.view->findChildren<StatRow*>()) {
            auto* const group = QAccessible::queryAccessibleInterface(row);
            QCOMPARE(group->role(), QAccessible::Grouping);
            rows << group->text(QAccessible::Name);
            auto* const heading = group->child(0);
            QCOMPARE(heading->role(), QAccessible::StaticText);
            headings << heading->text(QAccessible::Name);
        }
        QCOMPARE(rows,
            (QStringList {
                u"CPU"_s, u"Memory"_s, u"Disk"_s, u"Battery"_s, u"Download"_s, u"Upload"_s }));
        QCOMPARE(headings,
            (QStringList { u"CPU: 0%"_s, u"Memory: 4.0 of 16.0 GB"_s,
                u"Disk: 212 GB free of 494 GB"_s, u"Battery: 87% · on battery · 3h 5m left"_s,
                u"Download: 0 B/s"_s, u"Upload: 0 B/s"_s }));
        auto* const bar = QAccessible::queryAccessibleInterface(&s.bar(u"Battery"_s));
        QCOMPARE(bar->valueInterface()->currentValue(), 87);
        auto* const chart = QAccessible::queryAccessibleInterface(&s.chart(u"Download"_s));
        QCOMPARE(chart->text(QAccessible::Name), u"Download history"_s);
        QCOMPARE(chart->text(QAccessible::Description),
            u"Newest 0 B/s, lowest 0 B/s, highest 0 B/s, on a scale up to 1.0 KB/s"_s);
    }
};

QTEST_MAIN(SystemViewTest)
#include "SystemViewTest.moc"
