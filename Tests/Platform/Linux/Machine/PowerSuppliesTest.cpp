#include "App/Platform/Linux/Machine/PowerSupplies.h"
#include "Tests/Support/SysfsFolder.h"

#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

struct Setup {
    SysfsFolder folder;

    void addBattery(const QString& name, const char* status)
    {
        folder.add(name,
            {
                { "type", "Battery" },
                { "status", status },
                { "present", "1" },
                { "energy_now", "30000000" },
                { "energy_full", "60000000" },
                { "power_now", "12000000" },
            });
    }

    void addMains(const QByteArray& online)
    {
        folder.write(u"AC/type"_s, "Mains");
        folder.write(u"AC/online"_s, online);
    }

    QList<PowerSource> read() const { return PowerSupplies::read(folder.path()); }
};

constexpr PowerSource halfFull {
    .currentCapacity = 30'000'000,
    .maxCapacity = 60'000'000,
    .isCharging = false,
    .isOnMains = false,
    .minutesToEmpty = 150,
};

}

class PowerSuppliesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBatteryInUse()
    {
        Setup s;
        s.addBattery(u"BAT0"_s, "Discharging");
        s.addMains("0");
        QCOMPARE(s.read(), QList { halfFull });
    }

    void aBatteryOnMains_data()
    {
        QTest::addColumn<QByteArray>("status");
        QTest::addColumn<bool>("isCharging");
        QTest::newRow("charging") << QByteArray("Charging") << true;
        QTest::newRow("kept from charging") << QByteArray("Not charging") << false;
        QTest::newRow("full") << QByteArray("Full") << false;
        QTest::newRow("of a weak charger") << QByteArray("Discharging") << false;
        QTest::newRow("of which nothing is known") << QByteArray("Unknown") << false;
    }

    void aBatteryOnMains()
    {
        QFETCH(QByteArray, status);
        QFETCH(bool, isCharging);
        Setup s;
        s.addBattery(u"BAT0"_s, status);
        s.addMains("1");
        auto expected = halfFull;
        expected.isCharging = isCharging;
        expected.isOnMains = true;
        expected.minutesToEmpty = {};
        QCOMPARE(s.read(), QList { expected });
    }

    void theBatteryTellsOfMainsWhereNothingElseDoes_data()
    {
        QTest::addColumn<QByteArray>("status");
        QTest::addColumn<bool>("isOnMains");
        QTest::newRow("charging") << QByteArray("Charging") << true;
        QTest::newRow("not charging") << QByteArray("Not charging") << true;
        QTest::newRow("full") << QByteArray("Full") << true;
        QTest::newRow("discharging") << QByteArray("Discharging") << false;
        QTest::newRow("unknown") << QByteArray("Unknown") << false;
    }

    void theBatteryTellsOfMainsWhereNothingElseDoes()
    {
        QFETCH(QByteArray, status);
        QFETCH(bool, isOnMains);
        Setup s;
        s.addBattery(u"BAT0"_s, status);
        QCOMPARE(s.read().first().isOnMains, isOnMains);
    }

    void anyOnlineSupplyIsMains_data()
    {
        QTest::addColumn<QByteArray>("type");
        for (const auto* type : { "Mains", "USB", "USB_C", "USB_PD", "Wireless" })
            QTest::newRow(type) << QByteArray(type);
    }

    void anyOnlineSupplyIsMains()
    {
        QFETCH(QByteArray, type);
        Setup s;
        s.addBattery(u"BAT0"_s, "Not charging");
        s.addMains("0");
        s.folder.write(u"other/type"_s, type);
        s.folder.write(u"other/online"_s, "1");
        QVERIFY(s.read().first().isOnMains);
        s.folder.write(u"other/online"_s, "0");
        QVERIFY(!s.read().first().isOnMains);
    }

    void severalBatteriesAreOne()
    {
        Setup s;
        s.addBattery(u"BAT0"_s, "Discharging");
        s.addBattery(u"BAT1"_s, "Not charging");
        s.folder.add(u"BAT1"_s, { { "energy_now", "6000000" }, { "energy_full", "20000000" } });
        s.folder.write(u"BAT1/power_now"_s, "0");
        s.addMains("0");
        auto expected = halfFull;
        expected.currentCapacity = 36'000'000;
        expected.maxCapacity = 80'000'000;
        expected.minutesToEmpty = 180;
        QCOMPARE(s.read(), QList { expected });
        s.folder.write(u"BAT0/status"_s, "Full");
        s.folder.write(u"BAT1/status"_s, "Charging");
        QVERIFY(s.read().first().isCharging);
    }

    void countsChargeWhereThereIsNoEnergy()
    {
        Setup s;
        s.folder.add(u"battery"_s,
            {
                { "type", "Battery" },
                { "status", "Discharging" },
                { "charge_now", "1000000" },
                { "charge_full", "4000000" },
                { "current_now", "-500000" },
            });
        const PowerSource expected {
            .currentCapacity = 1'000'000,
            .maxCapacity = 4'000'000,
            .minutesToEmpty = 120,
        };
        QCOMPARE(s.read(), QList { expected });
    }

    void countsPercentWhereUnitsDiffer()
    {
        Setup s;
        s.addBattery(u"BAT0"_s, "Discharging");
        s.folder.write(u"BAT0/capacity"_s, "50");
        s.folder.add(
            u"BAT1"_s, { { "type", "Battery" }, { "status", "Unknown" }, { "capacity", "20" } });
        const auto source = s.read().first();
        QCOMPARE(source.currentCapacity, 70);
        QCOMPARE(source.maxCapacity, 200);
        QVERIFY(!source.minutesToEmpty);
    }

    void takesTheBatterysOwnWordForTheTimeLeft()
    {
        Setup s;
        s.folder.add(u"BAT0"_s,
            {
                { "type", "Battery" },
                { "status", "Discharging" },
                { "capacity", "50" },
                { "time_to_empty_now", "5400" },
            });
        QCOMPARE(s.read().first().minutesToEmpty, 90);
    }

    void aTrickleTellsNoTimeLeft()
    {
        Setup s;
        s.addBattery(u"BAT0"_s, "Discharging");
        s.folder.write(u"BAT0/power_now"_s, "1000");
        QVERIFY(!s.read().first().minutesToEmpty);
        s.folder.write(u"BAT0/power_now"_s, "0");
        QVERIFY(!s.read().first().minutesToEmpty);
    }

    void countsNoBatteryOfAnotherDeviceAndNoEmptyBay()
    {
        Setup s;
        s.addMains("1");
        s.addBattery(u"BAT1"_s, "Unknown");
        s.folder.write(u"BAT1/present"_s, "0");
        s.addBattery(u"hidpp_battery_0"_s, "Discharging");
        s.folder.write(u"hidpp_battery_0/scope"_s, "Device");
        QVERIFY(s.read().isEmpty());
    }

    void anEmptyOrMissingFolderHoldsNoBattery()
    {
        const Setup s;
        QVERIFY(s.read().isEmpty());
        QVERIFY(PowerSupplies::read(u"/nonexistent"_s).isEmpty());
    }

    void moreThanFullIsFull()
    {
        Setup s;
        s.addBattery(u"BAT0"_s, "Full");
        s.folder.write(u"BAT0/energy_now"_s, "61000000");
        QCOMPARE(s.read().first().currentCapacity, 60'000'000);
    }

    void aBatteryWithoutAUsableFigureDoesNotCount_data()
    {
        QTest::addColumn<QByteArray>("now");
        QTest::addColumn<QByteArray>("full");
        QTest::newRow("junk") << QByteArray("x") << QByteArray("60000000");
        QTest::newRow("negative") << QByteArray("-1") << QByteArray("60000000");
        QTest::newRow("nothing") << QByteArray("0") << QByteArray("0");
        QTest::newRow("absurd") << QByteArray("9223372036854775807")
                                << QByteArray("9223372036854775807");
        QTest::newRow("huge") << QByteArray(100'000, '1') << QByteArray("60000000");
    }

    void aBatteryWithoutAUsableFigureDoesNotCount()
    {
        QFETCH(QByteArray, now);
        QFETCH(QByteArray, full);
        Setup s;
        s.addBattery(u"BAT0"_s, "Discharging");
        s.folder.write(u"BAT0/energy_now"_s, now);
        s.folder.write(u"BAT0/energy_full"_s, full);
        QVERIFY(s.read().isEmpty());
        s.addBattery(u"BAT1"_s, "Discharging");
        QCOMPARE(s.read(), QList { halfFull });
    }

    void junkInTheFolderHarmsNothing()
    {
        Setup s;
        s.addBattery(u"BAT0"_s, "Discharging");
        s.addMains("0");
        s.folder.write(u"a file"_s, "Battery");
        s.folder.write(u"huge/type"_s, QByteArray(1'000'000, 'B'));
        s.folder.write(u"fifo/scope"_s, "System");
        const auto fifo = QFile::encodeName(s.folder.path(u"fifo/type"_s));
        QCOMPARE(mkfifo(fifo.constData(), 0600), 0);
        QVERIFY(QFile::link(s.folder.path(), s.folder.path(u"circle"_s)));
        s.folder.write(u"BAT0/power_now"_s, "-9223372036854775808");
        s.folder.write(u"BAT0/time_to_empty_now"_s, "-5");
        auto expected = halfFull;
        expected.minutesToEmpty = 0;
        QCOMPARE(s.read(), QList { expected });
    }
};

QTEST_GUILESS_MAIN(PowerSuppliesTest)
#include "PowerSuppliesTest.moc"
