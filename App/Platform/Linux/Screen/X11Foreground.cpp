#include "App/Platform/Linux/Screen/X11Foreground.h"

#include "App/Platform/Linux/Screen/X11Connection.h"

#include <QCoreApplication>
#include <QWidget>

namespace {

constexpr int pauseMs = 100;

}

X11Foreground::X11Foreground(const QWidget& window)
    : m_window(window)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(pauseMs);
    connect(&m_pause, &QTimer::timeout, this, &X11Foreground::raise);
    // Qt listens at the root window already.
    qApp->installNativeEventFilter(this);
}

void X11Foreground::raiseSoon()
{
    m_pause.start();
}

// A panel that starts, or comes to another screen, is put above everything. Window managers say
// so in the list of their windows, some before they do it.
bool X11Foreground::nativeEventFilter(const QByteArray&, void* message, qintptr*)
{
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
        return false;
    const auto* change = static_cast<const xcb_property_notify_event_t*>(message);
    if (change->window == X11Connection::root()
        && change->atom == X11Connection::atom("_NET_CLIENT_LIST_STACKING"))
        raiseSoon();
    return false;
}

void X11Foreground::raise() const
{
    auto* const x = X11Connection::connection();
    if (!x || !m_window.isVisible())
        return;
    const uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(x, static_cast<xcb_window_t>(m_window.internalWinId()),
        XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(x);
}
