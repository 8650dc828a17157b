#include "App/Platform/Linux/Screen/X11Connection.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QHash>

#include <algorithm>

namespace X11Connection {

xcb_connection_t* connection()
{
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

// Not every Xwayland says itself what it is.
bool isBehindWayland()
{
    return qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

xcb_window_t root()
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection())).data->root;
}

xcb_atom_t atom(const char* name)
{
    static QHash<QByteArray, xcb_atom_t> known;
    if (const auto found = known.constFind(name); found != known.constEnd())
        return *found;
    const QByteArray text(name);
    const auto cookie = xcb_intern_atom(connection(), 0, static_cast<uint16_t>(text.size()), name);
    const auto reply = owned(xcb_intern_atom_reply(connection(), cookie, nullptr));
    return known[text] = reply ? reply->atom : xcb_atom_t { XCB_ATOM_NONE };
}

xcb_window_t selectionOwner(xcb_atom_t selection)
{
    const auto cookie = xcb_get_selection_owner(connection(), selection);
    const auto reply = owned(xcb_get_selection_owner_reply(connection(), cookie, nullptr));
    return reply ? reply->owner : xcb_window_t { XCB_WINDOW_NONE };
}

void sendToRoot(xcb_window_t window, const char* type, const uint32_t (&values)[5])
{
    xcb_client_message_event_t event {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(type);
    std::ranges::copy(values, event.data.data32);
    xcb_send_event(connection(), 0, root(),
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
        reinterpret_cast<const char*>(&event));
}

}
