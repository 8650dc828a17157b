// A control is wider than what is seen of it: its visible box has a free margin on every side, in
// which the control itself paints its focus ring. Views place boxes, never widgets, so that all
// positions are those of the visible edges; margins of neighbours may overlap, they are see-through
// for the eye and for the pointer.
#pragma once

#include <QWidget>

namespace ControlBox {

inline constexpr int margin = 3;

// In the widget's own coordinates.
inline QRect of(const QWidget& widget)
{
    return widget.rect().adjusted(margin, margin, -margin, -margin);
}

// In the parent's coordinates.
inline void place(QWidget& widget, const QRect& box)
{
    widget.setGeometry(box.adjusted(-margin, -margin, margin, margin));
}

inline QSize outer(const QSize& box)
{
    return box + QSize(2 * margin, 2 * margin);
}

}
