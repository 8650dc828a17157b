// The item as an org.kde.StatusNotifierItem with a menu, on a bus connection of its own.
#pragma once

#include "App/Platform/Linux/Tray/DBusMenu.h"
#include "App/Platform/Linux/Tray/StatusNotifierTypes.h"
#include "App/Platform/Linux/Tray/TrayHost.h"
#include "App/Platform/StatusPainter.h"

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QPoint>

#include <optional>

class StatusNotifierItem final : public QDBusVirtualObject {
    Q_OBJECT

public:
    StatusNotifierItem(const StatusPainter& painter, const QStringList& menuEntries);
    ~StatusNotifierItem() override;

    void setTitle(const StatusTitle& title);

    // Registers with the watcher, every time anew: it may be another one than before.
    void publish(const TrayHost& host);
    // The item's bus connection ends with it: a watcher forgets an item only with its owner.
    void withdraw();

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

Q_SIGNALS:
    void activated(const QPoint& place); // As the host says; see TrayHost::tellsPlace.
    void menuRequested(); // By a host that shows no menus itself.
    void menuEntryChosen(int entry);

private:
    bool connectToBus();
    QVariant property(const QString& name);
    QList<StatusNotifierPixmap> pixmaps() const;
    QString toolTipText() const;
    void announce(const QString& signal, const QVariantList& values = {});

    StatusPainter m_painter;
    DBusMenu m_menu;
    StatusTitle m_title;
    std::optional<TrayHost> m_host; // Absent while withdrawn.
    QDBusConnection m_bus { QString() };
    QList<StatusNotifierPixmap> m_pixmaps; // Empty until a host asks.
};
