#include "App/Platform/Linux/Tray/XEmbedTray.h"

#include "App/Platform/Linux/Screen/X11Connection.h"

#include <QCoreApplication>

namespace {

// False when the window is gone already.
bool listenForEnd(xcb_window_t window)
{
    auto* const x = X11Connection::connection();
    const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    const auto cookie = xcb_change_window_attributes_checked(x, window, XCB_CW_EVENT_MASK, &mask);
    return !X11Connection::owned(xcb_request_check(x, cookie));
}

xcb_visualid_t wantedVisual(xcb_window_t tray)
{
    auto* const x = X11Connection::connection();
    const auto cookie = xcb_get_property(
        x, 0, tray, X11Connection::atom("_NET_SYSTEM_TRAY_VISUAL"), XCB_ATOM_VISUALID, 0, 1);
    const auto reply = X11Connection::owned(xcb_get_property_reply(x, cookie, nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) < 4)
        return 0;
    return *static_cast<const xcb_visualid_t*>(xcb_get_property_value(reply.get()));
}

}

XEmbedTray::XEmbedTray()
{
    if (!X11Connection::connection())
        return;
    m_selection = X11Connection::atom("_NET_SYSTEM_TRAY_S0");
    // A new tray tells the root window, where Qt listens already.
    qApp->installNativeEventFilter(this);
    findOwner();
}

void XEmbedTray::findOwner()
{
    auto owner = X11Connection::selectionOwner(m_selection);
    if (owner != XCB_WINDOW_NONE && !listenForEnd(owner))
        owner = XCB_WINDOW_NONE; // Its successor will say so.
    if (owner == m_window)
        return;
    m_window = owner;
    m_visual = owner == XCB_WINDOW_NONE ? 0 : wantedVisual(owner);
    Q_EMIT changed();
}

bool XEmbedTray::nativeEventFilter(const QByteArray&, void* message, qintptr*)
{
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const auto type = event->response_type & 0x7f;
    if (type == XCB_CLIENT_MESSAGE) {
        const auto* manager = static_cast<const xcb_client_message_event_t*>(message);
        if (manager->type == X11Connection::atom("MANAGER")
            && manager->data.data32[1] == m_selection)
            findOwner();
    } else if (type == XCB_DESTROY_NOTIFY && isPresent()) {
        if (static_cast<const xcb_destroy_notify_event_t*>(message)->window == m_window)
            findOwner();
    }
    return false;
}
