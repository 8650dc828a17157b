#include "App/Platform/Linux/Screen/LayerWindow.h"

#include "App/Platform/Linux/Screen/WaylandHandles.h"

#include <QPlatformSurfaceEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <utility>

LayerWindow::LayerWindow(const LayerShell& shell, QWidget& widget)
    : m_shell(shell)
    , m_widget(widget)
{
    // With this hint, and as the environment says, Qt leaves it to others what its surface is.
    m_widget.setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint
        | Qt::NoDropShadowWindowHint);
    m_widget.winId();
    m_widget.windowHandle()->installEventFilter(this);
}

LayerWindow::~LayerWindow()
{
    hide();
}

bool LayerWindow::show(QScreen& screen, LayerSurface::Place place, const QSize& size)
{
    auto* const output = WaylandHandles::output(screen);
    if (!output)
        return false;
    hide();
    m_screen = &screen;
    m_place = place;
    m_wanted = size;
    m_isConfigured = false;
    // What is painted before the compositor has spoken ends the connection.
    m_widget.setUpdatesEnabled(false);
    m_widget.windowHandle()->setScreen(&screen);
    m_widget.move(screen.geometry().topLeft()); // Only for what is placed beside it.
    m_widget.show();
    auto* const surface = WaylandHandles::surface(*m_widget.windowHandle());
    if (!surface)
        return false;
    m_surface.emplace(m_shell, surface, output, place, size,
        LayerSurface::Reader {
            [this](const QSize& given) { configure(given); }, [this] { lose(); } });
    return true;
}

void LayerWindow::hide()
{
    m_surface.reset();
    m_widget.hide();
}

void LayerWindow::setSize(const QSize& size)
{
    m_wanted = size;
    if (m_surface)
        m_surface->setSize(size);
    m_widget.resize(size);
}

void LayerWindow::takeKeyboard()
{
    if (!m_surface)
        return;
    m_surface->takeKeyboard();
    if (auto* const surface = WaylandHandles::surface(*m_widget.windowHandle()))
        wl_surface_commit(surface);
}

// Of what has a size of its own, later ones are answers to sizes that may be old by now.
void LayerWindow::configure(const QSize& size)
{
    if (m_isConfigured && m_place == LayerSurface::Place::top)
        return;
    m_widget.resize(acceptable(size));
    if (std::exchange(m_isConfigured, true))
        return;
    m_widget.setUpdatesEnabled(true);
    // At once: where a former surface never came to its next frame, Qt still waits for that one
    // before it paints another.
    m_widget.repaint();
}

// A compositor may leave the size to us, or get it wrong.
QSize LayerWindow::acceptable(const QSize& given) const
{
    constexpr QSize largest(16384, 16384);
    if (!given.isEmpty())
        return given.boundedTo(largest);
    return m_wanted.isEmpty() && m_screen ? m_screen->size() : m_wanted;
}

void LayerWindow::lose()
{
    hide();
    Q_EMIT lost();
}

// The surface goes with the window, and its layer must be gone by then.
bool LayerWindow::eventFilter(QObject*, QEvent* event)
{
    if (event->type() != QEvent::PlatformSurface || !m_surface)
        return false;
    const auto* const change = static_cast<const QPlatformSurfaceEvent*>(event);
    if (change->surfaceEventType() == QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed) {
        m_surface.reset();
        const auto tell = [this] {
            if (!m_surface)
                lose();
        };
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
    }
    return false;
}
