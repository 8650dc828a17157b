// Our own line symbols, drawn as paths so that they are sharp at every size and scale.
#pragma once

#include <QStringList>

class QColor;
class QPainter;
class QRect;
class QRectF;

namespace Symbols {

QStringList names();
bool contains(const QString& name);

// Fills the square box; stroke is in units of the grid of 24. An unknown name paints nothing.
void paint(QPainter& painter, const QString& name, const QRectF& box, const QColor& color,
    qreal stroke = 1.6);

// The side of the box that goes with words of this pixel size.
int boxSize(int fontSize);

// A square of that side in the middle of the slot, on whole points.
QRect centered(int side, const QRect& slot);

}
