#include "App/Ui/Corners.h"

namespace {

// The corner is an arc of 36 degrees between two easing curves; all lengths are in radii.
constexpr qreal reach = 1.6;

// Turned so that the path runs along `ahead` into the corner and leaves it along `aside`.
class Turn final {
public:
    Turn(const QPointF& start, const QPointF& ahead, const QPointF& aside)
        : m_start(start)
        , m_ahead(ahead)
        , m_aside(aside)
    {
    }

    QPointF at(qreal along, qreal across) const
    {
        return m_start + along * m_ahead + across * m_aside;
    }

private:
    QPointF m_start;
    QPointF m_ahead;
    QPointF m_aside;
};

void addCorner(
    QPainterPath& path, const QPointF& corner, const QPointF& ahead, const QPointF& aside)
{
    const Turn turn(corner - reach * ahead, ahead, aside);
    path.lineTo(turn.at(0, 0));
    path.cubicTo(turn.at(.560, 0), turn.at(.840, 0), turn.at(1.054, .109));
    path.cubicTo(turn.at(1.2422, .2049), turn.at(1.3951, .3578), turn.at(1.491, .546));
    path.cubicTo(turn.at(1.6, .760), turn.at(1.6, 1.040), turn.at(1.6, 1.6));
}

}

QPainterPath Corners::continuous(const QRectF& box, qreal topRadius, qreal bottomRadius)
{
    const QPointF right(1, 0);
    const QPointF down(0, 1);
    QPainterPath path;
    path.moveTo(box.center().x(), box.top());
    addCorner(path, box.topRight(), topRadius * right, topRadius * down);
    addCorner(path, box.bottomRight(), bottomRadius * down, -bottomRadius * right);
    addCorner(path, box.bottomLeft(), -bottomRadius * right, -bottomRadius * down);
    addCorner(path, box.topLeft(), -topRadius * down, topRadius * right);
    path.closeSubpath();
    return path;
}
