#include "App/Ui/DigitText.h"

#include "App/Ui/TextLine.h"

#include <QPainter>

#include <algorithm>

DigitText::DigitText(const QFont& font)
    : m_font(font)
    , m_metrics(font)
    , m_digitCell(m_metrics.horizontalAdvance(u'0'))
{
}

DigitText DigitText::ring(const QFont& font, qsizetype characters)
{
    constexpr qsizetype longest = 5;
    DigitText text(font);
    text.m_digitCell = characters > longest ? 22 : 23;
    text.m_colonCell = characters > longest ? 9 : 11;
    text.m_colonRise = 4;
    return text;
}

qsizetype DigitText::pieceLength(QStringView text) const
{
    if (hasCell(text.front()))
        return 1;
    const auto end = std::ranges::find_if(text, [this](QChar next) { return hasCell(next); });
    return end - text.begin();
}

const DigitText::Piece& DigitText::pieceAt(QStringView text) const
{
    constexpr qsizetype most = 64;
    const auto words = text.first(pieceLength(text)).toString();
    const auto known = m_pieces.constFind(words);
    if (known != m_pieces.cend())
        return *known;
    if (m_pieces.size() >= most)
        m_pieces.clear();
    Piece piece { words.front(), m_metrics.horizontalAdvance(words), QStaticText(words) };
    piece.drawing.setTextFormat(Qt::PlainText);
    piece.drawing.setPerformanceHint(QStaticText::AggressiveCaching);
    return *m_pieces.insert(words, piece);
}

qreal DigitText::width(const QString& text) const
{
    qreal sum = 0;
    for (QStringView rest = text; !rest.isEmpty(); rest = rest.sliced(pieceLength(rest)))
        sum += cellOf(pieceAt(rest));
    return sum;
}

void DigitText::paint(
    QPainter& painter, const QRectF& box, const QString& text, const QColor& color) const
{
    const qreal left = box.center().x() - width(text) / 2;
    paintAt(painter, { left, TextLine::baseline(m_font, box) }, text, color);
}

void DigitText::paintAt(
    QPainter& painter, const QPointF& start, const QString& text, const QColor& color) const
{
    painter.setFont(m_font);
    painter.setPen(color);
    const qreal top = start.y() - m_metrics.ascent();
    qreal left = start.x();
    for (QStringView rest = text; !rest.isEmpty(); rest = rest.sliced(pieceLength(rest))) {
        const auto& piece = pieceAt(rest);
        const qreal cell = cellOf(piece);
        const qreal rise = piece.first == u':' ? m_colonRise : 0;
        painter.drawStaticText(
            QPointF(left + (cell - piece.advance) / 2, top - rise), piece.drawing);
        left += cell;
    }
}

bool DigitText::hasCell(QChar character) const
{
    return character.isDigit() || (character == u':' && m_colonCell > 0);
}

qreal DigitText::cellOf(const Piece& piece) const
{
    if (!hasCell(piece.first))
        return piece.advance;
    return piece.first.isDigit() ? m_digitCell : m_colonCell;
}
