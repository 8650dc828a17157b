// The connection to the system bus, made beside the main thread: the greeting of a bus takes its
// time, and that of one which hangs for ever.
#pragma once

#include "App/Platform/Linux/Background/BackgroundWork.h"
#include "App/Platform/Linux/Bus/BusProbe.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <optional>

class SystemBus final : public QObject {
    Q_OBJECT

public:
    explicit SystemBus(const QByteArray& address = BusProbe::systemBusAddress());
    ~SystemBus() override;

    // Called at once, or later, and again for a connection in place of one that ended, all for as
    // long as the context lives. Where there is no connection, asking for it is what tries anew.
    void whenConnected(QObject* context, const std::function<void(const QDBusConnection&)>& use);

Q_SIGNALS:
    void connected(const QDBusConnection& connection);
    // Whatever was asked or subscribed is void.
    void ended();

private Q_SLOTS:
    void end();

private:
    void reach();
    void learn(const QDBusConnection& connection);

    const QByteArray m_address;
    const QString m_name; // Of the connection.
    std::optional<QDBusConnection> m_connection;
    BackgroundWork m_work;
};
