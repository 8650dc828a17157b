#include "App/Platform/Linux/Tray/XEmbedItem.h"

#include "App/Platform/Linux/Screen/X11Connection.h"
#include "App/Platform/Linux/Tray/PanelGround.h"
#include "App/Platform/Linux/Tray/XEmbedTray.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <iterator>
#include <utility>
#include <xcb/shape.h>

namespace {

constexpr int fullHeight = 26; // Of the pill, in points.

// A tray may give any size, but a request to the server that is too long ends the connection.
constexpr QSize mostPainted(2048, 512);

qreal scale()
{
    return qGuiApp->primaryScreen()->devicePixelRatio();
}

int preferredHeight()
{
    return qRound(fullHeight * scale());
}

uint8_t depthOf(xcb_visualid_t visual)
{
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(X11Connection::connection())).data;
    for (auto depth = xcb_screen_allowed_depths_iterator(screen); depth.rem;
         xcb_depth_next(&depth)) {
        for (auto type = xcb_depth_visuals_iterator(depth.data); type.rem;
             xcb_visualtype_next(&type)) {
            if (type.data->visual_id == visual)
                return depth.data->depth;
        }
    }
    return 0;
}

bool compositorRuns()
{
    return X11Connection::selectionOwner(X11Connection::atom("_NET_WM_CM_S0")) != XCB_WINDOW_NONE;
}

QPoint inMiddle(const QSize& inner, const QSize& outer)
{
    return { (outer.width() - inner.width()) / 2, (outer.height() - inner.height()) / 2 };
}

// Qt moves no screen when it scales: the top left corner is the same in pixels and in points.
QRect toPoints(const QRect& pixels)
{
    for (const auto* screen : QGuiApplication::screens()) {
        const auto whole = screen->geometry();
        const qreal ratio = screen->devicePixelRatio();
        const QRect device(whole.topLeft(), (QSizeF(whole.size()) * ratio).toSize());
        if (!device.contains(pixels.center()))
            continue;
        const auto offset = QPointF(pixels.topLeft() - whole.topLeft()) / ratio;
        return { whole.topLeft() + offset.toPoint(), (QSizeF(pixels.size()) / ratio).toSize() };
    }
    return pixels;
}

}

XEmbedItem::XEmbedItem(const XEmbedTray& tray, const StatusPainter& painter)
    : m_tray(tray)
    , m_painter(painter)
{
    qApp->installNativeEventFilter(this);
    m_settling.setSingleShot(true);
    m_settling.setInterval(250);
    connect(&m_settling, &QTimer::timeout, this, &XEmbedItem::settle);
}

XEmbedItem::~XEmbedItem()
{
    undock();
}

void XEmbedItem::setTitle(const StatusTitle& title)
{
    if (title == m_title)
        return;
    m_title = title;
    if (!isDocked())
        return;
    nameWindow();
    render();
    requestSize();
    paint();
}

void XEmbedItem::dock()
{
    if (isDocked() && m_dockedInto == m_tray.window())
        return;
    undock();
    m_dockedInto = m_tray.window();
    m_blends = depthOf(m_tray.visual()) == 32 && compositorRuns();
    render();
    createWindow();
    requestSize();
    requestDock();
}

void XEmbedItem::undock()
{
    if (!isDocked())
        return;
    auto* const x = X11Connection::connection();
    xcb_free_gc(x, m_context);
    xcb_destroy_window(x, std::exchange(m_window, XCB_WINDOW_NONE));
    xcb_flush(x);
    m_isMapped = false;
    m_requested = {};
    m_shape = {};
    m_ground = {};
}

void XEmbedItem::createWindow()
{
    m_size = m_pill.size(); // Until the tray gives another.
    auto* const x = X11Connection::connection();
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(x)).data;
    m_depth = depthOf(m_tray.visual());
    const auto visual = m_depth ? m_tray.visual() : screen->root_visual;
    m_depth = m_depth ? m_depth : screen->root_depth;

    const auto colormap = xcb_generate_id(x);
    xcb_create_colormap(x, XCB_COLORMAP_ALLOC_NONE, colormap, screen->root, visual);
    const uint32_t events = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY
        | XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE;
    const uint32_t values[] = { 0, 0, events, colormap };
    m_window = xcb_generate_id(x);
    xcb_create_window(x, m_depth, m_window, screen->root, 0, 0,
        static_cast<uint16_t>(m_pill.width()), static_cast<uint16_t>(m_pill.height()), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values);
    xcb_free_colormap(x, colormap);
    m_context = xcb_generate_id(x);
    xcb_create_gc(x, m_context, m_window, 0, nullptr);
}

