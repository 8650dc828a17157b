#include "App/Platform/Linux/Tray/TrayHostMonitor.h"

#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

QDBusMessage busCall(const QString& method, const QString& name)
{
    auto call = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method);
    call << name;
    return call;
}

QString processName(uint pid)
{
    QFile file(u"/proc/%1/comm"_s.arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll().trimmed());
}

}

QString TrayHostMonitor::service()
{
    return u"org.kde.StatusNotifierWatcher"_s;
}

TrayHostMonitor::TrayHostMonitor(const QDBusConnection& bus)
    : m_bus(bus)
    , m_watcher(service(), m_bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString&, const QString&, const QString& owner) { follow(owner); });
    // Without a bus a call would wait for ever.
    if (m_bus.isConnected())
        askOwner();
    else
        m_settled = true;
}

void TrayHostMonitor::askOwner()
{
    auto* reply
        = new QDBusPendingCallWatcher(m_bus.asyncCall(busCall(u"GetNameOwner"_s, service())), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply] {
        reply->deleteLater();
        const QDBusPendingReply<QString> owner = *reply;
        if (m_owner.isEmpty() && !m_settled)
            follow(owner.isValid() ? owner.value() : QString());
    });
}

void TrayHostMonitor::follow(const QString& owner)
{
    m_owner = owner;
    if (owner.isEmpty()) {
        settle(std::nullopt);
        return;
    }
    auto* reply = new QDBusPendingCallWatcher(
        m_bus.asyncCall(busCall(u"GetConnectionUnixProcessID"_s, owner)), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, owner, reply] {
        reply->deleteLater();
        if (owner != m_owner)
            return;
        const QDBusPendingReply<uint> pid = *reply;
        settle(trayHost(pid.isValid() ? processName(pid.value()) : QString()));
    });
}

void TrayHostMonitor::settle(const std::optional<TrayHost>& host)
{
    m_settled = true;
    m_host = host;
    Q_EMIT changed();
}
