#include "App/Platform/Linux/Machine/ThermalZones.h"
#include "Tests/Support/SysfsFolder.h"

#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

struct Setup {
    SysfsFolder folder;

    void addZone(int number, const QByteArray& temperature)
    {
        const auto zone = u"thermal_zone%1"_s.arg(number);
        folder.write(zone + u"/temp"_s, temperature);
        folder.add(zone,
            {
                { "trip_point_0_type", "critical" },
                { "trip_point_0_temp", "100000" },
                { "trip_point_1_type", "hot" },
                { "trip_point_1_temp", "95000" },
                { "trip_point_2_type", "passive" },
                { "trip_point_2_temp", "85000" },
                { "trip_point_3_type", "active" },
                { "trip_point_3_temp", "60000" },
            });
    }

    ThermalState read() const { return ThermalZones::read(folder.path()); }
};

}

class ThermalZonesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aZoneIsAsHotAsTheHighestTripThatItReached_data()
    {
        QTest::addColumn<QByteArray>("temperature");
        QTest::addColumn<ThermalState>("state");
        QTest::newRow("cold") << QByteArray("-5000") << ThermalState::nominal;
        QTest::newRow("cool") << QByteArray("59999") << ThermalState::nominal;
        QTest::newRow("active") << QByteArray("60000") << ThermalState::fair;
        QTest::newRow("passive") << QByteArray("85000") << ThermalState::serious;
        QTest::newRow("hot") << QByteArray("95000") << ThermalState::critical;
        QTest::newRow("critical") << QByteArray("100000") << ThermalState::critical;
    }

    void aZoneIsAsHotAsTheHighestTripThatItReached()
    {
        QFETCH(QByteArray, temperature);
        QFETCH(ThermalState, state);
        Setup s;
        s.addZone(0, temperature);
        QCOMPARE(s.read(), state);
    }

    void theWorstZoneWins()
    {
        Setup s;
        s.addZone(0, "20000");
        s.addZone(1, "90000");
        s.addZone(2, "61000");
        QCOMPARE(s.read(), ThermalState::serious);
    }

    void isUnknownWithoutAnyZone()
    {
        Setup s;
        QCOMPARE(s.read(), ThermalState::unknown);
        s.folder.write(u"cooling_device0/temp"_s, "50000");
        QCOMPARE(s.read(), ThermalState::unknown);
        QCOMPARE(ThermalZones::read(u"/nonexistent"_s), ThermalState::unknown);
    }

    void aTemperatureThatMakesNoSenseCountsNothing_data()
    {
        QTest::addColumn<QByteArray>("temperature");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("junk") << QByteArray("warm");
        QTest::newRow("below zero absolute") << QByteArray("-274000");
        QTest::newRow("of a broken sensor") << QByteArray("2147483647");
    }

    void aTemperatureThatMakesNoSenseCountsNothing()
    {
        QFETCH(QByteArray, temperature);
        Setup s;
        s.addZone(0, temperature);
        QCOMPARE(s.read(), ThermalState::unknown);
        s.addZone(1, "60000");
        QCOMPARE(s.read(), ThermalState::fair);
    }

    void aTripThatMakesNoSenseCountsNothing_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<QByteArray>("limit");
        QTest::newRow("zero") << QByteArray("critical") << QByteArray("0");
        QTest::newRow("negative") << QByteArray("passive") << QByteArray("-274000");
        QTest::newRow("absurd") << QByteArray("critical") << QByteArray("2147483647");
        QTest::newRow("junk") << QByteArray("hot") << QByteArray("hot");
        QTest::newRow("of an unknown type") << QByteArray("tepid") << QByteArray("20000");
    }

    void aTripThatMakesNoSenseCountsNothing()
    {
        QFETCH(QByteArray, type);
        QFETCH(QByteArray, limit);
        Setup s;
        s.folder.write(u"thermal_zone0/temp"_s, "50000");
        s.folder.write(u"thermal_zone0/trip_point_0_type"_s, type);
        s.folder.write(u"thermal_zone0/trip_point_0_temp"_s, limit);
        QCOMPARE(s.read(), ThermalState::unknown);
        s.folder.write(u"thermal_zone0/trip_point_1_type"_s, "passive");
        s.folder.write(u"thermal_zone0/trip_point_1_temp"_s, "85000");
        QCOMPARE(s.read(), ThermalState::nominal);
    }

    void junkInTheFolderHarmsNothing()
    {
        Setup s;
        s.addZone(3, "86000");
        s.folder.write(u"thermal_zone0"_s, "a file");
        s.folder.write(u"thermal_zone1/temp"_s, QByteArray(1'000'000, '9'));
        s.folder.write(u"thermal_zone2/trip_point_0_type"_s, "critical");
        const auto fifo = QFile::encodeName(s.folder.path(u"thermal_zone2/temp"_s));
        QCOMPARE(mkfifo(fifo.constData(), 0600), 0);
        QCOMPARE(s.read(), ThermalState::serious);
    }
};

QTEST_GUILESS_MAIN(ThermalZonesTest)
#include "ThermalZonesTest.moc"
