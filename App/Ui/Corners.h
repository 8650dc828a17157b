// Rectangles whose corners bend gradually, without a visible start of the arc.
#pragma once

#include <QPainterPath>

namespace Corners {

// A radius of 0 leaves that end of the box square. Each corner takes 1.6 radii of its two edges.
QPainterPath continuous(const QRectF& box, qreal topRadius, qreal bottomRadius);
inline QPainterPath continuous(const QRectF& box, qreal radius)
{
    return continuous(box, radius, radius);
}

}
