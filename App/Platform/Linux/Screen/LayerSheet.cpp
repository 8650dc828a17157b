#include "App/Platform/Linux/Screen/LayerSheet.h"

#include "App/Platform/Linux/Screen/WaylandHandles.h"

#include <QBackingStore>
#include <QMouseEvent>
#include <QScreen>

#include <algorithm>

// A surface that is never painted, only to be told how large it might be.
struct LayerSheet::Measure {
    Measure(const LayerShell& shell, wl_output* output, const LayerSurface::Reader& reader)
        : surface(wl_compositor_create_surface(WaylandHandles::compositor()))
        , layer(std::make_unique<LayerSurface>(
              shell, surface, output, LayerSurface::Place::free, QSize(0, 0), reader))
    {
    }
    ~Measure()
    {
        layer.reset();
        wl_surface_destroy(surface);
    }
    Measure(const Measure&) = delete;
    Measure& operator=(const Measure&) = delete;

    wl_surface* surface;
    std::unique_ptr<LayerSurface> layer;
};

LayerSheet::LayerSheet(const LayerShell& shell)
    : m_shell(shell)
    , m_window(shell, *this)
{
    setAttribute(Qt::WA_TranslucentBackground);
    connect(&m_window, &LayerWindow::lost, this, &LayerSheet::lost);
}

LayerSheet::~LayerSheet() = default;

// What stands in it was placed for another size.
void LayerSheet::resizeEvent(QResizeEvent*)
{
    if (m_window.isConfigured())
        QMetaObject::invokeMethod(this, &LayerSheet::lost, Qt::QueuedConnection);
}

bool LayerSheet::open(QScreen& screen)
{
    if (!m_window.show(screen, LayerSurface::Place::everywhere, QSize(0, 0)))
        return false;
    m_free = {};
    m_measure = std::make_unique<Measure>(m_shell, WaylandHandles::output(screen),
        LayerSurface::Reader { [this](const QSize& size) {
                                  m_free = size;
                                  m_measure.reset();
                              },
            [this] { m_measure.reset(); } });
    return true;
}

void LayerSheet::close()
{
    m_measure.reset();
    m_window.hide();
}

void LayerSheet::freeMemory()
{
    auto* const store = backingStore();
    if (m_window.isShown() || !store || store->size().isEmpty())
        return;
    constexpr QSize least(1, 1);
    store->resize(least);
    store->beginPaint(QRect({}, least));
    store->endPaint();
}

// KWin does not count its own panels among what takes room. An item stands in the middle of its
// panel; where the pointer is in it is then about half as far in as the panel goes.
QSize LayerSheet::guess(const QPoint& place) const
{
    const int fromSide = std::min(place.x(), width() - 1 - place.x());
    const int fromEnd = std::min(place.y(), height() - 1 - place.y());
    if (fromEnd <= thickestPanel / 2)
        return { 0, 2 * fromEnd };
    return { fromSide <= thickestPanel / 2 ? 2 * fromSide : 0, 0 };
}

ScreenSpace LayerSheet::space(const QPoint& place) const
{
    QRect available = rect();
    const QSize taken = m_free.isEmpty() || m_free == size() ? guess(place) : size() - m_free;
    if (place.y() < height() / 2)
        available.setTop(taken.height());
    else
        available.setBottom(height() - 1 - taken.height());
    if (place.x() < width() / 2)
        available.setLeft(taken.width());
    else
        available.setRight(width() - 1 - taken.width());
    return { rect(), available };
}

void LayerSheet::enterEvent(QEnterEvent* event)
{
    Q_EMIT entered(event->position().toPoint());
}

void LayerSheet::mousePressEvent(QMouseEvent* event)
{
    Q_EMIT clicked(event->position().toPoint());
}
