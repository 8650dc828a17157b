#include "App/Ui/PixelGrid.h"

#include <QPainter>

#include <cmath>

QRectF PixelGrid::snapped(const QPainter& painter, const QRectF& box)
{
    const auto toDevice = painter.deviceTransform();
    const auto device = toDevice.mapRect(box);
    // Up from the middle, as Qt cuts widgets out of their window.
    const auto edge = [](qreal position) { return std::floor(position + 0.5); };
    const QPointF topLeft(edge(device.left()), edge(device.top()));
    const QPointF bottomRight(edge(device.right()), edge(device.bottom()));
    return toDevice.inverted().mapRect(QRectF(topLeft, bottomRight));
}
