// The layers that controls are painted with: shade, fill, ring, focus ring. Radii are plain arcs.
#pragma once

#include <QColor>
#include <QRect>

class QPainter;

namespace Surface {

void fill(QPainter& painter, const QRectF& box, qreal radius, const QColor& color);
// One device pixel, inside the box.
void ring(QPainter& painter, const QRectF& box, qreal radius, const QColor& color);
void ring(QPainter& painter, const QRectF& box, qreal radius, const QColor& color, qreal width);
// The box moved down and blurred, seen only outside the box.
void shade(QPainter& painter, const QRectF& box, qreal radius, const QColor& color, int blur = 1);
// Three points wide, outside the box.
void focusRing(QPainter& painter, const QRectF& box, qreal radius);

}
