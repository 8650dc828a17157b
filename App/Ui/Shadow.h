// The soft shadow around a rounded box.
#pragma once

#include "App/Ui/Colors.h"

#include <QImage>
#include <QMargins>
#include <QRect>

#include <span>

class QPainter;

class Shadow final {
public:
    // Radius in points; scale in device pixels a point.
    Shadow(std::span<const Colors::Shadow> layers, int radius, qreal scale);

    // How far the shadow of any of the layers reaches out of its box.
    static QMargins reach(std::span<const Colors::Shadow> layers);

    // The inside of the box is shadowed too: paint the box over it.
    void paint(QPainter& painter, const QRect& box) const;

private:
    // Only the corners differ from place to place, so the shadow of a small box is kept and its
    // middle is stretched.
    QImage m_tile;
    QMargins m_reach;
    int m_corner; // From the tile's edge to its stretched middle, in device pixels.
    qreal m_scale;
};
