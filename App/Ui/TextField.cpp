#include "App/Ui/TextField.h"

#include "App/Ui/CaretRest.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Interaction.h"
#include "App/Ui/Surface.h"
#include "App/Ui/Theme.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyle>

#include <limits>

namespace {

constexpr int boxHeight = 24;
constexpr int usualWidth = 150;
constexpr int padding = 8;
constexpr int caretWidth = 1;
constexpr int ownPadding = 2; // QLineEdit adds it by itself.
constexpr int radius = 6;

QString entry(const QString& words, QKeySequence::StandardKey key)
{
    const auto shortcut = QKeySequence(key).toString(QKeySequence::NativeText);
    return shortcut.isEmpty() ? words : words + u'\t' + shortcut;
}

}

TextField::TextField(const QString& placeholder, QWidget* parent)
    : QLineEdit(parent)
    , m_interaction(new Interaction(this, Interaction::Ring::always))
{
    new CaretRest(this);
    setPlaceholder(placeholder);
    setFrame(false);
    setMaxLength(std::numeric_limits<int>::max()); // What is shown is never less than what is set.
    const int side = ControlBox::margin + padding - ownPadding;
    setTextMargins(side, ControlBox::margin, side, ControlBox::margin);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFont(Theme::familylessFont(TextRole::body));
    // Field and placeholder are ours to paint; all other roles follow the application.
    QPalette clear;
    clear.setColor(QPalette::Base, Qt::transparent);
    clear.setColor(QPalette::PlaceholderText, Qt::transparent);
    setPalette(clear);
}

QRect TextField::box() const
{
    return ControlBox::of(*this);
}

QSize TextField::sizeHint() const
{
    return ControlBox::outer({ usualWidth, boxHeight });
}

void TextField::setPlaceholder(const QString& placeholder)
{
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
}

void TextField::placeBox(const QRect& box)
{
    ControlBox::place(*this, box);
}

void TextField::insertPasted(const QString& text)
{
    if (!text.isEmpty())
        insert(text);
}

void TextField::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    // What blinks is far from the edges, and their curves would cost more than all else.
    if (isEnabled() && box().adjusted(radius, 1, -radius, -1).contains(event->rect()))
        painter.fillRect(event->rect(), Theme::current().colors.field);
    else
        paintSurface(painter);
    if (text().isEmpty() && !m_isComposing)
        paintPlaceholder(painter);
    painter.end();
    QLineEdit::paintEvent(event);
}

void TextField::paintSurface(QPainter& painter)
{
    const Colors& c = Theme::current().colors;
    Surface::fill(painter, box(), radius, isEnabled() ? c.field : c.disabledFill);
    if (m_interaction->showsFocus()) {
        Surface::focusRing(painter, box(), radius);
        Surface::ring(painter, box(), radius, c.mark, 1);
    } else {
        Surface::ring(painter, box(), radius, isEnabled() ? c.fieldRing : c.disabledRing);
    }
}

// Not left to Qt, whose caret would stand on the first letter.
void TextField::paintPlaceholder(QPainter& painter)
{
    const Colors& c = Theme::current().colors;
    const int side = padding + caretWidth;
    const QRect words = box().adjusted(side, 0, -side, 0);
    painter.setPen(isEnabled() ? c.placeholder : c.disabledWords);
    painter.setFont(font());
    painter.drawText(words,
        int(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter)),
        fontMetrics().elidedText(placeholderText(), Qt::ElideRight, words.width()));
}

void TextField::inputMethodEvent(QInputMethodEvent* event)
{
    m_isComposing = !event->preeditString().isEmpty();
    QLineEdit::inputMethodEvent(event);
}

void TextField::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Paste))
        Q_EMIT pasteWanted(QClipboard::Clipboard);
    else
        QLineEdit::keyPressEvent(event);
}

void TextField::mouseReleaseEvent(QMouseEvent* event)
{
    const bool pastes
        = event->button() == Qt::MiddleButton && QGuiApplication::clipboard()->supportsSelection();
    if (!pastes) {
        QLineEdit::mouseReleaseEvent(event);
        return;
    }
    deselect();
    Q_EMIT pasteWanted(QClipboard::Selection);
}

// As Qt's own one, which asks for the clipboard's text before it opens.
void TextField::contextMenuEvent(QContextMenuEvent* event)
{
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString& words, bool isEnabled, auto&& does) {
        menu->addAction(words, this, does)->setEnabled(isEnabled);
    };
    add(entry(QLineEdit::tr("&Undo"), QKeySequence::Undo), isUndoAvailable(), &QLineEdit::undo);
    add(entry(QLineEdit::tr("&Redo"), QKeySequence::Redo), isRedoAvailable(), &QLineEdit::redo);
    menu->addSeparator();
    add(entry(QLineEdit::tr("Cu&t"), QKeySequence::Cut), hasSelectedText(), &QLineEdit::cut);
    add(entry(QLineEdit::tr("&Copy"), QKeySequence::Copy), hasSelectedText(), &QLineEdit::copy);
    add(entry(QLineEdit::tr("&Paste"), QKeySequence::Paste), true,
        [this] { Q_EMIT pasteWanted(QClipboard::Clipboard); });
    add(QLineEdit::tr("Delete"), hasSelectedText(), &QLineEdit::del);
    menu->addSeparator();
    add(entry(QLineEdit::tr("Select All"), QKeySequence::SelectAll), !text().isEmpty(),
        &QLineEdit::selectAll);
    menu->popup(event->globalPos());
}
