#include "App/Ui/ScrollBar.h"

#include "App/Ui/Surface.h"
#include "App/Ui/Theme.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QWheelEvent>

namespace {

constexpr int edge = 3;
constexpr int thinThumb = 6;
constexpr int wideThumb = 8;
constexpr int shortestThumb = 24;
constexpr int restMilliseconds = 800;
constexpr int fadeMilliseconds = 200;

}

ScrollBar::ScrollBar(QScrollBar& range, QWidget* parent)
    : QWidget(parent)
    , m_range(range)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::NoFocus);
    m_rest.setSingleShot(true);
    m_rest.setInterval(restMilliseconds);
    m_fade.setDuration(fadeMilliseconds);
    m_fade.setStartValue(1.0);
    m_fade.setEndValue(0.0);
    connect(&m_rest, &QTimer::timeout, &m_fade, [this] { m_fade.start(); });
    connect(&m_fade, &QVariantAnimation::valueChanged, this,
        [this](const QVariant& value) { setOpacity(value.toReal()); });
    connect(&range, &QScrollBar::valueChanged, this, &ScrollBar::wake);
    connect(&range, &QScrollBar::rangeChanged, this, &ScrollBar::wake);
}

QRect ScrollBar::thumb() const
{
    if (!hasMore())
        return {};
    const int track = height() - 2 * edge;
    const int span = m_range.maximum() - m_range.minimum();
    const int length = qMin(
        track, qMax(shortestThumb, track * m_range.pageStep() / (span + m_range.pageStep())));
    const int top = edge + (track - length) * (m_range.value() - m_range.minimum()) / span;
    const int side = m_hovered || m_dragging ? wideThumb : thinThumb;
    const QRect right(stripWidth - edge - side, top, side, length);
    return QStyle::visualRect(layoutDirection(), rect(), right);
}

void ScrollBar::wake()
{
    if (!hasMore()) {
        m_rest.stop();
        m_fade.stop();
        setOpacity(0);
        return;
    }
    m_fade.stop();
    setOpacity(1);
    update();
    if (m_hovered || m_dragging)
        m_rest.stop();
    else
        m_rest.start();
}

void ScrollBar::paintEvent(QPaintEvent*)
{
    if (m_opacity <= 0 || !hasMore())
        return;
    const Colors& c = Theme::current().colors;
    QPainter painter(this);
    painter.setOpacity(m_opacity);
    const QRectF shown = thumb();
    const bool strong = m_hovered || m_dragging;
    Surface::fill(painter, shown, shown.width() / 2, strong ? c.thumbHover : c.thumb);
}

bool ScrollBar::event(QEvent* event)
{
    if (event->type() == QEvent::HoverEnter)
        setHovered(true);
    else if (event->type() == QEvent::HoverLeave || event->type() == QEvent::Hide)
        setHovered(false);
    return QWidget::event(event);
}

void ScrollBar::mousePressEvent(QMouseEvent* event)
{
    const int y = event->position().toPoint().y();
    const QRect taken = thumb();
    if (event->button() != Qt::LeftButton || taken.isEmpty()) {
        event->ignore();
        return;
    }
    const bool onThumb = y >= taken.top() && y <= taken.bottom();
    m_grip = onThumb ? y - taken.top() : taken.height() / 2;
    m_dragging = true;
    dragTo(y - m_grip);
    wake();
}

void ScrollBar::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging)
        dragTo(event->position().toPoint().y() - m_grip);
}

void ScrollBar::mouseReleaseEvent(QMouseEvent*)
{
    m_dragging = false;
    wake();
}

void ScrollBar::wheelEvent(QWheelEvent* event)
{
    QCoreApplication::sendEvent(&m_range, event);
}

bool ScrollBar::hasMore() const
{
    return m_range.maximum() > m_range.minimum();
}

void ScrollBar::setHovered(bool hovered)
{
    if (m_hovered == hovered)
        return;
    m_hovered = hovered;
    wake();
}

void ScrollBar::setOpacity(qreal opacity)
{
    if (qFuzzyCompare(1 + m_opacity, 1 + opacity))
        return;
    m_opacity = opacity;
    update();
}

void ScrollBar::dragTo(int top)
{
    const int way = height() - 2 * edge - thumb().height();
    if (way <= 0)
        return;
    const int span = m_range.maximum() - m_range.minimum();
    m_range.setValue(m_range.minimum() + (top - edge) * span / way);
}
