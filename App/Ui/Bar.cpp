#include "App/Ui/Bar.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/PixelGrid.h"
#include "App/Ui/Surface.h"
#include "App/Ui/Theme.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

Bar::Bar(const QString& name, QWidget* parent)
    : QWidget(parent)
{
    Accessibility::install();
    setAccessibleName(name);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Bar::setFraction(qreal fraction)
{
    const qreal bounded = std::isfinite(fraction) ? qBound(0.0, fraction, 1.0) : 0;
    if (m_fraction == bounded)
        return;
    m_fraction = bounded;
    update();
    Accessibility::tellValue(this, int(std::lround(m_fraction * 100)));
}

void Bar::setTint(QColor Colors::*tint)
{
    if (m_tint == tint)
        return;
    m_tint = tint;
    update();
}

void Bar::paintEvent(QPaintEvent*)
{
    const Colors& c = Theme::current().colors;
    QPainter painter(this);
    const QRectF track = PixelGrid::snapped(painter, rect());
    const qreal radius = track.height() / 2;
    Surface::fill(painter, track, radius, c.barTrack);
    QRectF filled = track;
    filled.setWidth(track.width() * m_fraction);
    if (layoutDirection() == Qt::RightToLeft)
        filled.moveRight(track.right());
    // Clipped to the track, so that a short bar keeps the track's end.
    QPainterPath shape;
    shape.addRoundedRect(track, radius, radius);
    QPainterPath part;
    const qreal rounding = qMin(radius, filled.width() / 2);
    part.addRoundedRect(filled, rounding, rounding);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(filled.width() < track.height() ? shape & part : part, c.*m_tint);
}
