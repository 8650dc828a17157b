#include "App/Platform/Linux/Screen/X11PopoverWindow.h"

#include "App/Platform/Linux/Screen/DesktopWindows.h"
#include "App/Platform/Linux/Screen/PopoverPlacement.h"
#include "App/Platform/Linux/Screen/X11Connection.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWidget>

#include <array>
#include <cmath>
#include <utility>
#include <xcb/shape.h>

namespace {

// In the words of the EWMH: a tool that asks in the user's name is not refused the focus.
constexpr uint32_t sourceIsPager = 2;

void keepOffTaskbarsAndPagers(xcb_window_t window)
{
    const std::array states {
        X11Connection::atom("_NET_WM_STATE_SKIP_TASKBAR"),
        X11Connection::atom("_NET_WM_STATE_SKIP_PAGER"),
        X11Connection::atom("_NET_WM_STATE_ABOVE"),
    };
    xcb_change_property(X11Connection::connection(), XCB_PROP_MODE_REPLACE, window,
        X11Connection::atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32, states.size(), states.data());
}

// Else a window manager that keeps windows inside the screen would keep the shadow inside, too.
void tellShadow(const QWidget& content)
{
    const auto margins = content.contentsMargins();
    const auto pixels = [&content](int points) {
        return static_cast<uint32_t>(std::lround(points * content.devicePixelRatioF()));
    };
    const std::array extents { pixels(margins.left()), pixels(margins.right()),
        pixels(margins.top()), pixels(margins.bottom()) };
    xcb_change_property(X11Connection::connection(), XCB_PROP_MODE_REPLACE,
        static_cast<xcb_window_t>(content.internalWinId()),
        X11Connection::atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, extents.size(),
        extents.data());
}

QScreen* screenOf(const QRect& anchor)
{
    auto* const screen = anchor.isNull() ? nullptr : QGuiApplication::screenAt(anchor.center());
    return screen ? screen : QGuiApplication::primaryScreen();
}

}

X11PopoverWindow::X11PopoverWindow(std::function<std::unique_ptr<QWidget>()> buildContent)
    : m_buildContent(std::move(buildContent))
    , m_catcher([this] { close(); })
{
}

X11PopoverWindow::~X11PopoverWindow() = default;

bool X11PopoverWindow::isShown() const
{
    return m_content && m_content->isVisible();
}

void X11PopoverWindow::build()
{
    m_content = m_buildContent();
    m_content->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    m_content->installEventFilter(this);
    qApp->installNativeEventFilter(this);
}

void X11PopoverWindow::show(const QRect& anchor)
{
    if (isShown()
        || (m_sinceLostKeyboard.isValid()
            && m_sinceLostKeyboard.elapsed() < DesktopWindows::sameClickMs))
        return;
    if (!m_content)
        build();
    place(anchor);
    if (X11Connection::connection()) {
        keepOffTaskbarsAndPagers(static_cast<xcb_window_t>(m_content->winId()));
        tellShadow(*m_content);
    }
    m_content->show();
}

void X11PopoverWindow::close()
{
    if (isShown())
        m_content->hide();
}

void X11PopoverWindow::place(const QRect& anchor)
{
    const auto* screen = screenOf(anchor);
    const auto margins = m_content->contentsMargins();
    const auto body = m_content->size().shrunkBy(margins);
    m_body = popoverOrigin(anchor, body, { screen->geometry(), screen->availableGeometry() });
    m_content->move(m_body - QPoint(margins.left(), margins.top()));
}

// Asked for its place while the window manager puts the window into a frame, the server may tell
// that of the frame's first moments. A window that has the keyboard is where it stays.
void X11PopoverWindow::correctPlace()
{
    const auto margins = m_content->contentsMargins();
    const auto corner = m_body - QPoint(margins.left(), margins.top());
    if (m_content->pos() != corner)
        m_content->move(corner);
    claimInput();
}

