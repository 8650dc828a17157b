#include "App/Platform/Linux/Screen/LayerOverlayWindow.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace {

// Until no thread of Qt's waits any more for a frame of a window that was just shown: it would be
// waiting in memory that is gone.
constexpr auto lastFrame = 2s;

constexpr std::chrono::milliseconds shortestWait = 100ms;
constexpr std::chrono::milliseconds longestWait = 60s;

}

LayerOverlayWindow::LayerOverlayWindow(const LayerShell& shell, std::unique_ptr<QWidget> content)
    : m_content(std::move(content))
    , m_window(shell, *m_content)
{
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &LayerOverlayWindow::settle);
    connect(&m_window, &LayerWindow::lost, this, &LayerOverlayWindow::settleLater);
    // It may be that of an output that comes back.
    connect(qApp, &QGuiApplication::screenAdded, this, &LayerOverlayWindow::settle,
        Qt::QueuedConnection);
}

LayerOverlayWindow::~LayerOverlayWindow()
{
    auto* const content = m_content.release();
    QTimer::singleShot(lastFrame, content, &QObject::deleteLater);
}

void LayerOverlayWindow::orderFront()
{
    m_isWanted = true;
    m_wait = shortestWait;
    settle();
}

void LayerOverlayWindow::setFrame(const QRect& frame)
{
    m_frame = frame;
    m_window.setSize(frame.size());
    settle();
}

void LayerOverlayWindow::setShape(const QRegion& shape)
{
    m_content->windowHandle()->setMask(shape);
}

// A compositor that takes it away whenever it is there is troubled less and less often.
void LayerOverlayWindow::settleLater()
{
    m_pause.start(m_wait);
    m_wait = std::min(2 * m_wait, longestWait);
}

// On the output whose upper edge the frame is at.
void LayerOverlayWindow::settle()
{
    const QPoint edge(m_frame.center().x(), m_frame.top());
    auto* const screen = QGuiApplication::screenAt(edge);
    if (!m_isWanted || !screen || (m_window.isShown() && m_window.screen() == screen))
        return;
    m_window.show(*screen, LayerSurface::Place::top, m_frame.size());
}
