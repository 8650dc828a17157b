#include "App/Platform/Linux/Machine/UPowerSources.h"
#include "App/Platform/Linux/Bus/SystemBus.h"
#include "App/System/PowerSourceText.h"
#include "Tests/Fakes/FakePowerSources.h"
#include "Tests/Support/MockMachine.h"
#include "Tests/Support/PropertiesService.h"

#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

static const auto upower = u"org.freedesktop.UPower"_s;
static const auto displayDevice = u"/org/freedesktop/UPower/devices/DisplayDevice"_s;

static const auto battery = u"add|BAT0|type=Battery|present=1|status=Discharging"
                            "|energy_full=60000000|energy_full_design=80000000|energy_now=48000000"
                            "|power_now=16000000|voltage_now=12000000"_s;
static const auto mains = u"add|AC|type=Mains|online=0"_s;

static QByteArray busAddress()
{
    return qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

namespace {

struct Setup {
    SystemBus bus;
    FakePowerSources fallback;
    UPowerSources sources { bus, fallback };
    QSignalSpy changes { &sources, &Followed::changed };

    Setup() { fallback.list = QList<PowerSource> { { .currentCapacity = 1, .maxCapacity = 100 } }; }

    // As the user would read it.
    QString text() const
    {
        const auto told = sources.sources();
        if (!told)
            return u"nothing known"_s;
        if (told->isEmpty())
            return u"no battery"_s;
        return powerSourceIsUsable(told->first()) ? powerSourceText(told->first()) : u"unusable"_s;
    }
};

// UPower's objects without UPower, for what it would hardly say.
struct Pretender {
    PropertiesService daemon { busAddress(), u"/org/freedesktop/UPower"_s, upower };
    PropertiesService device { daemon, displayDevice, upower + u".Device"_s };

    explicit Pretender(const QVariantMap& differences)
    {
        QVariantMap values {
            { u"Type"_s, 2U },
            { u"IsPresent"_s, true },
            { u"Percentage"_s, 19.6 },
            { u"State"_s, 2U },
            { u"TimeToEmpty"_s, qint64 { 3900 } },
        };
        values.insert(differences);
        device.values = values;
        daemon.values = QVariantMap { { u"OnBattery"_s, true } };
    }

    bool own() { return daemon.bus.registerService(upower); }
    bool disown() { return daemon.bus.unregisterService(upower); }
};

}

class UPowerSourcesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The test's own session bus stands in for the system bus.
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
    }

    void init()
    {
        m_machine = std::make_unique<MockMachine>();
        QVERIFY(m_machine->isReady());
    }

    void cleanup()
    {
        stopUPower();
        m_machine.reset();
    }

    void tellsOfTheBatteries_data()
    {
        const auto other = QString(battery).replace(u"BAT0"_s, u"BAT1"_s);
        const auto mouse
            = u"add|mouse|type=Battery|scope=Device|present=1|online=1|status=Discharging"
              "|capacity=30|model_name=Mouse"_s;
        QTest::addColumn<QStringList>("devices");
        QTest::addColumn<QString>("text");
        QTest::newRow("discharging")
            << QStringList { battery, mains } << u"80% · on battery · 3h 0m left"_s;
        QTest::newRow("charging") << QStringList { battery, mains, u"set|AC|online=1"_s,
            u"set|BAT0|status=Charging"_s }
                                  << u"80% · charging"_s;
        QTest::newRow("not charging") << QStringList { battery, mains, u"set|AC|online=1"_s,
            u"set|BAT0|status=Not charging"_s }
                                      << u"80% · plugged in"_s;
        QTest::newRow("full") << QStringList { battery, mains, u"set|AC|online=1"_s,
            u"set|BAT0|status=Full|energy_now=60000000"_s }
                              << u"100% · plugged in"_s;
        QTest::newRow("two batteries")
            << QStringList { battery, other, mains, u"set|BAT1|energy_now=12000000"_s }
            << u"50% · on battery · 1h 52m left"_s;
        QTest::newRow("none") << QStringList { mains } << u"no battery"_s;
        QTest::newRow("a mouse") << QStringList { mains, mouse } << u"no battery"_s;
        QTest::newRow("a battery and a mouse")
            << QStringList { battery, mains, mouse } << u"80% · on battery · 3h 0m left"_s;
    }

    void tellsOfTheBatteries()
    {
        QFETCH(QStringList, devices);
        QFETCH(QString, text);
        for (const auto& device : devices)
            QVERIFY(m_machine->tell(device));
        startUPower();
        Setup s;
        QCOMPARE(s.text(), u"nothing known"_s);
        s.sources.follow();
        QTRY_COMPARE(s.text(), text);
        QVERIFY(!s.fallback.isFollowed);
    }

    void hearsOfABatteryThatIsPluggedIn()
    {
        QVERIFY(m_machine->tell(mains));
        startUPower();
        Setup s;
        s.sources.follow();
        QTRY_COMPARE(s.text(), u"no battery"_s);
        QVERIFY(m_machine->tell(battery));
        QTRY_COMPARE(s.text(), u"80% · on battery · 3h 0m left"_s);
        QVERIFY(m_machine->tell(u"set|AC|online=1"_s));
        QVERIFY(m_machine->tell(u"set|BAT0|status=Charging"_s));
        QTRY_COMPARE(s.text(), u"80% · charging"_s);
        QVERIFY(m_machine->tell(u"remove|BAT0"_s));
        QTRY_COMPARE(s.text(), u"no battery"_s);
    }

    void hearsNothingWhenNobodyFollows()
    {
        QVERIFY(m_machine->tell(mains) && m_machine->tell(battery));
        startUPower();
        Setup s;
        Setup other;
        s.sources.follow();
        other.sources.follow();
        QTRY_COMPARE(s.text(), u"80% · on battery · 3h 0m left"_s);
        QTRY_COMPARE(other.text(), s.text());
        s.sources.unfollow();
        const auto changes = s.changes.count();
        QVERIFY(m_machine->tell(u"set|AC|online=1"_s));
        QTRY_COMPARE(other.text(), u"80% · plugged in"_s);
        QCOMPARE(s.text(), u"80% · on battery · 3h 0m left"_s);
        QCOMPARE(s.changes.count(), changes);
        s.sources.follow();
        QTRY_COMPARE(s.text(), u"80% · plugged in"_s);
    }

    void fallsBackWhileUPowerHangs()
    {
        QVERIFY(m_machine->tell(mains) && m_machine->tell(battery));
        startUPower();
        QVERIFY(m_upower->hang());
        Setup s;
        QElapsedTimer taken;
        taken.start();
        s.sources.follow();
        QVERIFY2(taken.elapsed() < 150, QByteArray::number(taken.elapsed()));
        QVERIFY(!s.fallback.isFollowed);
        QTRY_COMPARE(s.text(), u"1% · on battery"_s);
        QVERIFY2(taken.elapsed() < 4000, QByteArray::number(taken.elapsed()));
        QVERIFY(s.fallback.isFollowed);
        m_upower->resume();
        QTRY_COMPARE(s.text(), u"80% · on battery · 3h 0m left"_s);
        QVERIFY(!s.fallback.isFollowed);
    }

    void fallsBackWhileUPowerIsGone()
    {
        QVERIFY(m_machine->tell(mains) && m_machine->tell(battery));
        startUPower();
        Setup s;
        s.sources.follow();
        QTRY_COMPARE(s.text(), u"80% · on battery · 3h 0m left"_s);
        m_upower->crash();
        QTRY_COMPARE(s.text(), u"1% · on battery"_s);
        QVERIFY(s.fallback.isFollowed);
        startUPower();
        QTRY_COMPARE(s.text(), u"80% · on battery · 3h 0m left"_s);
        QVERIFY(!s.fallback.isFollowed);
    }

    void fallsBackWhereThereIsNoUPower()
    {
        Setup s;
        s.sources.follow();
        QTRY_COMPARE(s.text(), u"1% · on battery"_s);
        s.fallback.list = QList<PowerSource>();
        Q_EMIT s.fallback.changed();
        QCOMPARE(s.text(), u"no battery"_s);
        s.sources.unfollow();
        QVERIFY(!s.fallback.isFollowed);
        s.sources.follow();
        QVERIFY(s.fallback.isFollowed);
        s.sources.unfollow();
    }

    void fallsBackWhereThereIsNoBus()
    {
        SystemBus nowhere("unix:path=/nonexistent");
        FakePowerSources fallback;
        fallback.list.emplace();
        UPowerSources sources(nowhere, fallback);
        sources.follow();
        QTRY_COMPARE(sources.sources(), QList<PowerSource>());
        sources.unfollow();
    }

    void keepsWhatItKnewUntilTheFallbackKnowsBetter()
    {
        Pretender pretender({});
        QVERIFY(pretender.own());
        Setup s;
        s.sources.follow();
        QTRY_COMPARE(s.text(), u"20% · on battery · 1h 5m left"_s);
        s.fallback.list = {};
        QVERIFY(pretender.disown());
        QTRY_VERIFY(s.fallback.isFollowed);
        QCOMPARE(s.text(), u"20% · on battery · 1h 5m left"_s);
        s.fallback.list = QList<PowerSource>();
        Q_EMIT s.fallback.changed();
        QCOMPARE(s.text(), u"no battery"_s);
    }

    void tellsNoNonsense_data()
    {
        const QVariant nan = std::numeric_limits<double>::quiet_NaN();
        QTest::addColumn<QVariantMap>("differences");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const QVariantMap& differences, const QString& text) {
            QTest::newRow(name) << differences << text;
        };
        row("none", {}, u"20% · on battery · 1h 5m left"_s);
        row("no number", { { u"Percentage"_s, nan } }, u"unusable"_s);
        row("too much", { { u"Percentage"_s, 100.5 } }, u"unusable"_s);
        row("too little", { { u"Percentage"_s, -1.0 } }, u"unusable"_s);
        row("text", { { u"Percentage"_s, u"much"_s } }, u"unusable"_s);
        row("list", { { u"Percentage"_s, QStringList { u"19"_s } } }, u"unusable"_s);
        row("struct", { { u"Percentage"_s, QVariantMap { { u"a"_s, 1 } } } }, u"unusable"_s);
        row("type of text", { { u"Type"_s, u"battery"_s } }, u"no battery"_s);
        row("mains", { { u"Type"_s, 1U } }, u"no battery"_s);
        row("ups", { { u"Type"_s, 3U } }, u"20% · on battery · 1h 5m left"_s);
        row("absent", { { u"IsPresent"_s, false } }, u"no battery"_s);
        row("time unknown", { { u"TimeToEmpty"_s, qint64 { 0 } } }, u"20% · on battery"_s);
        row("time gone", { { u"TimeToEmpty"_s, qint64 { -60 } } }, u"20% · on battery"_s);
        row("longest time", { { u"TimeToEmpty"_s, qint64 { 864'059 } } },
            u"20% · on battery · 240h 0m left"_s);
        row("too long a time", { { u"TimeToEmpty"_s, qint64 { 864'060 } } }, u"20% · on battery"_s);
        row("time without end", { { u"TimeToEmpty"_s, std::numeric_limits<qint64>::max() } },
            u"20% · on battery"_s);
    }

    void tellsNoNonsense()
    {
        QFETCH(QVariantMap, differences);
        QFETCH(QString, text);
        Pretender pretender(differences);
        QVERIFY(pretender.own());
        Setup s;
        s.sources.follow();
        QTRY_COMPARE(s.text(), text);
    }

    void isExactToAThousandthOfAPercent()
    {
        Pretender pretender({});
        QVERIFY(pretender.own());
        Setup s;
        s.sources.follow();
        QTRY_COMPARE(s.text(), u"20% · on battery · 1h 5m left"_s);
        QCOMPARE(powerSourceLevel(s.sources.sources()->first()), 19.6);
    }

    void sendsNothingWhileNothingChanges()
    {
        QVERIFY(m_machine->tell(mains) && m_machine->tell(battery));
        startUPower();
        Setup s;
        QByteArray ours;
        s.bus.whenConnected(&s.sources, [&ours](const QDBusConnection& connection) {
            ours = " sender=" + connection.baseService().toLatin1() + ' ';
        });
        QTRY_VERIFY(!ours.isEmpty());
        Daemon monitor(u"dbus-monitor"_s,
            { u"--address"_s, QString::fromLocal8Bit(busAddress()), u"type='method_call'"_s });
        QByteArray heard;
        QTRY_VERIFY((heard += monitor.output()).contains("NameLost"));
        s.sources.follow();
        QTRY_COMPARE((heard += monitor.output()).count(ours), 5);
        QTRY_COMPARE(s.text(), u"80% · on battery · 3h 0m left"_s);
        // Only time shows that nothing comes.
        QTest::qWait(4000);
        QCOMPARE(monitor.output().count(ours), 0);
        QVERIFY(m_machine->tell(u"set|AC|online=1"_s));
        QTRY_COMPARE(s.text(), u"80% · plugged in"_s);
        QCOMPARE(monitor.output().count(ours), 0);
    }

private:
    static bool isServed()
    {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(upower);
    }

    void startUPower()
    {
        m_upower = m_machine->start(u"/usr/libexec/upowerd"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isServed(), 20'000);
    }

    void stopUPower()
    {
        m_upower.reset();
        QTRY_VERIFY(!isServed());
    }

    std::unique_ptr<MockMachine> m_machine;
    std::unique_ptr<Daemon> m_upower;
};

QTEST_GUILESS_MAIN(UPowerSourcesTest)
#include "UPowerSourcesTest.moc"
