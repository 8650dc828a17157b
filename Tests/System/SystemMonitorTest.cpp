#include "Tests/System/SystemSetup.h"

#include <QTest>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

using Values = QList<double>;

static constexpr std::uint32_t lastCount = std::numeric_limits<std::uint32_t>::max();
static constexpr std::uint64_t gibi = 1024ULL * 1024 * 1024;

class SystemMonitorTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingIsKnownBeforeTheFirstSample()
    {
        SystemSetup s;
        QCOMPARE(s.monitor.cpu(), Values());
        QCOMPARE(s.monitor.mem(), Values());
        QCOMPARE(s.monitor.down(), Values());
        QCOMPARE(s.monitor.up(), Values());
        QCOMPARE(s.monitor.diskUsed(), 0.0);
        QCOMPARE(s.monitor.diskFreeText(), QString());
        QCOMPARE(s.monitor.memText(), QString());
        QCOMPARE(s.monitor.batteryText(), u"No battery"_s);
        QCOMPARE(s.monitor.batteryLevel(), std::nullopt);
        QVERIFY(!s.ticker.isRunning());
    }

    void attachingSamplesAtOnceAndThenEveryTwoSeconds()
    {
        SystemSetup s;
        s.transfer(0, 0);
        s.monitor.attach();
        QCOMPARE(s.monitor.down().size(), 1);
        QCOMPARE(s.ticker.interval, std::chrono::seconds(2));
        s.sampleAfter(2);
        QCOMPARE(s.monitor.down().size(), 2);
        s.monitor.attach();
        QCOMPARE(s.monitor.down().size(), 2);
    }

    void theFirstSampleHasNothingToCompareWith()
    {
        SystemSetup s;
        s.counters.ticks = { .user = 5000, .system = 100, .idle = 10, .nice = 1 };
        s.counters.memory = { .usedBytes = 4 * gibi, .physicalBytes = 16 * gibi };
        s.transfer(1'000'000, 1'000'000);
        s.monitor.attach();
        QCOMPARE(s.monitor.cpu(), Values { 0 });
        QCOMPARE(s.monitor.down(), Values { 0 });
        QCOMPARE(s.monitor.up(), Values { 0 });
        QCOMPARE(s.monitor.mem(), Values { 25 });
    }

    void samplingGoesOnUntilTheLastViewHasGone()
    {
        SystemSetup s;
        s.monitor.attach();
        s.monitor.attach();
        s.monitor.detach();
        QVERIFY(s.ticker.isRunning());
        QVERIFY(s.power.isFollowed);
        s.monitor.detach();
        QVERIFY(!s.ticker.isRunning());
        QVERIFY(!s.power.isFollowed);
    }

    void aDetachTooManyCountsForNothing()
    {
        SystemSetup s;
        s.monitor.detach();
        QVERIFY(!s.ticker.isRunning());
        s.monitor.attach();
        s.monitor.attach();
        s.monitor.detach();
        QVERIFY(s.ticker.isRunning());
        s.monitor.detach();
        QVERIFY(!s.ticker.isRunning());
    }

    void aRestartKeepsTheHistoriesAndBeginsWithZeros()
    {
        SystemSetup s;
        s.work(0);
        s.transfer(0, 0);
        s.monitor.attach();
        s.work(40);
        s.transfer(2000, 1000);
        s.sampleAfter(2);
        s.monitor.detach();
        s.work(100);
        s.transfer(500'000, 500'000);
        s.clock.advance(3600);
        s.monitor.attach();
        QCOMPARE(s.monitor.cpu(), (Values { 0, 40, 0 }));
        QCOMPARE(s.monitor.down(), (Values { 0, 1000, 0 }));
        QCOMPARE(s.monitor.up(), (Values { 0, 500, 0 }));
    }

    void userSystemAndNiceAreBusy()
    {
        SystemSetup s;
        s.counters.ticks = { .user = 100, .system = 200, .idle = 300, .nice = 400 };
        s.monitor.attach();
        s.counters.ticks = { .user = 110, .system = 220, .idle = 330, .nice = 440 };
        s.sampleAfter(2);
        QCOMPARE(s.monitor.cpu().last(), 70.0);
    }

    void ticksThatDidNotMoveAreNoLoad()
    {
        SystemSetup s;
        s.counters.ticks = { .user = 7, .system = 7, .idle = 7, .nice = 7 };
        s.monitor.attach();
        s.sampleAfter(2);
        QCOMPARE(s.monitor.cpu(), (Values { 0, 0 }));
    }

    void aTickCounterThatBeganAgainMadeASmallStep()
    {
        SystemSetup s;
        s.counters.ticks = { .user = lastCount, .idle = lastCount - 9 };
        s.monitor.attach();
        s.counters.ticks = { .user = 29, .idle = 60 };
        s.sampleAfter(2);
        QCOMPARE(s.monitor.cpu().last(), 30.0);
    }

    void ticksThatCannotBeReadPushNothingAndKeepTheBaseline()
    {
        SystemSetup s;
        s.work(0);
        s.monitor.attach();
        s.counters.ticks.reset();
        s.sampleAfter(2);
        QCOMPARE(s.monitor.cpu(), Values { 0 });
        s.counters.ticks = { .user = 20, .idle = 180 };
        s.sampleAfter(2);
        QCOMPARE(s.monitor.cpu(), (Values { 0, 20 }));
    }

    void memoryIsToldInBinaryGigabytes()
    {
        SystemSetup s;
        s.counters.memory = { .usedBytes = gibi * 112 / 10, .physicalBytes = 16 * gibi };
        s.monitor.attach();
        QCOMPARE(s.monitor.memText(), u"11.2 of 16.0 GB"_s);
        QVERIFY(qAbs(s.monitor.mem().last() - 70) < 1e-6);
    }

    void memoryThatCannotBeReadStaysAsItWas()
    {
        SystemSetup s;
        s.counters.memory = { .usedBytes = gibi, .physicalBytes = 4 * gibi };
        s.monitor.attach();
        s.counters.memory.reset();
        s.sampleAfter(2);
        QCOMPARE(s.monitor.mem(), Values { 25 });
        QCOMPARE(s.monitor.memText(), u"1.0 of 4.0 GB"_s);
    }

    void disksAreToldInDecimalGigabytes()
    {
        SystemSetup s;
        s.counters.volume = { .availableBytes = 212'000'000'000, .totalBytes = 494'000'000'000 };
        s.monitor.attach();
        QCOMPARE(s.monitor.diskFreeText(), u"212 GB free of 494 GB"_s);
        QCOMPARE(s.monitor.diskUsed(), (1 - 212.0 / 494.0) * 100);
    }

    void aDiskThatCannotBeReadOrHasNoSizeStaysAsItWas()
    {
        SystemSetup s;
        s.counters.volume = { .availableBytes = 1'000'000'000, .totalBytes = 4'000'000'000 };
        s.monitor.attach();
        s.counters.volume = VolumeSpace { .availableBytes = 0, .totalBytes = 0 };
        s.sampleAfter(2);
        s.counters.volume.reset();
        s.sampleAfter(2);
        QCOMPARE(s.monitor.diskFreeText(), u"1 GB free of 4 GB"_s);
        QCOMPARE(s.monitor.diskUsed(), 75.0);
    }

    void theFirstUsablePowerSourceIsTold()
    {
        SystemSetup s;
        s.power.list = {
            { .maxCapacity = 100 },
            { .currentCapacity = 50 },
            { .currentCapacity = 50, .maxCapacity = 0 },
            { .currentCapacity = 87, .maxCapacity = 100, .minutesToEmpty = 185 },
            { .currentCapacity = 10, .maxCapacity = 100 },
        };
        s.monitor.attach();
        QCOMPARE(s.monitor.batteryLevel(), 87.0);
        QCOMPARE(s.monitor.batteryText(), u"87% · on battery · 3h 5m left"_s);
    }

    void noUsablePowerSourceIsNoBattery_data()
    {
        QTest::addColumn<QList<PowerSource>>("sources");
        QTest::newRow("none at all") << QList<PowerSource>();
        QTest::newRow("none usable")
            << QList<PowerSource> { { .currentCapacity = 50, .maxCapacity = 0 } };
    }

    void noUsablePowerSourceIsNoBattery()
    {
        QFETCH(QList<PowerSource>, sources);
        SystemSetup s;
        s.power.list = { { .currentCapacity = 87, .maxCapacity = 100 } };
        s.monitor.attach();
        s.power.list = sources;
        s.sampleAfter(2);
        QCOMPARE(s.monitor.batteryLevel(), std::nullopt);
        QCOMPARE(s.monitor.batteryText(), u"No battery"_s);
    }

    void powerSourcesThatAreNotKnownChangeNothing()
    {
        SystemSetup s;
        s.power.list = { { .currentCapacity = 87, .maxCapacity = 100 } };
        s.monitor.attach();
        s.power.list.reset();
        s.sampleAfter(2);
        QCOMPARE(s.monitor.batteryLevel(), 87.0);
        QCOMPARE(s.monitor.batteryText(), u"87% · on battery"_s);
    }

    void aChangeOfTheBatteryIsToldAtOnce()
    {
        SystemSetup s;
        s.monitor.attach();
        s.power.list = { { .currentCapacity = 1, .maxCapacity = 4, .isOnMains = true } };
        Q_EMIT s.power.changed();
        QCOMPARE(s.monitor.batteryText(), u"25% · plugged in"_s);
        QCOMPARE(s.monitor.down().size(), 1);
    }

    void ratesAreWhatWasTransferredByTheTimeItTook()
    {
        SystemSetup s;
        s.transfer(0, 0);
        s.monitor.attach();
        s.transfer(5000, 250);
        s.sampleAfter(2.5);
        QCOMPARE(s.monitor.down().last(), 2000.0);
        QCOMPARE(s.monitor.up().last(), 100.0);
    }

    void samplesCloseTogetherCountAsATenthOfASecondApart()
    {
        SystemSetup s;
        s.transfer(0, 0);
        s.monitor.attach();
        s.transfer(1000, 100);
        s.sampleAfter(0.01);
        QCOMPARE(s.monitor.down().last(), 10'000.0);
        QCOMPARE(s.monitor.up().last(), 1000.0);
    }

    void aByteCounterThatBeganAgainMadeASmallStep()
    {
        SystemSetup s;
        s.counters.network = { { u"eth0"_s, { .received = lastCount - 99, .sent = lastCount } } };
        s.monitor.attach();
        s.counters.network = { { u"eth0"_s, { .received = 100, .sent = 19 } } };
        s.sampleAfter(2);
        QCOMPARE(s.monitor.down().last(), 100.0);
        QCOMPARE(s.monitor.up().last(), 10.0);
    }

    void allInterfacesCountTogether()
    {
        SystemSetup s;
        s.counters.network = { { u"eth0"_s, { 10, 10 } }, { u"wlan0"_s, { 20, 20 } } };
        s.monitor.attach();
        s.counters.network = { { u"eth0"_s, { 1010, 30 } }, { u"wlan0"_s, { 3020, 60 } } };
        s.sampleAfter(2);
        QCOMPARE(s.monitor.down().last(), 2000.0);
        QCOMPARE(s.monitor.up().last(), 30.0);
    }

    void anInterfaceThatIsNewOrGoneCountsNothing()
    {
        SystemSetup s;
        s.counters.network = { { u"eth0"_s, { 10, 10 } }, { u"wlan0"_s, { 20, 20 } } };
        s.monitor.attach();
        s.counters.network = { { u"eth0"_s, { 210, 10 } }, { u"tun0"_s, { 9000, 9000 } } };
        s.sampleAfter(2);
        QCOMPARE(s.monitor.down().last(), 100.0);
        QCOMPARE(s.monitor.up().last(), 0.0);
        // Back again, it has been forgotten.
        s.counters.network = { { u"wlan0"_s, { 5000, 5000 } } };
        s.sampleAfter(2);
        QCOMPARE(s.monitor.down().last(), 0.0);
    }

    void aNetworkThatCannotBeReadIsQuietAndKeepsTheBaseline()
    {
        SystemSetup s;
        s.transfer(0, 0);
        s.monitor.attach();
        s.counters.network.reset();
        s.sampleAfter(2);
        QCOMPARE(s.monitor.down().last(), 0.0);
        s.counters.network = { { u"eth0"_s, { 4000, 0 } } };
        s.sampleAfter(2);
        QCOMPARE(s.monitor.down(), (Values { 0, 0, 2000 }));
    }

    void theNewestSixtySamplesAreKept()
    {
        SystemSetup s;
        s.work(0);
        s.transfer(0, 0);
        s.counters.memory = { .usedBytes = 0, .physicalBytes = 100 };
        s.monitor.attach();
        for (unsigned number = 2; number <= 61; ++number) {
            s.work(number);
            s.transfer(2 * number, 4 * number);
            s.counters.memory->usedBytes = number;
            s.sampleAfter(2);
        }
        for (int index = 0; index < 60; ++index) {
            const double number = index + 2;
            QCOMPARE(s.monitor.cpu().at(index), number / 100 * 100);
            QCOMPARE(s.monitor.mem().at(index), number / 100 * 100);
            QCOMPARE(s.monitor.down().at(index), number);
            QCOMPARE(s.monitor.up().at(index), 2 * number);
        }
        QCOMPARE(s.monitor.cpu().size(), 60);
        QCOMPARE(s.monitor.mem().size(), 60);
        QCOMPARE(s.monitor.down().size(), 60);
        QCOMPARE(s.monitor.up().size(), 60);
    }

    void everyChangeIsAnnouncedBeforeItIsStored()
    {
        SystemSetup s;
        s.work(0);
        s.transfer(0, 0);
        s.counters.memory = { .usedBytes = 1, .physicalBytes = 2 };
        s.counters.volume = { .availableBytes = 1, .totalBytes = 2 };
        s.power.list.emplace();
        int announcements = 0;
        connect(&s.monitor, &Model::willChange, this, [&] {
            if (announcements++ == 0)
                QCOMPARE(s.monitor.cpu(), Values());
        });
        s.monitor.attach();
        QCOMPARE(announcements, 9);
    }

    void theTimerOutlivesTheMonitorWithoutHarm()
    {
        FakeMachineCounters counters;
        FakePowerSources power;
        FakeClock clock;
        FakeTicker ticker;
        auto monitor = std::make_unique<SystemMonitor>(counters, power, clock, ticker);
        monitor->attach();
        monitor.reset();
        ticker.fire();
    }

    void ratesAreToldInTheUnitThatFits_data()
    {
        QTest::addColumn<double>("rate");
        QTest::addColumn<QString>("text");
        const auto row = [](double rate, const QString& text) {
            QTest::newRow(qPrintable(text)) << rate << text;
        };
        row(0, u"0 B/s"_s);
        row(512, u"512 B/s"_s);
        row(1023.9, u"1024 B/s"_s);
        row(1024, u"1.0 KB/s"_s);
        row(1536, u"1.5 KB/s"_s);
        row(1024 * 1024 - 1, u"1024.0 KB/s"_s);
        row(1024 * 1024, u"1.0 MB/s"_s);
        row(1024.0 * 1024 * 1024, u"1.0 GB/s"_s);
        row(1024.0 * 1024 * 1024 * 5000, u"5000.0 GB/s"_s);
    }

    void ratesAreToldInTheUnitThatFits()
    {
        QFETCH(double, rate);
        QFETCH(QString, text);
        QCOMPARE(SystemMonitor::rate(rate), text);
    }
};

QTEST_GUILESS_MAIN(SystemMonitorTest)
#include "SystemMonitorTest.moc"
