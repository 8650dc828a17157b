#include "App/Popover.h"

#include "App/Platform/Compositor.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/Theme.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int radius = 10;

// Room for the shadow, which may hang over the edges of the screen; without one, for the edge.
constexpr QMargins shadowMargins { 40, 32, 40, 48 };
constexpr QMargins edgeMargins { 1, 1, 1, 1 };

QPainterPath rounded(const QRectF& box, qreal by)
{
    QPainterPath path;
    path.addRoundedRect(box, by, by);
    return path;
}

}

Popover::Popover(const Compositor& compositor, std::unique_ptr<QWidget> content)
    : m_compositor(compositor)
    , m_content(content.release())
{
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::Dialog); });
    m_content->setParent(this);
    setWindowTitle(QStringLiteral("Corvella"));
    setAttribute(Qt::WA_TranslucentBackground);
    connect(&compositor, &Compositor::changed, this, &Popover::adaptToCompositor);
    adaptToCompositor();
}

void Popover::adaptToCompositor()
{
    const auto margins = m_compositor.isRunning() ? shadowMargins : edgeMargins;
    const auto sheet = mapToGlobal(m_content->pos());
    setContentsMargins(margins);
    setFixedSize(m_content->size().grownBy(margins));
    m_content->move(margins.left(), margins.top());
    move(sheet - m_content->pos()); // The window grows or shrinks around what is seen.
    if (m_compositor.isRunning()) {
        clearMask();
    } else {
        m_shadow.reset();
        setMask(rounded(rect(), radius + 1).toFillPolygon().toPolygon());
    }
    update();
}

void Popover::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange) {
        m_shadow.reset();
        update();
    }
    QWidget::changeEvent(event);
}

void Popover::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const auto& colors = Theme::current().colors;
    // Whatever moves inside the sheet needs no more than its plain ground between its sides.
    if (contentsRect().adjusted(0, radius, 0, -radius).contains(event->rect())) {
        painter.fillRect(event->rect(), colors.window);
        paintInnerSides(painter);
        return;
    }
    if (m_compositor.isRunning())
        paintShadow(painter);
    else
        painter.fillRect(rect(), colors.window); // Nothing shows through: the edge needs a ground.
    paintSheet(painter);
}

void Popover::paintInnerSides(QPainter& painter) const
{
    const auto& color = Theme::current().colors.popoverInnerEdge;
    if (!color.isValid())
        return;
    const qreal pixel = 1 / devicePixelRatioF();
    const QRectF sheet = contentsRect();
    for (const qreal left : { sheet.left(), sheet.right() - pixel })
        painter.fillRect(QRectF(left, sheet.top(), pixel, sheet.height()), color);
}

void Popover::paintShadow(QPainter& painter)
{
    if (!m_shadow)
        m_shadow.emplace(Theme::current().colors.popoverShadow, radius, devicePixelRatioF());
    m_shadow->paint(painter, contentsRect());
}

void Popover::paintSheet(QPainter& painter)
{
    const auto& colors = Theme::current().colors;
    const qreal pixel = 1 / devicePixelRatioF();
    const QRectF sheet = contentsRect();
    painter.setRenderHint(QPainter::Antialiasing);
    const auto edge = rounded(sheet.adjusted(-pixel, -pixel, pixel, pixel), radius + pixel);
    const auto body = rounded(sheet, radius);
    painter.fillPath(edge.subtracted(body), colors.popoverEdge);
    painter.fillPath(body, colors.window);
    if (colors.popoverInnerEdge.isValid()) {
        const auto inner = rounded(sheet.adjusted(pixel, pixel, -pixel, -pixel), radius - pixel);
        painter.fillPath(body.subtracted(inner), colors.popoverInnerEdge);
    }
}
