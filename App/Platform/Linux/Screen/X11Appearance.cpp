#include "App/Platform/Linux/Screen/X11Appearance.h"

#include "App/Platform/Linux/Screen/X11Connection.h"
#include "App/Platform/Linux/Screen/XSettings.h"

#include <QCoreApplication>

#include <xcb/xfixes.h>

namespace {

constexpr auto selection = "_XSETTINGS_S0";
constexpr auto contents = "_XSETTINGS_SETTINGS";

QByteArray settingsOf(xcb_window_t manager)
{
    constexpr uint32_t longest = 1 << 16; // In units of four bytes.
    auto* const x = X11Connection::connection();
    const auto type = X11Connection::atom(contents);
    const auto cookie = xcb_get_property(x, 0, manager, type, type, 0, longest);
    const auto reply = X11Connection::owned(xcb_get_property_reply(x, cookie, nullptr));
    if (!reply)
        return {};
    return { static_cast<const char*>(xcb_get_property_value(reply.get())),
        xcb_get_property_value_length(reply.get()) };
}

}

X11Appearance::X11Appearance(Appearance& session)
    : m_session(session)
{
    connect(&session, &Appearance::changed, this, &Appearance::changed);
    auto* const x = X11Connection::connection();
    const auto* extension = x ? xcb_get_extension_data(x, &xcb_xfixes_id) : nullptr;
    if (!extension || !extension->present)
        return;
    m_ownerChanged = static_cast<uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    xcb_xfixes_select_selection_input(x, X11Connection::root(), X11Connection::atom(selection),
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    qApp->installNativeEventFilter(this);
    followManager();
}

QString X11Appearance::iconTheme() const
{
    return m_iconTheme.isEmpty() ? m_session.iconTheme() : m_iconTheme;
}

bool X11Appearance::nativeEventFilter(const QByteArray&, void* message, qintptr*)
{
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7f;
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto* change = static_cast<const xcb_property_notify_event_t*>(message);
        if (change->window == m_manager && change->atom == X11Connection::atom(contents))
            read();
    } else if (type == m_ownerChanged) {
        const auto* change = static_cast<const xcb_xfixes_selection_notify_event_t*>(message);
        if (change->selection == X11Connection::atom(selection))
            followManager();
    }
    return false;
}

void X11Appearance::followManager()
{
    m_manager = X11Connection::selectionOwner(X11Connection::atom(selection));
    if (m_manager != XCB_WINDOW_NONE) {
        // Qt asks for the same where it follows the settings itself.
        const uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(
            X11Connection::connection(), m_manager, XCB_CW_EVENT_MASK, &events);
    }
    read();
}

void X11Appearance::read()
{
    QString theme;
    if (m_manager != XCB_WINDOW_NONE)
        theme = XSettings::text(settingsOf(m_manager), "Net/IconThemeName");
    const QString before = iconTheme();
    m_iconTheme = theme;
    if (iconTheme() != before)
        Q_EMIT changed();
}
