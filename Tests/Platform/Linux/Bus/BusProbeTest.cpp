#include "App/Platform/Linux/Bus/BusProbe.h"
#include "Tests/Support/Daemon.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class BusProbeTest final : public QObject {
    Q_OBJECT

private:
    QByteArray sessionBus() { return qgetenv("DBUS_SESSION_BUS_ADDRESS"); }

private Q_SLOTS:
    void aBusThatLivesAnswers() { QVERIFY(BusProbe::answers(sessionBus(), 10s)); }

    void aBusThatHangsDoesNot()
    {
        Daemon bus(u"dbus-daemon"_s, { u"--session"_s, u"--nofork"_s, u"--print-address"_s });
        QByteArray address;
        QTRY_VERIFY((address += bus.output()).contains('\n'));
        address = address.split('\n').first();
        QVERIFY(BusProbe::answers(address, 10s));
        QVERIFY(bus.hang());
        QVERIFY(!BusProbe::answers(address, 50ms));
        bus.resume();
    }

    void aBusThatIsNotThereDoesNot()
    {
        QVERIFY(!BusProbe::answers("unix:path=/nonexistent", 10s));
        QVERIFY(!BusProbe::answers("unix:path=/" + QByteArray(200, 'x'), 10s));
    }

    void anotherKindOfAddressIsLeftToTheLibrary()
    {
        QVERIFY(BusProbe::answers("tcp:host=localhost,port=1", 10s));
    }

    void theSystemBusIsWhereTheEnvironmentSays()
    {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/somewhere");
        QCOMPARE(BusProbe::systemBusAddress(), "unix:path=/somewhere");
        qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
        QVERIFY(BusProbe::systemBusAddress().startsWith("unix:path=/"));
    }
};

QTEST_GUILESS_MAIN(BusProbeTest)
#include "BusProbeTest.moc"
