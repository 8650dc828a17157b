#include "App/Shortcuts/ShortcutTile.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Interaction.h"
#include "App/Ui/Surface.h"
#include "App/Ui/SymbolImage.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal radius = 10;
constexpr int symbolTop = 8;
constexpr int symbolSide = 30;
constexpr int nameTop = 41;
constexpr int namePadding = 6;
constexpr qreal dash = 4;
constexpr qreal dashOpacity = 0.6;

}

ShortcutTile::ShortcutTile(QWidget* parent)
    : QAbstractButton(parent)
    , m_interaction(new Interaction(this))
{
    Accessibility::install();
    setFocusPolicy(Qt::TabFocus);
}

QRect ShortcutTile::box() const
{
    return ControlBox::of(*this);
}

void ShortcutTile::setName(const QString& name)
{
    setText(name);
    setShortcut({}); // Which Qt takes from an ampersand.
}

void ShortcutTile::setSymbol(const QString& name)
{
    if (m_symbol == name)
        return;
    m_symbol = name;
    update();
}

void ShortcutTile::setEdited(bool edited)
{
    if (m_edited == edited)
        return;
    m_edited = edited;
    update();
}

QColor ShortcutTile::fillColor() const
{
    const auto& colors = Theme::current().colors;
    if (isDown())
        return colors.tilePressed;
    if (m_edited)
        return colors.tileEdit;
    return m_interaction->isHovered() ? colors.tileHover : colors.tile;
}

QRect ShortcutTile::nameLine() const
{
    return { box().left() + namePadding, box().top() + nameTop, box().width() - 2 * namePadding,
        Theme::lineHeight(TextRole::caption) };
}

// A name that is cut off is told in full when the pointer rests on it.
bool ShortcutTile::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QAbstractButton::event(event);
    const auto width = TextLine::width(text(), Theme::current().font(TextRole::caption));
    // As rich text, so that what looks like it in a name is shown as it is.
    const auto whole = u"<span>"_s + text().toHtmlEscaped() + u"</span>"_s;
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
        width > nameLine().width() ? whole : QString(), this);
    return true;
}

void ShortcutTile::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const auto& theme = Theme::current();
    Surface::fill(painter, box(), radius, fillColor());
    if (m_edited) {
        QColor color = theme.colors.mark;
        color.setAlphaF(float(color.alphaF() * dashOpacity));
        QPen pen(color, 1, Qt::CustomDashLine, Qt::FlatCap);
        pen.setDashPattern({ dash, dash });
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(pen);
        painter.drawRoundedRect(
            QRectF(box()).adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
    }
    const QRect symbolSlot(box().left(), box().top() + symbolTop, box().width(), symbolSide);
    SymbolImage::paint(
        painter, m_symbol, Symbols::centered(symbolSide, symbolSlot), theme.colors.text);
    const QRect line(box().left() + namePadding, box().top() + nameTop,
        box().width() - 2 * namePadding, Theme::lineHeight(TextRole::caption));
    TextLine::paint(
        painter, line, Qt::AlignHCenter, text(), theme.font(TextRole::caption), theme.colors.text);
    if (m_interaction->showsFocus())
        Surface::focusRing(painter, box(), radius);
}

bool ShortcutTile::hitButton(const QPoint& position) const
{
    return box().contains(position);
}

void ShortcutTile::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat())
            click();
        return;
    case Qt::Key_Space:
    case Qt::Key_Select:
        return QAbstractButton::keyPressEvent(event);
    default:
        event->ignore(); // Arrows are for the grid; a button would follow them itself.
    }
}
