// The line of a chart in as few strokes as nobody would tell from all of them.
#pragma once

#include <QLineF>
#include <QList>
#include <QPointF>

namespace ChartLine {

// Joined end to end; no point on the way is farther from them than the tolerance, up or down. The
// points go from left to right. Fewer than two make no stroke.
QList<QLineF> strokes(const QList<QPointF>& points, qreal tolerance);

}
