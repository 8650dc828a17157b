#include "App/Ui/TextLine.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QString>
#include <QStyle>

#include <cmath>

namespace {

qreal startOf(const QRectF& box, Qt::Alignment alignment, qreal width)
{
    if (alignment.testFlag(Qt::AlignHCenter))
        return box.center().x() - width / 2;
    return alignment.testFlag(Qt::AlignRight) ? box.right() - width : box.left();
}

}

qreal TextLine::baseline(const QFont& font, const QRectF& box)
{
    return std::round(box.center().y() + QFontMetricsF(font).capHeight() / 2);
}

void TextLine::paint(QPainter& painter, const QRectF& box, Qt::Alignment alignment,
    const QString& text, const QFont& font, const QColor& color)
{
    const QFontMetricsF metrics(font);
    // A width rounded by the layout must not cost the last letter.
    constexpr qreal slack = 0.5;
    // More than any box holds; a text from outside may be of any length.
    constexpr qsizetype longest = 2000;
    const QString shown
        = metrics.elidedText(text.left(longest), Qt::ElideRight, box.width() + slack);
    const Qt::Alignment side = QStyle::visualAlignment(painter.layoutDirection(), alignment);
    painter.setFont(font);
    painter.setPen(color);
    const auto around = painter.layoutDirection();
    painter.setLayoutDirection(shown.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(
        QPointF(startOf(box, side, metrics.horizontalAdvance(shown)), baseline(font, box)), shown);
    painter.setLayoutDirection(around);
}

int TextLine::width(const QString& text, const QFont& font)
{
    return int(std::ceil(QFontMetricsF(font).horizontalAdvance(text)));
}
