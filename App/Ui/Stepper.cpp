#include "App/Ui/Stepper.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Interaction.h"
#include "App/Ui/Surface.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/Theme.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QWheelEvent>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal radius = 5;
constexpr int glyphSide = 12;
constexpr qreal glyphStroke = 2.2;
constexpr int separatorInset = 4;
constexpr qreal limitShare = 0.32;
constexpr int firstRepeatMilliseconds = 400;
constexpr int repeatMilliseconds = 80;
constexpr int pageSteps = 5;
constexpr int everything = std::numeric_limits<int>::max();

// 0 for keys that do not step.
int stepsOf(const QKeyEvent& key)
{
    switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Plus:
        return 1;
    case Qt::Key_Down:
    case Qt::Key_Minus:
        return -1;
    case Qt::Key_PageUp:
        return pageSteps;
    case Qt::Key_PageDown:
        return -pageSteps;
    case Qt::Key_Home:
        return -everything;
    case Qt::Key_End:
        return everything;
    default:
        return 0;
    }
}

}

Stepper::Stepper(const QString& name, QWidget* parent)
    : QWidget(parent)
    , m_interaction(new Interaction(this))
{
    Accessibility::install();
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&m_repeat, &QTimer::timeout, this, &Stepper::repeat);
    connect(m_interaction, &Interaction::moved, this,
        [this] { setHovered(halfAt(m_interaction->pointer())); });
}

QRect Stepper::box() const
{
    return ControlBox::of(*this);
}

QSize Stepper::sizeHint() const
{
    return ControlBox::outer(boxSize());
}

void Stepper::setRange(int minimum, int maximum)
{
    if (m_minimum == minimum && m_maximum == maximum)
        return;
    m_minimum = minimum;
    m_maximum = qMax(minimum, maximum);
    update();
}

void Stepper::setStep(int step)
{
    m_step = step;
}

void Stepper::setValue(int value)
{
    if (m_value == value)
        return;
    const bool couldMinus = canStep(Half::minus);
    const bool couldPlus = canStep(Half::plus);
    m_value = value;
    // The number itself is not shown here: only a half that reaches or leaves its limit is seen.
    if (couldMinus != canStep(Half::minus) || couldPlus != canStep(Half::plus))
        update();
    Accessibility::tellValue(this, m_value);
}

void Stepper::placeBox(const QRect& box)
{
    ControlBox::place(*this, box);
}

void Stepper::stepBy(int steps)
{
    const qint64 wanted = m_value + qint64(steps) * m_step;
    edit(int(qBound(qint64(m_minimum), wanted, qint64(m_maximum))));
}

void Stepper::edit(int value)
{
    const int before = m_value;
    setValue(qBound(m_minimum, value, m_maximum));
    if (m_value != before)
        Q_EMIT edited(m_value);
}

void Stepper::paintEvent(QPaintEvent*)
{
    const Colors& c = Theme::current().colors;
    QPainter painter(this);
    const QRectF outline = box();
    if (isEnabled())
        Surface::shade(painter, outline, radius, c.buttonShade);
    Surface::fill(painter, outline, radius, isEnabled() ? c.button : c.disabledFill);
    paintHalf(painter, Half::minus);
    paintHalf(painter, Half::plus);
    Surface::ring(painter, outline, radius, isEnabled() ? c.buttonRing : c.disabledRing);
    const QRectF line(outline.center().x(), outline.y() + separatorInset, 1 / devicePixelRatioF(),
        outline.height() - 2 * separatorInset);
    painter.fillRect(line, isEnabled() ? c.separator : c.disabledRing);
    if (m_interaction->showsFocus())
        Surface::focusRing(painter, outline, radius);
}

void Stepper::mousePressEvent(QMouseEvent* event)
{
    const Half half = halfAt(event->position().toPoint());
    if (half == Half::none || event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    if (!canStep(half))
        return;
    setPressed(half);
    m_repeat.start(firstRepeatMilliseconds);
    stepOnce(half);
}

void Stepper::mouseMoveEvent(QMouseEvent* event)
{
    // As on any button: a finger that slides off lets go.
    if (m_pressed != Half::none && halfAt(event->position().toPoint()) != m_pressed)
        setPressed(Half::none);
}

void Stepper::mouseReleaseEvent(QMouseEvent*)
{
    setPressed(Half::none);
}

void Stepper::wheelEvent(QWheelEvent* event)
{
    m_wheel += event->angleDelta().y();
    const int steps = m_wheel / QWheelEvent::DefaultDeltasPerStep;
    m_wheel -= steps * QWheelEvent::DefaultDeltasPerStep;
    if (steps != 0)
        stepBy(steps);
}

void Stepper::keyPressEvent(QKeyEvent* event)
{
    const int steps = stepsOf(*event);
    if (steps == 0)
        QWidget::keyPressEvent(event);
    else
        stepBy(steps);
}

void Stepper::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        setPressed(Half::none);
}

void Stepper::hideEvent(QHideEvent*)
{
    setPressed(Half::none);
}

QRect Stepper::rectOf(Half half) const
{
    QRect rect = box();
    rect.setWidth(rect.width() / 2);
    if (half == Half::plus)
        rect.translate(rect.width(), 0);
    return QStyle::visualRect(layoutDirection(), box(), rect);
}

Stepper::Half Stepper::halfAt(const QPoint& position) const
{
    if (rectOf(Half::minus).contains(position))
        return Half::minus;
    return rectOf(Half::plus).contains(position) ? Half::plus : Half::none;
}

bool Stepper::canStep(Half half) const
{
    return half == Half::plus ? m_value < m_maximum : m_value > m_minimum;
}

void Stepper::setPressed(Half half)
{
    if (m_pressed == half)
        return;
    m_pressed = half;
    if (half == Half::none)
        m_repeat.stop();
    update();
}

void Stepper::setHovered(Half half)
{
    if (m_hovered == half)
        return;
    m_hovered = half;
    update();
}

void Stepper::repeat()
{
    m_repeat.setInterval(repeatMilliseconds);
    stepOnce(m_pressed);
    if (!canStep(m_pressed))
        setPressed(Half::none);
}

void Stepper::paintHalf(QPainter& painter, Half half) const
{
    const Colors& c = Theme::current().colors;
    const QRect rect = rectOf(half);
    const bool usable = isEnabled() && canStep(half);
    if (usable && (m_pressed == half || m_hovered == half)) {
        painter.save();
        painter.setClipRect(rect);
        Surface::fill(painter, box(), radius, m_pressed == half ? c.buttonPressed : c.buttonHover);
        painter.restore();
    }
    QColor glyph = isEnabled() ? c.text : c.disabledWords;
    if (isEnabled() && !usable)
        glyph.setAlphaF(float(limitShare));
    const QString name = half == Half::plus ? u"ui.plus"_s : u"ui.minus"_s;
    Symbols::paint(painter, name, Symbols::centered(glyphSide, rect), glyph, glyphStroke);
}
