// One line of words in a box, upright in its middle by the height of its capitals.
#pragma once

#include <Qt>

class QColor;
class QFont;
class QPainter;
class QRectF;
class QString;

namespace TextLine {

// The y at which the painter draws the line.
qreal baseline(const QFont& font, const QRectF& box);

// What does not fit ends in an ellipsis. Leading and trailing follow the painter's direction, the
// words their own.
void paint(QPainter& painter, const QRectF& box, Qt::Alignment alignment, const QString& text,
    const QFont& font, const QColor& color);

// The width of the words, rounded up to whole points.
int width(const QString& text, const QFont& font);

}