bool X11PopoverWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_content.get())
        return false;
    if (event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Cancel)) {
        close();
        return true;
    }
    if (event->type() == QEvent::ContentsRectChange && isShown() && X11Connection::connection())
        tellShadow(*m_content);
    if (event->type() == QEvent::WindowActivate && isShown() && X11Connection::connection())
        correctPlace();
    // Also when the window manager closes it: the catcher must not outlive what it is for.
    if (event->type() == QEvent::Hide)
        m_catcher.hide();
    const bool lostKeyboard = event->type() == QEvent::WindowDeactivate && isShown()
        && !QApplication::activePopupWidget() && !hasKeyboard();
    if (lostKeyboard) {
        m_sinceLostKeyboard.start();
        close();
    }
    return false;
}

bool X11PopoverWindow::nativeEventFilter(const QByteArray&, void* message, qintptr*)
{
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const auto type = event->response_type & 0x7f;
    if (type == XCB_MAP_NOTIFY) {
        const auto* mapped = static_cast<const xcb_map_notify_event_t*>(message);
        if (isShown() && mapped->window == m_content->winId()) {
            claimInput();
            takeKeyboard();
        }
    } else if (type == XCB_CONFIGURE_NOTIFY) {
        const auto* configured = static_cast<const xcb_configure_notify_event_t*>(message);
        if (isShown() && configured->window == m_content->winId())
            claimInput();
    } else if (type == XCB_FOCUS_IN) {
        QMetaObject::invokeMethod(this, &X11PopoverWindow::ensureActive, Qt::QueuedConnection);
    }
    return false;
}

// Shown again moments after it was closed it is still the active window in the eyes of a part of
// Qt, which so keeps to itself that it has the keyboard again.
void X11PopoverWindow::ensureActive()
{
    if (isShown() && !m_content->isActiveWindow() && hasKeyboard())
        QApplication::setActiveWindow(m_content.get());
}

// The body takes clicks; all around it, the shadow included, a click closes the popover.
void X11PopoverWindow::claimInput()
{
    const auto body = nativeBody();
    const auto window = static_cast<xcb_window_t>(m_content->winId());
    const auto scale = m_content->devicePixelRatioF();
    const auto margins = m_content->contentsMargins();
    const xcb_rectangle_t inWindow { static_cast<int16_t>(std::lround(margins.left() * scale)),
        static_cast<int16_t>(std::lround(margins.top() * scale)),
        static_cast<uint16_t>(body.width()), static_cast<uint16_t>(body.height()) };
    xcb_shape_rectangles(X11Connection::connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, 0,
        window, 0, 0, 1, &inWindow);
    m_catcher.show(body);
}

void X11PopoverWindow::takeKeyboard()
{
    const auto window = static_cast<xcb_window_t>(m_content->winId());
    X11Connection::sendToRoot(
        window, "_NET_ACTIVE_WINDOW", { sourceIsPager, XCB_CURRENT_TIME, 0, 0, 0 });
    // Also where no window manager listens.
    xcb_set_input_focus(
        X11Connection::connection(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    xcb_flush(X11Connection::connection());
}

// Asked of the server: a grab, as for a global shortcut, deactivates the window in Qt's eyes
// though the keyboard stays with it.
bool X11PopoverWindow::hasKeyboard() const
{
    auto* const x = X11Connection::connection();
    if (!x)
        return false;
    const auto focus
        = X11Connection::owned(xcb_get_input_focus_reply(x, xcb_get_input_focus(x), nullptr));
    return focus && focus->focus == m_content->winId();
}

// In native pixels of the root window.
QRect X11PopoverWindow::nativeBody() const
{
    auto* const x = X11Connection::connection();
    const auto window = static_cast<xcb_window_t>(m_content->winId());
    const auto scale = m_content->devicePixelRatioF();
    const auto body = m_content->contentsRect();
    const auto cookie = xcb_translate_coordinates(x, window, X11Connection::root(),
        static_cast<int16_t>(std::lround(body.x() * scale)),
        static_cast<int16_t>(std::lround(body.y() * scale)));
    const auto origin = X11Connection::owned(xcb_translate_coordinates_reply(x, cookie, nullptr));
    if (!origin)
        return {};
    return { origin->dst_x, origin->dst_y, static_cast<int>(std::lround(body.width() * scale)),
        static_cast<int>(std::lround(body.height() * scale)) };
}
