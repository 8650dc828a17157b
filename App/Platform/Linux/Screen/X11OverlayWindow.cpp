#include "App/Platform/Linux/Screen/X11OverlayWindow.h"

#include "App/Platform/Compositor.h"
#include "App/Platform/Linux/Screen/X11Connection.h"

#include <QWidget>

#include <cmath>
#include <utility>
#include <vector>
#include <xcb/shape.h>

namespace {

xcb_rectangle_t native(const QRect& part, qreal scale)
{
    const auto left = std::floor(part.left() * scale);
    const auto top = std::floor(part.top() * scale);
    return { static_cast<int16_t>(left), static_cast<int16_t>(top),
        static_cast<uint16_t>(std::ceil((part.right() + 1) * scale) - left),
        static_cast<uint16_t>(std::ceil((part.bottom() + 1) * scale) - top) };
}

}

X11OverlayWindow::X11OverlayWindow(const Compositor& compositor, std::unique_ptr<QWidget> content)
    : m_compositor(compositor)
    , m_content(std::move(content))
{
    m_content->setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint
        | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus);
    m_content->setAttribute(Qt::WA_ShowWithoutActivating);
    connect(&m_compositor, &Compositor::changed, this, &X11OverlayWindow::applyShape);
    if (!X11Connection::connection())
        return;
    // When it grows, what is there keeps its place in the middle until it is painted anew.
    const uint32_t gravity = XCB_GRAVITY_NORTH;
    xcb_change_window_attributes(X11Connection::connection(),
        static_cast<xcb_window_t>(m_content->winId()), XCB_CW_BIT_GRAVITY, &gravity);
}

X11OverlayWindow::~X11OverlayWindow() = default;

void X11OverlayWindow::orderFront()
{
    m_content->show();
    // Another program may have hidden it, of which Qt takes no notice.
    if (auto* const x = X11Connection::connection())
        xcb_map_window(x, static_cast<xcb_window_t>(m_content->winId()));
    m_content->raise();
    applyShape();
}

void X11OverlayWindow::setFrame(const QRect& frame)
{
    place(withRoom(frame));
    m_foreground.raiseSoon(); // Panels move with the screens, too.
}

// The shape counts from the corner of the window, which moves. Until the caller has set the next
// one, what was covered stays so: no pointer leaves a window that grows, and nothing flashes.
void X11OverlayWindow::place(const QRect& frame)
{
    const auto before = m_content->geometry();
    if (before == frame)
        return;
    const auto kept = m_shape + m_shape.translated(before.topLeft() - frame.topLeft());
    apply(kept, frame.contains(before) ? kept : m_shape);
    m_content->setGeometry(frame);
}

// Behind Wayland a window that grows under the pointer loses it for as long as that rests. There
// it always has its largest size, of which the shape leaves out what is not to be there.
QRect X11OverlayWindow::withRoom(const QRect& frame) const
{
    if (!m_compositor.isRunning() || !X11Connection::isBehindWayland())
        return frame;
    const auto size = frame.size().expandedTo(m_content->sizeHint());
    return { { frame.left() - (size.width() - frame.width()) / 2, frame.top() }, size };
}

void X11OverlayWindow::setShape(const QRegion& shape)
{
    m_shape = shape;
    applyShape();
}

void X11OverlayWindow::applyShape()
{
    apply(m_shape, m_shape);
}

// Without a compositor all of a window is seen that is not cut away.
void X11OverlayWindow::apply(const QRegion& seen, const QRegion& touched)
{
    if (!X11Connection::connection())
        return;
    cut(XCB_SHAPE_SK_INPUT, touched);
    if (m_compositor.isRunning())
        xcb_shape_mask(X11Connection::connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
            static_cast<xcb_window_t>(m_content->winId()), 0, 0, XCB_NONE);
    else
        cut(XCB_SHAPE_SK_BOUNDING, seen);
    xcb_flush(X11Connection::connection());
}

void X11OverlayWindow::cut(uint8_t kind, const QRegion& shape)
{
    const qreal scale = m_content->devicePixelRatioF();
    std::vector<xcb_rectangle_t> parts;
    for (const QRect& part : shape)
        parts.push_back(native(part, scale));
    xcb_shape_rectangles(X11Connection::connection(), XCB_SHAPE_SO_SET, kind, 0,
        static_cast<xcb_window_t>(m_content->winId()), 0, 0, static_cast<uint32_t>(parts.size()),
        parts.data());
}
