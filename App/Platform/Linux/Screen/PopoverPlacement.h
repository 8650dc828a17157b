// Where a popover stands beside the status item that it hangs from.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

// A screen in global coordinates: all of it, and what the desktop's panels leave free.
struct ScreenSpace {
    QRect whole;
    QRect available;
};

// The top left corner of a popover of that size: below or above the anchor, or beside it where
// the panel is upright; always inside the available area if it fits at all. A null anchor stands
// for an item of unknown place, which is taken to be at the far end of the panel.
QPoint popoverOrigin(const QRect& anchor, const QSize& size, const ScreenSpace& screen);
