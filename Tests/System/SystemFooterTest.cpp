#include "App/System/SystemFooter.h"

#include "Tests/Fakes/FakeProcessInfo.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class SystemFooterTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyThermalStateHasItsName_data()
    {
        QTest::addColumn<ThermalState>("state");
        QTest::addColumn<QString>("name");
        QTest::newRow("nominal") << ThermalState::nominal << u"Normal"_s;
        QTest::newRow("fair") << ThermalState::fair << u"Fair"_s;
        QTest::newRow("serious") << ThermalState::serious << u"Serious"_s;
        QTest::newRow("critical") << ThermalState::critical << u"Critical"_s;
        QTest::newRow("unknown") << ThermalState::unknown << u"Unknown"_s;
    }

    void everyThermalStateHasItsName()
    {
        QFETCH(ThermalState, state);
        QFETCH(QString, name);
        FakeProcessInfo info;
        info.state = state;
        info.uptime = 37h;
        QCOMPARE(systemFooter(info), u"Thermal: %1 · Up 37h"_s.arg(name));
    }

    void lowPowerStandsInTheMiddle()
    {
        FakeProcessInfo info;
        info.isLowPower = true;
        QCOMPARE(systemFooter(info), u"Thermal: Unknown · Low Power Mode · Up 0h"_s);
    }

    void onlyWholeHoursCount()
    {
        FakeProcessInfo info;
        info.uptime = 59min + 59s;
        QCOMPARE(systemFooter(info), u"Thermal: Unknown · Up 0h"_s);
        info.uptime = 60min;
        QCOMPARE(systemFooter(info), u"Thermal: Unknown · Up 1h"_s);
        info.uptime = 10'000h;
        QCOMPARE(systemFooter(info), u"Thermal: Unknown · Up 10000h"_s);
    }
};

QTEST_GUILESS_MAIN(SystemFooterTest)
#include "SystemFooterTest.moc"