// Trays show it as a tip, and tools that read windows aloud know no other text of the item.
void XEmbedItem::nameWindow()
{
    const auto name = "Corvella " + m_title.text.toUtf8();
    xcb_change_property(X11Connection::connection(), XCB_PROP_MODE_REPLACE, m_window,
        X11Connection::atom("_NET_WM_NAME"), X11Connection::atom("UTF8_STRING"), 8,
        static_cast<uint32_t>(name.size()), name.constData());
}

void XEmbedItem::requestDock()
{
    auto* const x = X11Connection::connection();
    constexpr char classes[] = "corvella\0Corvella";
    nameWindow();
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
        sizeof classes, classes);
    const auto info = X11Connection::atom("_XEMBED_INFO");
    const uint32_t versionAndMapped[] = { 0, 1 };
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, m_window, info, info, 32, 2, versionAndMapped);

    xcb_client_message_event_t event {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = m_dockedInto;
    event.type = X11Connection::atom("_NET_SYSTEM_TRAY_OPCODE");
    event.data.data32[0] = XCB_CURRENT_TIME;
    event.data.data32[1] = 0; // SYSTEM_TRAY_REQUEST_DOCK
    event.data.data32[2] = m_window;
    xcb_send_event(
        x, 0, m_dockedInto, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&event));
    xcb_flush(x);
}

// Trays read the wish from the size hints, and follow them as they change.
void XEmbedItem::requestSize()
{
    if (m_pill.size() == m_requested)
        return;
    m_requested = m_pill.size();
    constexpr uint32_t minimumSize = 1 << 4;
    uint32_t hints[18] {};
    hints[0] = minimumSize;
    hints[5] = static_cast<uint32_t>(m_pill.width());
    hints[6] = static_cast<uint32_t>(m_pill.height());
    xcb_change_property(X11Connection::connection(), XCB_PROP_MODE_REPLACE, m_window,
        XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32, 18, hints);
}

void XEmbedItem::resize(const QSize& size)
{
    if (size == m_size)
        return;
    m_size = size;
    fit();
}

void XEmbedItem::fit()
{
    m_shape = {};
    render();
    requestSize();
    paint();
    if (m_blends || m_ground.isNull())
        m_settling.start();
}

// A tray that composes its items itself may have done so before the item had found its place.
void XEmbedItem::settle()
{
    if (m_blends)
        paint();
    else if (isDocked() && m_isMapped && !compositorRuns())
        m_ground = panelGround(place());
}

void XEmbedItem::render()
{
    const int height
        = m_size.isEmpty() ? preferredHeight() : std::min(m_size.height(), preferredHeight());
    m_pill = m_painter.pill(m_title, height, scale());
}

void XEmbedItem::paint()
{
    if (!m_isMapped)
        return;
    QImage image(m_size.boundedTo(mostPainted), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    if (!m_ground.isNull())
        painter.drawImage(QRect({}, QSize(image.width(), m_ground.height())), m_ground);
    painter.drawImage(inMiddle(m_pill.size(), image.size()), m_pill);
    painter.end();
    const bool isCut
        = !m_blends && m_shape.size() != m_pill.size(); // Else the outline is the same.
    // Trays let stay what was there where the window is cut to less, or comes anew.
    const bool covers = isCut && !m_ground.isNull();
    if (covers)
        xcb_shape_mask(X11Connection::connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
            m_window, 0, 0, XCB_NONE);
    else if (isCut)
        cutOut();
    put(image);
    if (covers)
        cutOut();
    xcb_flush(X11Connection::connection());
}

void XEmbedItem::put(const QImage& image)
{
    const auto corner = inMiddle(image.size(), m_size);
    auto* const x = X11Connection::connection();
    xcb_put_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, m_context,
        static_cast<uint16_t>(image.width()), static_cast<uint16_t>(image.height()),
        static_cast<int16_t>(corner.x()), static_cast<int16_t>(corner.y()), 0, m_depth,
        static_cast<uint32_t>(image.sizeInBytes()), image.constBits());
}

