#include "App/System/Sparkline.h"

#include "App/System/AccessibleSparkline.h"
#include "App/System/ChartLine.h"
#include "App/System/ChartScale.h"
#include "App/System/SystemMonitor.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/PixelGrid.h"
#include "App/Ui/Theme.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

constexpr qreal lineWidth = 1.5;
constexpr int highestLevel = 520; // Sixteenths of a point.
constexpr qreal unseen = 0.1; // Points that the line may be off.
constexpr float areaOpacity = 0.18F;

}

Sparkline::Sparkline(const QString& name, QColor Colors::*color, Words words, QWidget* parent)
    : QWidget(parent)
    , m_color(color)
    , m_words(std::move(words))
{
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new AccessibleSparkline(static_cast<Sparkline*>(widget)); });
    setAccessibleName(name);
    setFixedHeight(height);
}

double Sparkline::top() const
{
    return ChartScale::top(m_values, m_maxY);
}

void Sparkline::setValues(const QList<double>& values)
{
    if (m_values == values)
        return;
    m_values = values;
    paintIfNew();
    Accessibility::tellValue(this, m_values.isEmpty() ? 0 : m_values.last());
}

void Sparkline::setMaxY(std::optional<double> maxY)
{
    m_maxY = maxY;
    paintIfNew();
}

// A change that nobody would see is no reason to paint.
void Sparkline::paintIfNew()
{
    const double top = this->top();
    QList<int> levels;
    levels.reserve(m_values.size());
    for (const double value : m_values)
        levels << qRound(std::clamp(value / top, 0.0, 1.0) * highestLevel);
    if (levels == m_levels)
        return;
    m_levels = levels;
    update();
}

// Kept half its width inside, so that also a flat line at either edge is fully seen.
QPolygonF Sparkline::lineIn(const QRectF& box) const
{
    const qreal step = box.width() / (SystemMonitor::historyLength - 1);
    const qreal bottom = box.bottom() - lineWidth / 2;
    const qreal rise = (box.height() - lineWidth) / highestLevel;
    QPolygonF points;
    points.reserve(m_levels.size());
    for (const int level : m_levels)
        points << QPointF(box.left() + qreal(points.size()) * step, bottom - level * rise);
    return points;
}

void Sparkline::paintEvent(QPaintEvent*)
{
    if (m_levels.isEmpty())
        return;
    QPainter painter(this);
    const auto box = PixelGrid::snapped(painter, rect());
    const auto line = lineIn(box);
    auto area = line;
    area << QPointF(line.last().x(), box.bottom()) << QPointF(line.first().x(), box.bottom());

    const QColor color = Theme::current().colors.*m_color;
    QColor tint = color;
    tint.setAlphaF(areaOpacity);
    // The line hides the steps of the area's edge, and smoothing those would cost the most.
    painter.setPen(Qt::NoPen);
    painter.setBrush(tint);
    painter.drawPolygon(area);
    // Qt draws straight strokes ten times as fast as a whole path; their square ends make the
    // joins.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, lineWidth, Qt::SolidLine, Qt::SquareCap));
    painter.drawLines(ChartLine::strokes(line, unseen));
}
