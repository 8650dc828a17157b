// The status item in whatever the desktop offers: a docked window or a StatusNotifierItem.
#pragma once

#include "App/Platform/Linux/Tray/StatusNotifierItem.h"
#include "App/Platform/Linux/Tray/TrayHostMonitor.h"
#include "App/Platform/Linux/Tray/XEmbedItem.h"
#include "App/Platform/Linux/Tray/XEmbedTray.h"
#include "App/Platform/StatusItem.h"
#include "App/Platform/StatusPainter.h"

#include <QTimer>

#include <memory>

class QMenu;

class TrayStatusItem final : public StatusItem {
    Q_OBJECT

public:
    explicit TrayStatusItem(const StatusPainter& painter);
    ~TrayStatusItem() override;

    void show() override;
    void setTitle(const StatusTitle& title) override;
    QRect geometry() const override;

private:
    // Of the two items at most one is shown at a time.
    void settle();
    void activateAt(const QPoint& place);
    void chooseEntry(int entry);
    void popUpMenu();

    TrayHostMonitor m_hosts;
    XEmbedTray m_tray;
    StatusNotifierItem m_notifierItem;
    XEmbedItem m_window;
    QTimer m_grace;
    std::unique_ptr<QMenu> m_menu; // Built on first use.
    QRect m_clicked; // Where a StatusNotifierItem was last clicked.
    bool m_shown = false;
};
