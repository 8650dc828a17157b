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

qreal DigitText::width(const QString& text) const
{
    qreal sum = 0;
    for (const QChar character : text)
        sum += cellOf(character);
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
    for (const QChar character : text) {
        const qreal cell = cellOf(character);
        const qreal inset = (cell - metrics.horizontalAdvance(character)) / 2;
        const qreal rise = character == u':' ? m_colonRise : 0;
        painter.drawText(QPointF(left + inset, start.y() - rise), QString(character));
        left += cell;
    }
}

qreal DigitText::cellOf(QChar character) const
{
    if (character.isDigit())
        return m_digitCell;
    if (character == u':' && m_colonCell > 0)
        return m_colonCell;
    return QFontMetricsF(m_font).horizontalAdvance(character);
}
