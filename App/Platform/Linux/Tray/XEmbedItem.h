// The item as a window docked in an X11 system tray, which shows the whole title.
#pragma once

#include "App/Platform/StatusPainter.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QRect>
#include <QSize>
#include <QTimer>

#include <xcb/xcb.h>

class XEmbedTray;

class XEmbedItem final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    XEmbedItem(const XEmbedTray& tray, const StatusPainter& painter);
    ~XEmbedItem() override;

    void setTitle(const StatusTitle& title);

    // Docks into the tray of now, leaving the one before.
    void dock();
    void undock();
    bool isDocked() const { return m_window != XCB_WINDOW_NONE; }

    // In Qt's global coordinates; null while not docked.
    QRect geometry() const;

Q_SIGNALS:
    void activated();
    void menuRequested();

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void handle(const xcb_generic_event_t& event);
    void createWindow();
    void nameWindow();
    void requestDock();
    void requestSize();
    void resize(const QSize& size);
    void fit();
    void click(const xcb_button_release_event_t& release);
    void render();
    void paint();
    void settle();
    void put(const QImage& image);
    void cutOut();
    QRect place() const; // In pixels of the root window.

    const XEmbedTray& m_tray;
    StatusPainter m_painter;
    StatusTitle m_title;
    xcb_window_t m_dockedInto = XCB_WINDOW_NONE;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_gcontext_t m_context = 0;
    uint8_t m_depth = 0;
    bool m_blends = false; // Its transparent parts show the panel; else it is cut to shape.
    bool m_isMapped = false; // Only then does the tray give the window its real size.
    bool m_isPressed = false;
    QSize m_size; // Of the window, in device pixels.
    QSize m_requested;
    QTimer m_settling; // Until the tray has done with what it does to an item that comes.
    QImage m_pill;
    QImage m_shape; // What the window was last cut to.
    QImage m_ground; // Of the panel, where the window is cut to shape.
};
