#include "App/Focus/ProgressRing.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/AccessibleFraction.h"
#include "App/Ui/DigitText.h"
#include "App/Ui/Theme.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal stroke = 8;
constexpr qreal radius = (ProgressRing::side - stroke) / 2;
constexpr qreal timeWidth = 124; // What the ring leaves free at the height of the digits.
constexpr int stepMs = 500; // The model's tick, so that the arc never rests between two steps.

// A shorter step of the arc's end is not seen as a jump, and is not worth thirty repaints.
constexpr qreal visibleStep = 1.5;

}

ProgressRing::ProgressRing(QWidget* parent)
    : QWidget(parent)
{
    Accessibility::describe(staticMetaObject, [](QWidget* widget) {
        return new AccessibleFraction(
            widget, [widget] { return static_cast<ProgressRing*>(widget)->progress(); });
    });
    setFixedSize(side + 2 * margin, side + 2 * margin);
    m_animation.setDuration(stepMs);
    connect(&m_animation, &QVariantAnimation::valueChanged, this,
        [this](const QVariant& value) { setShown(value.toDouble()); });
}

void ProgressRing::setProgress(double progress)
{
    const auto wanted = std::clamp(progress, 0.0, 1.0);
    if (wanted == m_progress)
        return;
    m_progress = wanted;
    m_animation.stop();
    const auto step = std::abs(wanted - m_shown) * 2 * std::numbers::pi * radius;
    if (!isVisible() || step < visibleStep) {
        setShown(wanted);
        return;
    }
    m_animation.setStartValue(m_shown);
    m_animation.setEndValue(wanted);
    m_animation.start();
}

void ProgressRing::setShown(double progress)
{
    if (std::exchange(m_shown, progress) != progress)
        update();
}

void ProgressRing::setTime(const QString& time)
{
    if (std::exchange(m_time, time) == time)
        return;
    setAccessibleName(u"Time left: "_s + time);
    update();
}

void ProgressRing::setColor(const QColor& color)
{
    if (std::exchange(m_color, color) != color)
        update();
}

void ProgressRing::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto middle = QRectF(rect()).marginsRemoved(QMarginsF() + margin + stroke / 2);
    painter.setPen(QPen(Theme::current().colors.ringTrack, stroke));
    painter.drawEllipse(middle);
    if (m_shown > 0) {
        constexpr int twelveOClock = 90 * 16;
        constexpr int wholeTurn = 360 * 16;
        painter.setPen(QPen(m_color, stroke, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(middle, twelveOClock, -static_cast<int>(std::lround(m_shown * wholeTurn)));
    }
    paintTime(painter);
}

void ProgressRing::paintTime(QPainter& painter)
{
    const auto& theme = Theme::current();
    const auto text = DigitText::ring(theme.font(TextRole::ringTime), m_time.size());
    if (const auto width = text.width(m_time); width > timeWidth) {
        painter.translate(rect().toRectF().center());
        painter.scale(timeWidth / width, timeWidth / width);
        painter.translate(-rect().toRectF().center());
    }
    text.paint(painter, rect(), m_time, theme.colors.text);
}
