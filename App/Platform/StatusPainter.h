// Draws the title for status bars that show pictures but no text.
#pragma once

#include "App/Platform/StatusItem.h"

#include <QImage>

#include <functional>

// All sizes are in device pixels; scale is the number of those in a point.
struct StatusPainter {
    std::function<QImage(const StatusTitle&, int side)> square;
    std::function<QImage(const StatusTitle&, int height, qreal scale)> pill;
};
