#include "App/Ui/Button.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Interaction.h"
#include "App/Ui/Surface.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPixmap>
#include <QStyle>

#include <array>

namespace {

constexpr int boxHeight = 24;
constexpr int smallHeight = 20;
constexpr int iconWidth = 28;
constexpr int padding = 12;
constexpr int smallPadding = 9;
constexpr int symbolPadding = 8;
constexpr int symbolGap = 4;

// By state: normal, hover, pressed.
QColor chosen(const Button& button, bool hovered, const std::array<QColor, 3>& fills)
{
    if (button.isDown())
        return fills[2];
    return fills[hovered ? 1 : 0];
}

}

Button::Button(Kind kind, const QString& text, QWidget* parent)
    : QAbstractButton(parent)
    , m_interaction(new Interaction(this))
    , m_kind(kind)
{
    Accessibility::install();
    setText(text);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QRect Button::box() const
{
    return ControlBox::of(*this);
}

QSize Button::boxSize() const
{
    const int width = m_boxWidth > 0 ? m_boxWidth : naturalWidth();
    return { width, m_kind == Kind::small ? smallHeight : boxHeight };
}

QSize Button::sizeHint() const
{
    return ControlBox::outer(boxSize());
}

void Button::setKind(Kind kind)
{
    if (m_kind == kind)
        return;
    m_kind = kind;
    updateGeometry();
    update();
}

void Button::setSymbol(const QString& name)
{
    if (m_symbol == name)
        return;
    m_symbol = name;
    updateGeometry();
    update();
}

void Button::setBoxWidth(int width)
{
    if (m_boxWidth == width)
        return;
    m_boxWidth = width;
    updateGeometry();
}

void Button::setStrength(qreal strength)
{
    if (qFuzzyCompare(m_strength, strength))
        return;
    m_strength = strength;
    update();
}

void Button::placeBox(const QRect& box)
{
    ControlBox::place(*this, box);
}

void Button::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (m_strength < 1) {
        paintFaint(painter);
    } else {
        paintSurface(painter);
        paintContent(painter);
    }
    if (m_interaction->showsFocus())
        Surface::focusRing(painter, box(), radius());
}

bool Button::hitButton(const QPoint& position) const
{
    return box().contains(position);
}

void Button::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn) {
        QAbstractButton::keyPressEvent(event);
        return;
    }
    if (!event->isAutoRepeat())
        click();
}

void Button::changeEvent(QEvent* event)
{
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateGeometry();
}

int Button::naturalWidth() const
{
    if (m_kind == Kind::icon)
        return iconWidth;
    const int side = m_kind == Kind::small ? smallPadding : padding;
    const QFont font = wordsFont();
    int width = TextLine::width(text(), font) + side;
    width += m_symbol.isEmpty() ? side
                                : symbolPadding + Symbols::boxSize(font.pixelSize()) + symbolGap;
    return width + width % 2;
}

QFont Button::wordsFont() const
{
    const bool isSmall = m_kind == Kind::small;
    return Theme::current().font(isSmall ? TextRole::smallButton : TextRole::button);
}

QColor Button::fillColor() const
{
    const Colors& c = Theme::current().colors;
    const bool hovered = m_interaction->isHovered();
    if (!isEnabled())
        return m_kind == Kind::prominent ? c.disabledProminentFill : c.disabledFill;
    if (m_kind == Kind::prominent)
        return chosen(*this, hovered, { c.accent, c.accentHover, c.accentPressed });
    if (m_kind == Kind::destructive)
        return chosen(*this, hovered, { c.button, c.redTint, c.redTintPressed });
    if (m_kind == Kind::tinted)
        return chosen(*this, hovered, { c.redTint, c.redTintHover, c.redTintPressed });
    return chosen(*this, hovered, { c.button, c.buttonHover, c.buttonPressed });
}

QColor Button::ringColor() const
{
    const Colors& c = Theme::current().colors;
    if (m_kind == Kind::prominent)
        return Qt::transparent;
    if (!isEnabled())
        return c.disabledRing;
    return m_kind == Kind::tinted ? c.redRing : c.buttonRing;
}

QColor Button::wordsColor() const
{
    const Colors& c = Theme::current().colors;
    if (m_kind == Kind::prominent)
        return isEnabled() ? QColor(Qt::white) : c.disabledProminentWords;
    if (!isEnabled())
        return c.disabledWords;
    const bool isRed = m_kind == Kind::destructive || m_kind == Kind::tinted;
    return isRed ? c.redText : c.text;
}

bool Button::hasShade() const
{
    return isEnabled() && m_kind != Kind::tinted;
}

void Button::paintSurface(QPainter& painter) const
{
    if (hasShade())
        Surface::shade(painter, box(), radius(), Theme::current().colors.buttonShade);
    Surface::fill(painter, box(), radius(), fillColor());
    Surface::ring(painter, box(), radius(), ringColor());
}

// As a whole: the words must not show the ground through their fill a second time.
void Button::paintFaint(QPainter& painter) const
{
    const auto scale = devicePixelRatioF();
    QPixmap whole((QSizeF(size()) * scale).toSize());
    whole.setDevicePixelRatio(scale);
    whole.fill(Qt::transparent);
    QPainter inside(&whole);
    inside.setLayoutDirection(painter.layoutDirection());
    paintSurface(inside);
    paintContent(inside);
    inside.end();
    painter.setOpacity(m_strength);
    painter.drawPixmap(0, 0, whole);
    painter.setOpacity(1);
}

void Button::paintContent(QPainter& painter) const
{
    const QFont font = wordsFont();
    const int side = Symbols::boxSize(m_kind == Kind::icon ? 13 : font.pixelSize());
    if (m_kind == Kind::icon) {
        Symbols::paint(painter, m_symbol, Symbols::centered(side, box()), wordsColor());
        return;
    }
    const int words = TextLine::width(text(), font);
    if (m_symbol.isEmpty()) {
        TextLine::paint(painter, box(), Qt::AlignHCenter, text(), font, wordsColor());
        return;
    }
    // In a box wider than need be, symbol and words stay together in the middle.
    const int spare = qMax(0, box().width() - naturalWidth()) / 2;
    const QRect symbol(box().x() + symbolPadding + spare, box().y(), side, box().height());
    const QRect line(symbol.right() + 1 + symbolGap, box().y(), words, box().height());
    const auto mirrored
        = [&](const QRect& part) { return QStyle::visualRect(layoutDirection(), box(), part); };
    Symbols::paint(painter, m_symbol, Symbols::centered(side, mirrored(symbol)), wordsColor());
    TextLine::paint(painter, mirrored(line), Qt::AlignLeading, text(), font, wordsColor());
}

qreal Button::radius() const
{
    return m_kind == Kind::small ? 5 : 6;
}
