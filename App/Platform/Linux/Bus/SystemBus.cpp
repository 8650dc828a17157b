#include "App/Platform/Linux/Bus/SystemBus.h"

#include <QUuid>

using namespace Qt::StringLiterals;

static constexpr auto patience = std::chrono::seconds(5);

// One thread of the library serves all buses: a bus that hangs would stop the session's, too.
static QDBusConnection connectTo(const QByteArray& address, const QString& name)
{
    if (!BusProbe::answers(address, patience))
        return QDBusConnection(name);
    return QDBusConnection::connectToBus(QString::fromLocal8Bit(address), name);
}

SystemBus::SystemBus(const QByteArray& address)
    : m_address(address)
    , m_name(u"system bus "_s + QUuid::createUuid().toString())
{
    reach();
}

SystemBus::~SystemBus()
{
    if (m_connection)
        QDBusConnection::disconnectFromBus(m_name);
}

void SystemBus::whenConnected(
    QObject* context, const std::function<void(const QDBusConnection&)>& use)
{
    connect(this, &SystemBus::connected, context, use);
    if (m_connection)
        use(*m_connection);
    else
        reach();
}

void SystemBus::reach()
{
    m_work.start([this, address = m_address, name = m_name]() -> BackgroundWork::Finish {
        return [this, connection = connectTo(address, name)] { learn(connection); };
    });
}

void SystemBus::learn(const QDBusConnection& connection)
{
    m_connection = connection;
    m_connection->connect(QString(), u"/org/freedesktop/DBus/Local"_s,
        u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s, this, SLOT(end()));
    if (connection.isConnected())
        Q_EMIT connected(connection);
    else
        end();
}

void SystemBus::end()
{
    m_connection.reset();
    // Even a connection that failed would else keep the name for itself.
    QDBusConnection::disconnectFromBus(m_name);
    Q_EMIT ended();
}
