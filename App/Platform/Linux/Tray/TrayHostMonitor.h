// Follows the owner of the StatusNotifierWatcher's name, through late starts and restarts.
#pragma once

#include "App/Platform/Linux/Tray/TrayHost.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <optional>

class TrayHostMonitor final : public QObject {
    Q_OBJECT

public:
    static QString service();

    explicit TrayHostMonitor(const QDBusConnection& bus);

    // False while the bus has not said yet who owns the name.
    bool isSettled() const { return m_settled; }
    // Absent where nobody shows status items.
    std::optional<TrayHost> host() const { return m_host; }

Q_SIGNALS:
    // Also when one host took the place of another just like it.
    void changed();

private:
    void askOwner();
    void follow(const QString& owner);
    void settle(const std::optional<TrayHost>& host);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    QString m_owner;
    bool m_settled = false;
    std::optional<TrayHost> m_host;
};
