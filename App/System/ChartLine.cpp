#include "App/System/ChartLine.h"

#include <algorithm>
#include <cmath>

static bool passesBy(
    const QPointF& start, const QPointF& end, const QPointF& point, qreal tolerance)
{
    const qreal slope = (end.y() - start.y()) / (end.x() - start.x());
    return std::abs(start.y() + slope * (point.x() - start.x()) - point.y()) <= tolerance;
}

QList<QLineF> ChartLine::strokes(const QList<QPointF>& points, qreal tolerance)
{
    QList<QLineF> strokes;
    if (points.isEmpty())
        return strokes;
    auto start = points.cbegin();
    for (auto end = start + 1; end < points.cend(); ++end) {
        const auto next = end + 1;
        const bool goesOn = next < points.cend()
            && std::all_of(start + 1, next,
                [&](const QPointF& point) { return passesBy(*start, *next, point, tolerance); });
        if (goesOn)
            continue;
        strokes << QLineF(*start, *end);
        start = end;
    }
    return strokes;
}
