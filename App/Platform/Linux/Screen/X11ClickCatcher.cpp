#include "App/Platform/Linux/Screen/X11ClickCatcher.h"

#include "App/Platform/Linux/Screen/X11Connection.h"

#include <QCoreApplication>

#include <array>
#include <limits>
#include <utility>
#include <xcb/shape.h>

namespace {

// Larger than any desktop, so that it still covers one that grows.
constexpr uint16_t everywhere = std::numeric_limits<int16_t>::max();

// Beyond the desktop's edges: from a window of just the desktop's size, panels would hide.
constexpr int16_t overhang = 1;

xcb_rectangle_t xcbRectangle(const QRect& rect)
{
    return { static_cast<int16_t>(rect.x()), static_cast<int16_t>(rect.y()),
        static_cast<uint16_t>(rect.width()), static_cast<uint16_t>(rect.height()) };
}

// Null where the server has no translucent windows.
xcb_visualid_t translucentVisual()
{
    const auto* setup = xcb_get_setup(X11Connection::connection());
    auto depths = xcb_screen_allowed_depths_iterator(xcb_setup_roots_iterator(setup).data);
    for (; depths.rem; xcb_depth_next(&depths)) {
        if (depths.data->depth == 32 && depths.data->visuals_len > 0)
            return xcb_depth_visuals(depths.data)->visual_id;
    }
    return XCB_NONE;
}

xcb_window_t unseenWindow()
{
    auto* const x = X11Connection::connection();
    const auto window = xcb_generate_id(x);
    const std::array<uint32_t, 2> values { 1, XCB_EVENT_MASK_BUTTON_PRESS };
    xcb_create_window(x, 0, window, X11Connection::root(), -overhang, -overhang, everywhere,
        everywhere, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
        XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    return window;
}

// Costs memory for as many pixels as the desktop has, all of them clear.
xcb_window_t clearWindow(xcb_visualid_t visual)
{
    auto* const x = X11Connection::connection();
    const auto root = X11Connection::root();
    const auto desktop
        = X11Connection::owned(xcb_get_geometry_reply(x, xcb_get_geometry(x, root), nullptr));
    if (!desktop)
        return XCB_WINDOW_NONE;
    const auto colors = xcb_generate_id(x);
    xcb_create_colormap(x, XCB_COLORMAP_ALLOC_NONE, colors, root, visual);
    const auto window = xcb_generate_id(x);
    const std::array<uint32_t, 5> values { 0, 0, 1, XCB_EVENT_MASK_BUTTON_PRESS, colors };
    xcb_create_window(x, 32, window, root, -overhang, -overhang,
        static_cast<uint16_t>(desktop->width + 2 * overhang),
        static_cast<uint16_t>(desktop->height + 2 * overhang), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
        visual,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK
            | XCB_CW_COLORMAP,
        values.data());
    xcb_free_colormap(x, colors);
    return window;
}

// Behind Wayland what has no picture gets a click only where another X11 window lies below it.
bool needsPicture()
{
    return X11Connection::isBehindWayland()
        && X11Connection::selectionOwner(X11Connection::atom("_NET_WM_CM_S0")) != XCB_WINDOW_NONE;
}

xcb_window_t makeWindow()
{
    const auto visual = needsPicture() ? translucentVisual() : xcb_visualid_t { XCB_NONE };
    return visual == XCB_NONE ? unseenWindow() : clearWindow(visual);
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
    if (m_window == XCB_WINDOW_NONE)
        m_window = makeWindow();
    const xcb_rectangle_t all { 0, 0, everywhere, everywhere };
    const auto open = xcbRectangle(hole);
    xcb_shape_rectangles(x, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, 0, m_window, 0, 0, 1, &all);
    xcb_shape_rectangles(
        x, XCB_SHAPE_SO_SUBTRACT, XCB_SHAPE_SK_BOUNDING, 0, m_window, overhang, overhang, 1, &open);
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
