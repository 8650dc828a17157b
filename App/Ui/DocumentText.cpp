#include "App/Ui/DocumentText.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTimer>

#include <limits>

namespace {

constexpr qsizetype longestBlock = 2048; // A few milliseconds to lay out.
constexpr qsizetype perTurn = 65536;
constexpr qsizetype blocksPerTurn = 4096; // Each takes as long as some dozens of characters.

// The state of a block that is one paragraph with the block after it, of one that is not, and of
// one that Qt has just made. When two blocks become one Qt keeps the state of the later one, so it
// has to be told of what follows.
constexpr int goesOn = 1;
constexpr int ends = 0;
constexpr int unmarked = -1;

struct Piece {
    QStringView words;
    qsizetype next; // Where the rest of the text begins.
    bool isParagraph; // A line end follows the words.
};

// Whatever Qt begins a block at; by the last two it marks frames.
bool isLineEnd(QChar character)
{
    constexpr QChar beginningOfFrame(0xFDD0);
    constexpr QChar endOfFrame(0xFDD1);
    return character == u'\n' || character == u'\r' || character == QChar::ParagraphSeparator
        || character == beginningOfFrame || character == endOfFrame;
}

// Not between the halves of a character, and rather behind a space.
qsizetype cutBefore(QStringView text, qsizetype limit)
{
    for (qsizetype cut = limit; cut > limit / 2; --cut) {
        if (text[cut - 1].isSpace())
            return cut;
    }
    return text[limit].isLowSurrogate() ? limit - 1 : limit;
}

Piece nextPiece(QStringView text)
{
    const auto window = text.first(qMin(text.size(), longestBlock));
    for (qsizetype end = 0; end < window.size(); ++end) {
        if (!isLineEnd(window[end]))
            continue;
        const bool isPair = text.sliced(end).startsWith(u"\r\n");
        return { text.first(end), end + (isPair ? 2 : 1), true };
    }
    if (window.size() == text.size())
        return { text, text.size(), false };
    const auto cut = cutBefore(text, longestBlock);
    return { text.first(cut), cut, false };
}

}

DocumentText::DocumentText(QTextDocument& document)
    : m_document(document)
{
    m_turn.setSingleShot(true);
    connect(&m_turn, &QTimer::timeout, this, &DocumentText::fill);
    connect(&document, &QTextDocument::contentsChange, this, &DocumentText::contentsChange);
}

QString DocumentText::text() const
{
    if (!m_isEdited)
        return m_source;
    return joined(m_document.toRawText(), 0).append(QStringView(m_source).sliced(m_filled));
}

QString DocumentText::selectedText(const QTextCursor& cursor) const
{
    return joined(cursor.selectedText(), cursor.selectionStart());
}

// The words of successive blocks, which Qt parts by paragraph separators.
QString DocumentText::joined(QString words, int position) const
{
    if (!m_hasLongParagraphs)
        return words.replace(QChar::ParagraphSeparator, u'\n');
    QString text;
    text.reserve(words.size());
    int state = goesOn;
    auto block = m_document.findBlock(position);
    for (const auto ofBlock : QStringView(words).split(QChar::ParagraphSeparator)) {
        if (state != goesOn)
            text += u'\n';
        text += ofBlock;
        state = block.userState();
        block = block.next();
    }
    return text;
}

void DocumentText::setText(const QString& text)
{
    m_source = text;
    m_filled = 0;
    m_isEdited = false;
    m_hasLongParagraphs = false;
    m_document.setUndoRedoEnabled(false);
    withoutEdit([this] { m_document.clear(); });
    fill();
}

void DocumentText::fill()
{
    QTextCursor end(&m_document);
    end.movePosition(QTextCursor::End);
    withoutEdit([&] {
        const auto rest = QStringView(m_source).sliced(m_filled);
        m_filled += insertPieces(end, rest, { perTurn, blocksPerTurn });
    });
    if (m_filled < m_source.size())
        m_turn.start(0);
    else
        m_document.setUndoRedoEnabled(!m_hasLongParagraphs);
}

void DocumentText::insert(QTextCursor cursor, const QString& text)
{
    insertPieces(cursor, text, { text.size(), text.size() });
}

void DocumentText::withoutEdit(const std::function<void()>& change)
{
    m_isLeftAlone = true;
    change();
    m_isLeftAlone = false;
}

qsizetype DocumentText::insertPieces(QTextCursor& cursor, QStringView text, const Portion& portion)
{
    QString words;
    QList<int> states;
    qsizetype taken = 0;
    while (taken < text.size() && taken < portion.characters && states.size() < portion.blocks) {
        const auto piece = nextPiece(text.sliced(taken));
        taken += piece.next;
        words += piece.words;
        if (!piece.isParagraph && taken == text.size())
            break;
        words += u'\n';
        states += piece.isParagraph ? ends : goesOn;
    }
    if (states.contains(goesOn))
        expectLongParagraphs();
    // Nobody is to hear of it before the blocks have their states.
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    auto block = cursor.block();
    const int followed = block.userState();
    cursor.insertText(words);
    for (const int state : states) {
        block.setUserState(state);
        block = block.next();
    }
    block.setUserState(followed);
    cursor.endEditBlock();
    return taken;
}

void DocumentText::expectLongParagraphs()
{
    if (m_hasLongParagraphs)
        return;
    m_hasLongParagraphs = true;
    // Undoing would bring back blocks without their states.
    m_document.setUndoRedoEnabled(false);
    markBlocks(0, m_document.characterCount());
}

void DocumentText::markBlocks(int first, int last)
{
    for (auto block = m_document.findBlock(first); block.isValid() && block.position() <= last;
         block = block.next()) {
        if (block.userState() != unmarked)
            continue;
        // A block was divided: what follows it follows its last part.
        auto before = block.previous();
        const bool isPart = before.isValid() && before.userState() == goesOn;
        block.setUserState(isPart ? goesOn : ends);
        if (isPart)
            before.setUserState(ends);
    }
}

void DocumentText::contentsChange(int position, int removed, int added)
{
    // Qt also tells of new formats this way.
    if (m_isLeftAlone || (removed == 0 && added == 0))
        return;
    if (m_hasLongParagraphs)
        markBlocks(position, position + added);
    m_isEdited = true;
    Q_EMIT edited();
}
