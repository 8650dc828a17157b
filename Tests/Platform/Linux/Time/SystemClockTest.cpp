#include "App/Platform/Linux/Time/SystemClock.h"
#include "App/Platform/Linux/Bus/SystemBus.h"
#include "Tests/Support/Daemon.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

static void signalSleep(bool goingToSleep)
{
    auto call = QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s,
        u"/org/freedesktop/login1"_s, u"org.freedesktop.DBus.Mock"_s, u"EmitSignal"_s);
    call << u"org.freedesktop.login1.Manager"_s << u"PrepareForSleep"_s << u"b"_s
         << QVariantList { goingToSleep };
    const auto reply = QDBusConnection::systemBus().call(call);
    QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(reply.errorMessage()));
}

// Whatever was sent before is heard when this returns, once there is a connection.
static bool hearsAll(SystemBus& bus)
{
    QObject context;
    bool isConnected = false;
    bus.whenConnected(&context, [&isConnected](const QDBusConnection& connection) {
        const auto ping = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
            u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s);
        isConnected = connection.call(ping).type() == QDBusMessage::ReplyMessage;
    });
    QCoreApplication::processEvents();
    return isConnected;
}

class SystemClockTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The test's own session bus stands in for the system bus.
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
        m_logind.emplace(u"/usr/bin/python3"_s,
            QStringList { u"-m"_s, u"dbusmock"_s, u"--system"_s, u"-t"_s, u"logind"_s });
        auto* bus = QDBusConnection::systemBus().interface();
        QTRY_VERIFY_WITH_TIMEOUT(bus->isServiceRegistered(u"org.freedesktop.login1"_s), 20'000);
    }

    void cleanupTestCase() { m_logind.reset(); }

    void tellsTheWallClocksTime()
    {
        SystemBus bus;
        const SystemClock clock(bus);
        const Moment before = std::chrono::system_clock::now();
        const auto now = clock.now();
        QVERIFY(now >= before);
        QVERIFY(now <= Moment(std::chrono::system_clock::now()));
    }

    void jumpsOnWakingUpButNotOnFallingAsleep()
    {
        SystemBus bus;
        SystemClock clock(bus);
        QSignalSpy jumps(&clock, &Clock::jumped);
        QTRY_VERIFY(hearsAll(bus));
        signalSleep(true);
        QVERIFY(hearsAll(bus));
        QCOMPARE(jumps.count(), 0);
        signalSleep(false);
        QTRY_COMPARE(jumps.count(), 1);
    }

    void runsWithoutASystemBus()
    {
        QProcess child;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(), { u"tellsTheWallClocksTime"_s });
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    }

private:
    std::optional<Daemon> m_logind;
};

QTEST_GUILESS_MAIN(SystemClockTest)
#include "SystemClockTest.moc"
