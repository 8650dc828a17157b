#include "App/Ui/Surface.h"

#include "App/Ui/Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace {

QPainterPath rounded(const QRectF& box, qreal radius)
{
    QPainterPath path;
    path.addRoundedRect(box, radius, radius);
    return path;
}

QPainterPath frame(const QRectF& box, qreal radius, qreal width)
{
    QPainterPath path = rounded(box, radius);
    path.addRoundedRect(box.adjusted(width, width, -width, -width), radius - width, radius - width);
    return path;
}

QColor faded(QColor color, qreal share)
{
    color.setAlphaF(float(color.alphaF() * share));
    return color;
}

void fillPath(QPainter& painter, const QPainterPath& path, const QColor& color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path, color);
    painter.restore();
}

}

void Surface::fill(QPainter& painter, const QRectF& box, qreal radius, const QColor& color)
{
    fillPath(painter, rounded(box, radius), color);
}

void Surface::ring(QPainter& painter, const QRectF& box, qreal radius, const QColor& color)
{
    ring(painter, box, radius, color, 1 / painter.device()->devicePixelRatioF());
}

void Surface::ring(
    QPainter& painter, const QRectF& box, qreal radius, const QColor& color, qreal width)
{
    fillPath(painter, frame(box, radius, width), color);
}

void Surface::shade(
    QPainter& painter, const QRectF& box, qreal radius, const QColor& color, int blur)
{
    // Layers of growing size stand for the blur: at this width no eye tells them from a Gaussian.
    const int layers = 2 * blur;
    for (int layer = 0; layer < layers; ++layer) {
        const qreal grow = (layer + 0.5) / layers * blur - blur / 2.0;
        const QRectF lower = box.adjusted(-grow, 1 - grow, grow, 1 + grow);
        const QPainterPath visible = rounded(lower, radius + grow) - rounded(box, radius);
        fillPath(painter, visible, faded(color, 1.0 / layers));
    }
}

void Surface::focusRing(QPainter& painter, const QRectF& box, qreal radius)
{
    constexpr qreal width = 3;
    const QRectF outer = box.adjusted(-width, -width, width, width);
    fillPath(painter, frame(outer, radius + width, width), Theme::current().colors.focusRing);
}
