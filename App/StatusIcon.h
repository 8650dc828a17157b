// The status item's title as a picture.
#pragma once

#include <QColor>
#include <QImage>

struct StatusTitle;

namespace StatusIcon {

// The disc, the minutes, or the minutes cut out of a cup, in one ink on nothing. The side is in
// device pixels.
QImage square(const StatusTitle& title, int side, const QColor& ink);

// The same in white on a dark ground, which can be read on a panel of any colour.
QImage badge(const StatusTitle& title, int side);

// The whole title in white on a dark pill, as wide as it needs to be. The height is in device
// pixels; below 26 points the pill becomes lower and narrower, and its words at last smaller.
QImage pill(const StatusTitle& title, int height, qreal scale);

}
