#include "App/Platform/Linux/Screen/X11Compositor.h"

#include "App/Platform/Linux/Screen/X11Connection.h"

#include <QCoreApplication>

#include <xcb/xfixes.h>

namespace {

constexpr auto selection = "_NET_WM_CM_S0";

}

X11Compositor::X11Compositor()
{
    auto* const x = X11Connection::connection();
    if (!x)
        return;
    const auto* extension = xcb_get_extension_data(x, &xcb_xfixes_id);
    if (extension && extension->present) {
        m_ownerChanged = static_cast<uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
        xcb_xfixes_select_selection_input(x, X11Connection::root(), X11Connection::atom(selection),
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
                | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
                | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
        qApp->installNativeEventFilter(this);
    }
    m_running = X11Connection::selectionOwner(X11Connection::atom(selection)) != XCB_WINDOW_NONE;
}

bool X11Compositor::nativeEventFilter(const QByteArray&, void* message, qintptr*)
{
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != m_ownerChanged)
        return false;
    const auto* change = static_cast<const xcb_xfixes_selection_notify_event_t*>(message);
    if (change->selection != X11Connection::atom(selection))
        return false;
    m_running = change->owner != XCB_WINDOW_NONE;
    Q_EMIT changed();
    return false;
}
