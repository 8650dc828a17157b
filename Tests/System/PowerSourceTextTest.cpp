#include "App/System/PowerSourceText.h"

#include "App/Platform/PowerSources.h"

#include <QTest>

using namespace Qt::StringLiterals;

class PowerSourceTextTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theSupplyAndTheTimeLeftFollowTheCharge_data()
    {
        QTest::addColumn<PowerSource>("source");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, bool isCharging, bool isOnMains,
                             std::optional<int> minutes, const QString& text) {
            QTest::newRow(name) << PowerSource { 435, 500, isCharging, isOnMains, minutes } << text;
        };
        row("on battery", false, false, {}, u"87% · on battery"_s);
        row("with time left", false, false, 185, u"87% · on battery · 3h 5m left"_s);
        row("less than an hour", false, false, 59, u"87% · on battery · 0h 59m left"_s);
        row("one minute", false, false, 1, u"87% · on battery · 0h 1m left"_s);
        row("still calculating", false, false, -1, u"87% · on battery"_s);
        row("no time at all", false, false, 0, u"87% · on battery"_s);
        row("plugged in", false, true, {}, u"87% · plugged in"_s);
        row("plugged in with a time", false, true, 185, u"87% · plugged in"_s);
        row("charging", true, true, {}, u"87% · charging"_s);
        row("charging with a time", true, true, 185, u"87% · charging"_s);
        row("charging off mains", true, false, 185, u"87% · charging · 3h 5m left"_s);
    }

    void theSupplyAndTheTimeLeftFollowTheCharge()
    {
        QFETCH(PowerSource, source);
        QFETCH(QString, text);
        QCOMPARE(powerSourceText(source), text);
    }

    void theTextIsRoundedAndTheLevelIsNot()
    {
        const PowerSource source { .currentCapacity = 196, .maxCapacity = 1000 };
        QCOMPARE(powerSourceText(source), u"20% · on battery"_s);
        QCOMPARE(powerSourceLevel(source), 19.6);
    }

    void aRatioNeedsBothCapacities()
    {
        QVERIFY(powerSourceIsUsable({ .currentCapacity = 0, .maxCapacity = 1 }));
        QVERIFY(!powerSourceIsUsable({ .currentCapacity = 1 }));
        QVERIFY(!powerSourceIsUsable({ .maxCapacity = 1 }));
        QVERIFY(!powerSourceIsUsable({ .currentCapacity = 1, .maxCapacity = 0 }));
        QVERIFY(!powerSourceIsUsable({ .currentCapacity = 1, .maxCapacity = -1 }));
    }
};

QTEST_GUILESS_MAIN(PowerSourceTextTest)
#include "PowerSourceTextTest.moc"
