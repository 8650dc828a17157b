// What a panel looks like beside an item.
#pragma once

#include <QImage>
#include <QRect>

// A pixel of each row beside that place, which is in pixels of the root window. Null where no such
// picture is to be had: the server gives one only of what it shows by itself, without a compositor.
QImage panelGround(const QRect& place);
