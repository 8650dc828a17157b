#include "App/Platform/Linux/Bus/SystemBus.h"
#include "Tests/Support/PrivateBus.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// Of a socket that takes connections, which the kernel does for it, and never says a word.
class SilentSocket final {
public:
    SilentSocket()
    {
        sockaddr_un place {};
        place.sun_family = AF_UNIX;
        std::ranges::copy(m_path, place.sun_path);
        const bool isBound
            = bind(m_socket, reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0;
        if (!isBound || listen(m_socket, 1) != 0)
            qFatal("No socket to be had");
    }

    ~SilentSocket() { close(m_socket); }
    Q_DISABLE_COPY_MOVE(SilentSocket)

    QByteArray address() const { return "unix:path=" + m_path; }

private:
    QTemporaryDir m_folder;
    QByteArray m_path = m_folder.filePath(u"bus"_s).toLocal8Bit();
    int m_socket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

struct Setup {
    explicit Setup(const QByteArray& address)
        : bus(address)
    {
        bus.whenConnected(&context, [this](const QDBusConnection&) { ++told; });
    }

    QObject context;
    int told = 0;
    SystemBus bus;
};

}

class SystemBusTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsLaterAndThenAtOnce()
    {
        const PrivateBus bus;
        Setup s(bus.address());
        QCOMPARE(s.told, 0);
        QTRY_COMPARE(s.told, 1);
        s.bus.whenConnected(&s.context, [&s](const QDBusConnection& connection) {
            ++s.told;
            QVERIFY(connection.isConnected());
        });
        QCOMPARE(s.told, 2);
    }

    void tellsNobodyWhoIsGone()
    {
        const PrivateBus bus;
        Setup s(bus.address());
        auto gone = std::make_unique<QObject>();
        s.bus.whenConnected(gone.get(), [](const QDBusConnection&) { QFAIL("Told all the same"); });
        gone.reset();
        QTRY_COMPARE(s.told, 1);
    }

    void saysNothingWithoutABus()
    {
        Setup without("unix:path=/nonexistent");
        const PrivateBus bus;
        Setup s(bus.address());
        QTRY_COMPARE(s.told, 1);
        QCOMPARE(without.told, 0);
    }

    void aBusThatEndsIsTold()
    {
        auto bus = std::make_unique<PrivateBus>();
        Setup s(bus->address());
        QSignalSpy ends(&s.bus, &SystemBus::ended);
        QTRY_COMPARE(s.told, 1);
        QCOMPARE(ends.count(), 0);
        bus.reset();
        QTRY_COMPARE(ends.count(), 1);
    }

    void triesAnewWhenSomebodyAsks()
    {
        QTemporaryDir folder;
        const auto address = u"unix:path="_s + folder.filePath(u"bus"_s);
        Setup s(address.toLocal8Bit());
        QSignalSpy ends(&s.bus, &SystemBus::ended);
        QTRY_COMPARE(ends.count(), 1);
        for (int time = 1; time <= 2; ++time) {
            auto bus = std::make_unique<PrivateBus>(QList<std::pair<QString, QString>>(), address);
            QObject other;
            s.bus.whenConnected(&other,
                [](const QDBusConnection& connection) { QVERIFY(connection.isConnected()); });
            QTRY_COMPARE(s.told, time);
            bus.reset();
            QTRY_COMPARE(ends.count(), time + 1);
        }
    }

    void aBusThatSaysNothingHoldsUpNothing()
    {
        const SilentSocket silent;
        const PrivateBus bus;
        QElapsedTimer taken;
        taken.start();
        auto hung = std::make_unique<Setup>(silent.address());
        QVERIFY2(taken.elapsed() < 150, QByteArray::number(taken.elapsed()));
        Setup other(bus.address());
        QTRY_COMPARE(other.told, 1);
        QCOMPARE(hung->told, 0);
        taken.start();
        hung.reset();
        QVERIFY2(taken.elapsed() < 150, QByteArray::number(taken.elapsed()));
    }
};

QTEST_GUILESS_MAIN(SystemBusTest)
#include "SystemBusTest.moc"
