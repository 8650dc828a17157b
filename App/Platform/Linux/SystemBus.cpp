#include "App/Platform/Linux/SystemBus.h"

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
    : m_name(u"system bus "_s + QUuid::createUuid().toString())
{
    m_work.start([this, address, name = m_name]() -> BackgroundWork::Finish {
        return [this, connection = connectTo(address, name)] { learn(connection); };
    });
}

SystemBus::~SystemBus()
{
    if (m_connection)
        QDBusConnection::disconnectFromBus(m_name);
}

void SystemBus::whenConnected(
    QObject* context, const std::function<void(const QDBusConnection&)>& use)
{
    if (m_connection)
        use(*m_connection);
    else
        connect(this, &SystemBus::connected, context, use);
}

void SystemBus::learn(const QDBusConnection& connection)
{
    if (!connection.isConnected())
        return;
    m_connection = connection;
    Q_EMIT connected(connection);
}
