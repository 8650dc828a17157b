// The connection to the system bus, made beside the main thread: the greeting of a bus takes its
// time, and that of one which hangs for ever.
#pragma once

#include "App/Platform/Linux/BackgroundWork.h"
#include "App/Platform/Linux/BusProbe.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <optional>

class SystemBus final : public QObject {
    Q_OBJECT

public:
    explicit SystemBus(const QByteArray& address = BusProbe::systemBusAddress());
    ~SystemBus() override;

    // Called at once, or later if the context still lives then; never where there is no bus.
    void whenConnected(QObject* context, const std::function<void(const QDBusConnection&)>& use);

Q_SIGNALS:
    void connected(const QDBusConnection& connection);

private:
    void learn(const QDBusConnection& connection);

    const QString m_name; // Of the connection.
    std::optional<QDBusConnection> m_connection;
    BackgroundWork m_work;
};
