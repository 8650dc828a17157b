// Follows the owner of the X11 system tray, through late starts and restarts.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <xcb/xcb.h>

class XEmbedTray final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    XEmbedTray(); // Does nothing where Qt does not draw through X11.

    bool isPresent() const { return m_window != XCB_WINDOW_NONE; }
    xcb_window_t window() const { return m_window; }
    // The visual that the tray wants of its items; none where it does not say.
    xcb_visualid_t visual() const { return m_visual; }

Q_SIGNALS:
    void changed(); // Also when one tray took the place of another.

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void findOwner();

    xcb_atom_t m_selection = XCB_ATOM_NONE;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_visualid_t m_visual = 0;
};
