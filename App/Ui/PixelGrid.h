// The grid of device pixels, which whole points leave at scales like 1.5.
#pragma once

#include <QRectF>

class QPainter;

namespace PixelGrid {

// The box with its edges moved to the nearest pixel edges, so that they are sharp.
QRectF snapped(const QPainter& painter, const QRectF& box);

}
