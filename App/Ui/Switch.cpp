#include "App/Ui/Switch.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/Contrast.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Interaction.h"
#include "App/Ui/Surface.h"
#include "App/Ui/Theme.h"

#include <QPainter>
#include <QPixmap>

namespace {

constexpr int inset = 2;
constexpr int knobSide = 16;
constexpr int slideMilliseconds = 150;
// How much of its colour a switch keeps that cannot be used.
constexpr qreal disabledShare = 0.45;

QColor between(const QColor& off, const QColor& on, qreal share)
{
    const auto channel = [share](float a, float b) { return a + (b - a) * float(share); };
    return QColor::fromRgbF(channel(off.redF(), on.redF()), channel(off.greenF(), on.greenF()),
        channel(off.blueF(), on.blueF()), channel(off.alphaF(), on.alphaF()));
}

}

Switch::Switch(const QString& name, QWidget* parent)
    : QAbstractButton(parent)
    , m_interaction(new Interaction(this))
{
    Accessibility::install();
    setAccessibleName(name);
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_slide.setDuration(slideMilliseconds);
    connect(&m_slide, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_knob = value.toReal();
        update();
    });
}

QRect Switch::box() const
{
    return ControlBox::of(*this);
}

QSize Switch::sizeHint() const
{
    return ControlBox::outer(boxSize());
}

void Switch::placeBox(const QRect& box)
{
    ControlBox::place(*this, box);
}

void Switch::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (isEnabled()) {
        paintTrackAndKnob(painter);
    } else {
        // Fades as a whole: the track must not shine through the knob.
        QPixmap whole(size() * devicePixelRatioF());
        whole.setDevicePixelRatio(devicePixelRatioF());
        whole.fill(Qt::transparent);
        QPainter layer(&whole);
        paintTrackAndKnob(layer);
        layer.end();
        painter.setOpacity(disabledShare);
        painter.drawPixmap(0, 0, whole);
    }
    if (m_interaction->showsFocus())
        Surface::focusRing(painter, box(), box().height() / 2.0);
}

bool Switch::hitButton(const QPoint& position) const
{
    return box().contains(position);
}

void Switch::checkStateSet()
{
    moveKnob();
}

void Switch::nextCheckState()
{
    QAbstractButton::nextCheckState();
    moveKnob();
}

void Switch::moveKnob()
{
    const qreal end = isChecked() ? 1 : 0;
    const bool isSliding = m_slide.state() == QVariantAnimation::Running;
    if (end == (isSliding ? m_slide.endValue().toReal() : m_knob))
        return;
    m_slide.stop();
    if (!isVisible()) {
        m_knob = end;
        return;
    }
    m_slide.setStartValue(m_knob);
    m_slide.setEndValue(end);
    m_slide.start();
}

QColor Switch::trackColor() const
{
    const Colors& c = Theme::current().colors;
    return between(c.switchOff, c.accent, m_knob);
}

void Switch::paintTrackAndKnob(QPainter& painter) const
{
    const QRectF track = box();
    Surface::fill(painter, track, track.height() / 2, trackColor());
    const qreal way = track.width() - knobSide - 2 * inset;
    const qreal share = layoutDirection() == Qt::RightToLeft ? 1 - m_knob : m_knob;
    const QRectF knob(track.x() + inset + share * way, track.y() + inset, knobSide, knobSide);
    Surface::shade(painter, knob, knobSide / 2.0, Contrast::withAlpha(Qt::black, .18), 2);
    Surface::fill(painter, knob, knobSide / 2.0, Qt::white);
}
