#include "App/Ui/TextArea.h"

#include "App/Ui/CaretRest.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/EvenLines.h"
#include "App/Ui/Interaction.h"
#include "App/Ui/ScrollBar.h"
#include "App/Ui/Surface.h"
#include "App/Ui/Theme.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QTextBlock>

#include <optional>

namespace {

constexpr qreal radius = 5;

// Nothing for what is dropped.
std::optional<QClipboard::Mode> modeOf(const QMimeData* source)
{
    const auto& clipboard = *QGuiApplication::clipboard();
    for (const auto mode : { QClipboard::Clipboard, QClipboard::Selection }) {
        if (source == clipboard.mimeData(mode))
            return mode;
    }
    return std::nullopt;
}

// Its words stand in the middle of it, as many whole lines as it is high: 100 for five.
QMargins marginsOf(TextArea::Kind kind)
{
    const QMargins padding
        = kind == TextArea::Kind::editor ? QMargins(6, 6, 6, 9) : QMargins(6, 5, 6, 6);
    return padding + ControlBox::margin;
}

}

TextArea::TextArea(Kind kind, const QString& name, QWidget* parent)
    : QPlainTextEdit(parent)
    , m_kind(kind)
    , m_interaction(new Interaction(
          this, kind == Kind::editor ? Interaction::Ring::always : Interaction::Ring::keyboard))
    , m_text(*document())
    , m_bar(new ScrollBar(*verticalScrollBar(), this))
{
    setAccessibleName(name);
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabChangesFocus(true);
    setFont(Theme::familylessFont(TextRole::editor));
    document()->setDocumentMargin(0);
    document()->setDocumentLayout(new EvenLines(document(), Theme::lineHeight(TextRole::editor)));
    setViewportMargins(marginsOf(kind));
    document()->clearUndoRedoStacks(); // The margin is no edit of the user's.
    viewport()->setAutoFillBackground(false);
    if (kind == Kind::result)
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    new CaretRest(this);
    connect(&m_text, &DocumentText::edited, this, &TextArea::edited);
    // Qt would move all lines aside for a space that hangs over the end of one.
    connect(horizontalScrollBar(), &QScrollBar::rangeChanged, this,
        [this] { horizontalScrollBar()->setRange(0, 0); });
    adoptColors();
}

QRect TextArea::box() const
{
    return ControlBox::of(*this);
}

void TextArea::setText(const QString& text)
{
    m_text.setText(text);
    moveCursor(QTextCursor::Start);
}

void TextArea::insert(const QString& text)
{
    if (text.isEmpty())
        return;
    m_text.insert(textCursor(), text);
    ensureCursorVisible();
}

void TextArea::placeBox(const QRect& box)
{
    ControlBox::place(*this, box);
}

// The area itself paints in event(), paintEvent() is for the viewport on it.
bool TextArea::event(QEvent* event)
{
    if (event->type() != QEvent::Paint)
        return QPlainTextEdit::event(event);
    paintSurface();
    return true;
}

void TextArea::changeEvent(QEvent* event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        adoptColors();
}

void TextArea::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    QRect strip = box();
    strip.setLeft(strip.right() + 1 - ScrollBar::stripWidth);
    m_bar->setGeometry(QStyle::visualRect(layoutDirection(), rect(), strip));
    m_bar->raise();
}

void TextArea::paintEvent(QPaintEvent* event)
{
    {
        QPainter painter(viewport());
        paintSelection(painter);
    }
    QPlainTextEdit::paintEvent(event);
}

// Qt would insert a character of its own for a line end with Shift.
void TextArea::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->setModifiers(event->modifiers() & ~Qt::ShiftModifier);
    QPlainTextEdit::keyPressEvent(event);
}

// Words that an input method only shows, be it none, are no part of the text yet.
void TextArea::inputMethodEvent(QInputMethodEvent* event)
{
    const bool commits = !event->commitString().isEmpty() || event->replacementLength() > 0;
    const bool replaces = textCursor().hasSelection() && !event->preeditString().isEmpty();
    if (commits || replaces)
        QPlainTextEdit::inputMethodEvent(event);
    else
        m_text.withoutEdit([&] { QPlainTextEdit::inputMethodEvent(event); });
}

QMimeData* TextArea::createMimeDataFromSelection() const
{
    auto* const selected = new QMimeData;
    selected->setText(m_text.selectedText(textCursor()));
    return selected;
}

// Of the clipboard nothing is asked that its owner would have to answer.
bool TextArea::canInsertFromMimeData(const QMimeData* source) const
{
    return m_kind == Kind::editor && (modeOf(source) || source->hasText());
}

void TextArea::insertFromMimeData(const QMimeData* source)
{
    if (m_kind != Kind::editor)
        return;
    if (const auto mode = modeOf(source))
        Q_EMIT pasteWanted(*mode);
    else
        insert(source->text());
}

void TextArea::adoptColors()
{
    const Colors& c = Theme::current().colors;
    // Ground and selection are ours to paint; all other roles follow the application.
    if (palette().color(QPalette::Text) == c.text && palette().color(QPalette::Base).alpha() == 0)
        return;
    QPalette clear;
    clear.setColor(QPalette::Base, Qt::transparent);
    clear.setColor(QPalette::Highlight, Qt::transparent);
    setPalette(clear);
}

void TextArea::paintSurface()
{
    const Colors& c = Theme::current().colors;
    QPainter painter(this);
    const bool isEditor = m_kind == Kind::editor;
    Surface::fill(painter, box(), radius, isEditor ? c.field : c.resultArea);
    if (m_interaction->showsFocus()) {
        Surface::focusRing(painter, box(), radius);
        Surface::ring(painter, box(), radius, c.mark, 1);
    } else if (isEditor) {
        Surface::ring(painter, box(), radius, c.editorOutline, 1);
    }
}

// Qt would paint it as high as the font, with gaps between the lines.
void TextArea::paintSelection(QPainter& painter)
{
    const auto cursor = textCursor();
    if (!cursor.hasSelection())
        return;
    const auto offset = contentOffset();
    for (auto block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const auto bounds = blockBoundingGeometry(block).translated(offset);
        if (bounds.top() > viewport()->height())
            return;
        QTextLayout::FormatRange range;
        range.start = qMax(0, cursor.selectionStart() - block.position());
        range.length = qMin(block.length(), cursor.selectionEnd() - block.position()) - range.start;
        if (range.length <= 0)
            continue;
        range.format.setBackground(Theme::current().colors.accent);
        range.format.setForeground(Qt::transparent);
        painter.setPen(Qt::transparent);
        const auto line = block.layout()->lineAt(0);
        const qreal slack = Theme::lineHeight(TextRole::editor) - line.height();
        for (const qreal top : { 0.0, slack }) {
            block.layout()->draw(
                &painter, bounds.topLeft() + QPointF(0, top - line.y()), { range });
        }
    }
}