void XEmbedItem::cutOut()
{
    // Cut to less than the whole pill, the window would have corners for a moment.
    if (m_pill.width() > m_size.width() || m_pill.height() > m_size.height())
        return;
    m_shape = m_pill;
    const auto corner = inMiddle(m_pill.size(), m_size);
    QList<xcb_rectangle_t> rows;
    for (int y = 0; y < m_pill.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(m_pill.constScanLine(y));
        const auto* end = line + m_pill.width();
        const auto opaque = [](QRgb pixel) { return qAlpha(pixel) >= 128; };
        const auto* first = std::find_if(line, end, opaque);
        if (first == end)
            continue;
        const auto* last = std::find_if(
            std::make_reverse_iterator(end), std::make_reverse_iterator(first), opaque)
                               .base();
        rows.append({ static_cast<int16_t>(first - line), static_cast<int16_t>(y),
            static_cast<uint16_t>(last - first), 1 });
    }
    xcb_shape_rectangles(X11Connection::connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
        XCB_CLIP_ORDERING_YX_BANDED, m_window, static_cast<int16_t>(corner.x()),
        static_cast<int16_t>(corner.y()), static_cast<uint32_t>(rows.size()), rows.constData());
}

QRect XEmbedItem::geometry() const
{
    return m_isMapped ? toPoints(place()) : QRect();
}

QRect XEmbedItem::place() const
{
    auto* const x = X11Connection::connection();
    const auto cookie = xcb_translate_coordinates(x, m_window, X11Connection::root(), 0, 0);
    const auto reply = X11Connection::owned(xcb_translate_coordinates_reply(x, cookie, nullptr));
    if (!reply)
        return {};
    return { QPoint(reply->dst_x, reply->dst_y), m_size };
}

bool XEmbedItem::nativeEventFilter(const QByteArray&, void* message, qintptr*)
{
    if (isDocked())
        handle(*static_cast<const xcb_generic_event_t*>(message));
    return false;
}

void XEmbedItem::handle(const xcb_generic_event_t& event)
{
    switch (event.response_type & 0x7f) {
    case XCB_EXPOSE:
        if (reinterpret_cast<const xcb_expose_event_t&>(event).window == m_window)
            paint();
        break;
    case XCB_MAP_NOTIFY:
        if (reinterpret_cast<const xcb_map_notify_event_t&>(event).window == m_window) {
            m_isMapped = true;
            fit();
        }
        break;
    case XCB_CONFIGURE_NOTIFY: {
        const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        if (change.window == m_window)
            resize({ change.width, change.height });
        break;
    }
    case XCB_BUTTON_PRESS:
        if (reinterpret_cast<const xcb_button_press_event_t&>(event).event == m_window)
            m_isPressed = true;
        break;
    case XCB_BUTTON_RELEASE: {
        const auto& release = reinterpret_cast<const xcb_button_release_event_t&>(event);
        // A press that closed the popover may be let go over the item: that is no click on it.
        if (release.event == m_window && std::exchange(m_isPressed, false))
            click(release);
        break;
    }
    default:
        break;
    }
}

void XEmbedItem::click(const xcb_button_release_event_t& release)
{
    if (!QRect({ 0, 0 }, m_size).contains(release.event_x, release.event_y))
        return;
    // Later: whoever installs another event filter meanwhile would make this one run twice.
    if (release.detail == XCB_BUTTON_INDEX_1)
        QMetaObject::invokeMethod(this, &XEmbedItem::activated, Qt::QueuedConnection);
    else if (release.detail == XCB_BUTTON_INDEX_3)
        QMetaObject::invokeMethod(this, &XEmbedItem::menuRequested, Qt::QueuedConnection);
}
