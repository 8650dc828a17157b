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

// A piece with a cell of its own, or a run of others, whose letters keep their spacing.
qsizetype DigitText::pieceLength(QStringView text) const
{
    if (hasCell(text.front()))
        return 1;
    const auto end = std::ranges::find_if(text, [this](QChar next) { return hasCell(next); });
    return end - text.begin();
}

qreal DigitText::width(const QString& text) const
{
    qreal sum = 0;
    for (QStringView rest = text; !rest.isEmpty();) {
        const auto length = pieceLength(rest);
        const auto piece = rest.first(length);
        sum += hasCell(piece.front()) ? cellOf(piece.front()) : advanceOf(piece);
        rest = rest.sliced(length);
    }
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
    qreal left = start.x();
    for (QStringView rest = text; !rest.isEmpty();) {
        const auto length = pieceLength(rest);
        const auto piece = rest.first(length);
        const auto first = piece.front();
        const qreal advance = advanceOf(piece);
        const qreal cell = hasCell(first) ? cellOf(first) : advance;
        const qreal rise = first == u':' ? m_colonRise : 0;
        painter.drawText(QPointF(left + (cell - advance) / 2, start.y() - rise), piece.toString());
        left += cell;
        rest = rest.sliced(length);
    }
}

bool DigitText::hasCell(QChar character) const
{
    return character.isDigit() || (character == u':' && m_colonCell > 0);
}

qreal DigitText::cellOf(QChar character) const
{
    return character.isDigit() ? m_digitCell : m_colonCell;
}

// A single character needs no shaping.
qreal DigitText::advanceOf(QStringView piece) const
{
    return piece.size() == 1 ? m_metrics.horizontalAdvance(piece.front())
                             : m_metrics.horizontalAdvance(piece.toString());
}
