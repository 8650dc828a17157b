#include "App/Platform/Linux/Machine/LinuxProcessInfo.h"
#include "App/Platform/Linux/Bus/SystemBus.h"
#include "Tests/Support/MockMachine.h"
#include "Tests/Support/PropertiesService.h"
#include "Tests/Support/SysfsFolder.h"

#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

static const auto oldName = u"net.hadess.PowerProfiles"_s;
static const auto oldPath = u"/net/hadess/PowerProfiles"_s;
static const auto newName = u"org.freedesktop.UPower.PowerProfiles"_s;
static const auto newPath = u"/org/freedesktop/UPower/PowerProfiles"_s;

static QByteArray busAddress()
{
    return qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

static QVariantMap profile(const QString& name)
{
    return { { u"ActiveProfile"_s, name } };
}

namespace {

struct Setup {
    Setup() { setTemperature("40000"); }

    void setTemperature(const QByteArray& temperature)
    {
        zones.add(u"thermal_zone0"_s,
            { { "trip_point_0_type", "passive" }, { "trip_point_0_temp", "85000" } });
        zones.write(u"thermal_zone0/temp"_s, temperature);
    }

    SysfsFolder zones;
    SystemBus bus;
    LinuxProcessInfo info { bus, zones.path(), 10ms };
    QSignalSpy changes { &info, &Followed::changed };
};

}

class LinuxProcessInfoTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The test's own session bus stands in for the system bus.
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
        m_polkit = std::make_unique<Daemon>(u"/usr/bin/python3"_s,
            QStringList { u"-m"_s, u"dbusmock"_s, u"--system"_s, u"-t"_s, u"polkitd"_s });
        QTRY_VERIFY_WITH_TIMEOUT(isServed(u"org.freedesktop.PolicyKit1"_s), 20'000);
        auto call = QDBusMessage::createMethodCall(u"org.freedesktop.PolicyKit1"_s,
            u"/org/freedesktop/PolicyKit1/Authority"_s, u"org.freedesktop.DBus.Mock"_s,
            u"AllowUnknown"_s);
        call << true;
        QCOMPARE(QDBusConnection::sessionBus().call(call).errorMessage(), QString());
    }

    void cleanupTestCase() { m_polkit.reset(); }

    void cleanup()
    {
        m_daemon.reset();
        QTRY_VERIFY(!isServed(oldName) && !isServed(newName));
    }

    void followsTheRealService()
    {
        MockMachine machine;
        startDaemon(machine);
        Setup s;
        s.info.follow();
        setProfile(u"power-saver"_s);
        QTRY_VERIFY(s.info.isLowPowerModeEnabled());
        setProfile(u"performance"_s);
        QTRY_VERIFY(!s.info.isLowPowerModeEnabled());
        setProfile(u"power-saver"_s);
        QTRY_VERIFY(s.info.isLowPowerModeEnabled());
        setProfile(u"balanced"_s);
        QTRY_VERIFY(!s.info.isLowPowerModeEnabled());
    }

    void doesNotStayLowWhenTheServiceEnds()
    {
        MockMachine machine;
        startDaemon(machine);
        setProfile(u"power-saver"_s);
        Setup s;
        s.info.follow();
        QTRY_VERIFY(s.info.isLowPowerModeEnabled());
        m_daemon.reset();
        QTRY_VERIFY(!s.info.isLowPowerModeEnabled());
        startDaemon(machine);
        setProfile(u"power-saver"_s);
        QTRY_VERIFY(s.info.isLowPowerModeEnabled());
    }

    void hearsNothingWhenNobodyFollows()
    {
        MockMachine machine;
        startDaemon(machine);
        Setup s;
        Setup other;
        s.info.follow();
        other.info.follow();
        QTRY_COMPARE(s.info.thermalState(), ThermalState::nominal);
        s.info.unfollow();
        s.setTemperature("90000");
        setProfile(u"power-saver"_s);
        QTRY_VERIFY(other.info.isLowPowerModeEnabled());
        QVERIFY(!s.info.isLowPowerModeEnabled());
        QCOMPARE(s.info.thermalState(), ThermalState::nominal);
        QCOMPARE(s.changes.count(), 1);
        s.info.follow();
        QTRY_VERIFY(s.info.isLowPowerModeEnabled());
        QTRY_COMPARE(s.info.thermalState(), ThermalState::serious);
        s.info.unfollow();
        other.info.unfollow();
        QVERIFY(s.info.isLowPowerModeEnabled());
    }

    void doesNotWaitForAServiceThatHangs()
    {
        MockMachine machine;
        startDaemon(machine);
        setProfile(u"power-saver"_s);
        QVERIFY(m_daemon->hang());
        Setup s;
        QElapsedTimer taken;
        taken.start();
        s.info.follow();
        QVERIFY2(taken.elapsed() < 150, QByteArray::number(taken.elapsed()));
        QTRY_COMPARE(s.info.thermalState(), ThermalState::nominal);
        QVERIFY(!s.info.isLowPowerModeEnabled());
        m_daemon->resume();
        QTRY_VERIFY(s.info.isLowPowerModeEnabled());
    }

    void prefersTheNewName()
    {
        PropertiesService older(busAddress(), oldPath, oldName);
        PropertiesService newer(older, newPath, newName);
        older.values = profile(u"power-saver"_s);
        newer.values = profile(u"balanced"_s);
        QVERIFY(older.bus.registerService(oldName));
        Setup s;
        s.info.follow();
        QTRY_VERIFY(s.info.isLowPowerModeEnabled());
        QVERIFY(newer.bus.registerService(newName));
        QTRY_VERIFY(!s.info.isLowPowerModeEnabled());
        newer.change(profile(u"power-saver"_s));
        QTRY_VERIFY(s.info.isLowPowerModeEnabled());
        newer.change({ { u"ActiveProfile"_s, QStringList { u"power-saver"_s, u"x"_s } } });
        QTRY_VERIFY(!s.info.isLowPowerModeEnabled());
    }

    void tellsHowHotTheMachineIsEvenWithoutABus()
    {
        SysfsFolder zones;
        SystemBus nowhere("unix:path=/nonexistent");
        LinuxProcessInfo info(nowhere, zones.path(), 10ms);
        QSignalSpy changes(&info, &Followed::changed);
        QCOMPARE(info.thermalState(), ThermalState::unknown);
        info.follow();
        zones.write(u"thermal_zone0/trip_point_0_temp"_s, "85000");
        zones.write(u"thermal_zone0/trip_point_0_type"_s, "critical");
        zones.write(u"thermal_zone0/temp"_s, "20000");
        QTRY_COMPARE(info.thermalState(), ThermalState::nominal);
        zones.write(u"thermal_zone0/temp"_s, "85000");
        QTRY_COMPARE(info.thermalState(), ThermalState::critical);
        QVERIFY(changes.count() >= 2);
        info.unfollow();
    }

    void theUptimeIsThatOfTheMachine()
    {
        const Setup s;
        QFile file(u"/proc/uptime"_s);
        QVERIFY(file.open(QFile::ReadOnly));
        const double sinceStart = file.readAll().split(' ').first().toDouble();
        const auto uptime = s.info.systemUptime().count();
        QVERIFY(uptime > 0);
        // The file counts the time asleep, too.
        QVERIFY(double(uptime) <= sinceStart + 1);
    }

private:
    static bool isServed(const QString& name)
    {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(name);
    }

    void startDaemon(MockMachine& machine)
    {
        const auto firmware = u"write|sys/firmware/acpi/platform_profile"_s;
        QVERIFY(machine.tell(firmware + u"_choices|low-power balanced performance"_s));
        QVERIFY(machine.tell(firmware + u"|balanced"_s));
        m_daemon = machine.start(u"/usr/libexec/power-profiles-daemon"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isServed(oldName), 20'000);
    }

    static void setProfile(const QString& name)
    {
        auto call = QDBusMessage::createMethodCall(
            oldName, oldPath, u"org.freedesktop.DBus.Properties"_s, u"Set"_s);
        call << oldName << u"ActiveProfile"_s << QVariant::fromValue(QDBusVariant(name));
        QCOMPARE(QDBusConnection::sessionBus().call(call).errorMessage(), QString());
    }

    std::unique_ptr<Daemon> m_polkit;
    std::unique_ptr<Daemon> m_daemon;
};

QTEST_GUILESS_MAIN(LinuxProcessInfoTest)
#include "LinuxProcessInfoTest.moc"
