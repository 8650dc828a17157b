// How well one colour can be read on another, after WCAG 2.
#pragma once

#include <QColor>

namespace Contrast {

// The least ratio at which words can be read.
inline constexpr qreal words = 4.5;

// 1 to 21; both colours opaque.
qreal ratio(const QColor& first, const QColor& second);

// What is seen where a translucent colour lies on an opaque one.
QColor over(const QColor& ink, const QColor& ground);

QColor withAlpha(QColor color, qreal alpha);

// The share of the way from one opaque colour to another, 0 to 1.
QColor mixed(const QColor& from, const QColor& to, qreal share);

}
