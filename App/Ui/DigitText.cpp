#include "App/Ui/DigitText.h"

#include "App/Ui/TextLine.h"

#include <QFontMetricsF>
#include <QPainter>

DigitText::DigitText(const QFont& font)
    : m_font(font)
    , m_digitCell(QFontMetricsF(font).horizontalAdvance(u'0'))
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
    qsizetype length = 1;
    if (!hasCell(text.front())) {
        while (length < text.size() && !hasCell(text[length]))
            ++length;
    }
    return length;
}

qreal DigitText::width(const QString& text) const
{
    qreal sum = 0;
    for (QStringView rest = text; !rest.isEmpty();) {
        const auto length = pieceLength(rest);
        sum += cellOf(rest.first(length));
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
    const QFontMetricsF metrics(m_font);
    painter.setFont(m_font);
    painter.setPen(color);
    qreal left = start.x();
    for (QStringView rest = text; !rest.isEmpty();) {
        const auto length = pieceLength(rest);
        const auto piece = rest.first(length).toString();
        const qreal cell = cellOf(piece);
        const qreal inset = (cell - metrics.horizontalAdvance(piece)) / 2;
        const qreal rise = piece.front() == u':' ? m_colonRise : 0;
        painter.drawText(QPointF(left + inset, start.y() - rise), piece);
        left += cell;
        rest = rest.sliced(length);
    }
}

bool DigitText::hasCell(QChar character) const
{
    return character.isDigit() || (character == u':' && m_colonCell > 0);
}

qreal DigitText::cellOf(QStringView piece) const
{
    if (piece.front().isDigit())
        return m_digitCell;
    if (hasCell(piece.front()))
        return m_colonCell;
    return QFontMetricsF(m_font).horizontalAdvance(piece.toString());
}
