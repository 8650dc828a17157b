#include "App/Ui/Symbols.h"

#include "App/Ui/SymbolPaths.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QRect>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

constexpr qreal grid = 24;

struct Shape {
    QPainterPath strokes;
    QPainterPath fills;
};

QLatin1StringView nameOf(const Symbols::Part& part)
{
    return { part.symbol.data(), qsizetype(part.symbol.size()) };
}

class PathReader final {
public:
    explicit PathReader(std::string_view text)
        : m_text(text)
    {
    }

    void addTo(QPainterPath& path)
    {
        while (!m_text.empty()) {
            const char command = m_text.front();
            m_text.remove_prefix(1);
            apply(command, path);
            skipSpace();
        }
    }

private:
    void apply(char command, QPainterPath& path)
    {
        if (command == 'Z') {
            path.closeSubpath();
            return;
        }
        const QPointF first = point();
        if (command == 'M') {
            path.moveTo(first);
        } else if (command == 'L') {
            path.lineTo(first);
        } else {
            const QPointF second = point();
            path.cubicTo(first, second, point());
        }
    }

    QPointF point()
    {
        const qreal x = number();
        return { x, number() };
    }

    qreal number()
    {
        skipSpace();
        qreal value = 0;
        const char* end = m_text.data() + m_text.size();
        const char* rest = std::from_chars(m_text.data(), end, value).ptr;
        m_text.remove_prefix(size_t(rest - m_text.data()));
        return value;
    }

    void skipSpace()
    {
        if (!m_text.empty() && m_text.front() == ' ')
            m_text.remove_prefix(1);
    }

    std::string_view m_text;
};

Shape read(const QString& name)
{
    Shape shape;
    for (const Symbols::Part& part : Symbols::parts) {
        if (nameOf(part) != name)
            continue;
        const bool filled = part.paint == Symbols::Paint::fill;
        PathReader(part.path).addTo(filled ? shape.fills : shape.strokes);
    }
    return shape;
}

const Shape& shapeOf(const QString& name)
{
    static QHash<QString, Shape> cache;
    auto found = cache.constFind(name);
    if (found == cache.cend())
        found = cache.insert(name, read(name));
    return *found;
}

// One path for all parts: a translucent colour must not darken where parts overlap.
QPainterPath outline(const Shape& shape, const QTransform& transform, qreal width)
{
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    stroker.setCurveThreshold(0.05);
    QPainterPath path = stroker.createStroke(transform.map(shape.strokes));
    path.addPath(transform.map(shape.fills));
    path.setFillRule(Qt::WindingFill);
    return path;
}

}

QStringList Symbols::names()
{
    QStringList all;
    for (const Part& part : parts) {
        const auto name = nameOf(part);
        if (all.isEmpty() || all.last() != name)
            all << name;
    }
    return all;
}

bool Symbols::contains(const QString& name)
{
    return std::ranges::find(parts, name, nameOf) != std::end(parts);
}

void Symbols::paint(
    QPainter& painter, const QString& name, const QRectF& box, const QColor& color, qreal stroke)
{
    const qreal scale = box.width() / grid;
    const QTransform transform(scale, 0, 0, scale, box.x(), box.y());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline(shapeOf(name), transform, stroke * scale), color);
    painter.restore();
}

int Symbols::boxSize(int fontSize)
{
    // Beside body words the box keeps to the line, which is 16 high.
    if (fontSize == 13)
        return 16;
    return 2 * int(std::lround(fontSize * 2 / 3.0));
}

QRect Symbols::centered(int side, const QRect& slot)
{
    return { slot.x() + (slot.width() - side) / 2, slot.y() + (slot.height() - side) / 2, side,
        side };
}
