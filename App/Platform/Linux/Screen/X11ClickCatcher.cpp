#include "App/Platform/Linux/Screen/X11ClickCatcher.h"

#include "App/Platform/Linux/Screen/X11Connection.h"

#include <QCoreApplication>

#include <limits>
#include <utility>
#include <xcb/shape.h>

namespace {

// Larger than any desktop, so that it still covers one that grows.
constexpr uint16_t everywhere = std::numeric_limits<int16_t>::max();

xcb_rectangle_t xcbRectangle(const QRect& rect)
{
    return { static_cast<int16_t>(rect.x()), static_cast<int16_t>(rect.y()),
        static_cast<uint16_t>(rect.width()), static_cast<uint16_t>(rect.height()) };
}

bool isScroll(xcb_button_t button)
{
    return button >= 4 && button <= 7;
}

}

X11ClickCatcher::X11ClickCatcher(std::function<void()> clicked)
    : m_clicked(std::move(clicked))
{
    qApp->installNativeEventFilter(this);
}

X11ClickCatcher::~X11ClickCatcher()
{
    hide();
}

void X11ClickCatcher::show(const QRect& hole)
{
    auto* const x = X11Connection::connection();
    if (m_window == XCB_WINDOW_NONE) {
        m_window = xcb_generate_id(x);
        const uint32_t values[] = { 1, XCB_EVENT_MASK_BUTTON_PRESS };
        xcb_create_window(x, 0, m_window, X11Connection::root(), 0, 0, everywhere, everywhere, 0,
            XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
            XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    }
    const xcb_rectangle_t all { 0, 0, everywhere, everywhere };
    const auto open = xcbRectangle(hole);
    xcb_shape_rectangles(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, 0, m_window, 0, 0, 1, &all);
    xcb_shape_rectangles(
        x, XCB_SHAPE_SO_SUBTRACT, XCB_SHAPE_SK_BOUNDING, 0, m_window, 0, 0, 1, &open);
    xcb_map_window(x, m_window);
    xcb_flush(x);
}

void X11ClickCatcher::hide()
{
    if (m_window == XCB_WINDOW_NONE)
        return;
    xcb_destroy_window(X11Connection::connection(), std::exchange(m_window, XCB_WINDOW_NONE));
    xcb_flush(X11Connection::connection());
}

bool X11ClickCatcher::nativeEventFilter(const QByteArray&, void* message, qintptr*)
{
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if (m_window == XCB_WINDOW_NONE || (event->response_type & 0x7f) != XCB_BUTTON_PRESS)
        return false;
    const auto* press = static_cast<const xcb_button_press_event_t*>(message);
    if (press->event != m_window)
        return false;
    if (!isScroll(press->detail))
        m_clicked();
    return true;
}
