#include "App/System/Sparkline.h"

#include "App/System/AccessibleSparkline.h"
#include "App/System/ChartScale.h"
#include "App/System/SystemMonitor.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/Theme.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

constexpr qreal lineWidth = 1.5;
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
    update();
    QAccessibleValueChangeEvent event(this, m_values.isEmpty() ? 0 : m_values.last());
    QAccessible::updateAccessibility(&event);
}

void Sparkline::setMaxY(std::optional<double> maxY)
{
    if (std::exchange(m_maxY, maxY) != maxY)
        update();
}

// Kept half its width inside, so that also a flat line at either edge is fully seen.
QPolygonF Sparkline::line() const
{
    const qreal step = qreal(width()) / (SystemMonitor::historyLength - 1);
    const qreal bottom = height - lineWidth / 2;
    const qreal rise = height - lineWidth;
    const double top = this->top();
    QPolygonF points;
    points.reserve(m_values.size());
    for (const double value : m_values)
        points << QPointF(
            qreal(points.size()) * step, bottom - std::clamp(value / top, 0.0, 1.0) * rise);
    return points;
}

void Sparkline::paintEvent(QPaintEvent*)
{
    if (m_values.isEmpty())
        return;
    QColor color = Theme::current().colors.*m_color;
    const auto line = this->line();
    auto area = line;
    area << QPointF(line.last().x(), height) << QPointF(0, height);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (line.size() == 1)
        painter.drawPoint(line.first());
    else
        painter.drawPolyline(line);
    color.setAlphaF(areaOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(area);
}
