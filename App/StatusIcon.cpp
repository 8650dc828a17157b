#include "App/StatusIcon.h"

#include "App/Platform/StatusItem.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/Theme.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QColor ground(0x1C, 0x1C, 0x1F);
constexpr QColor edge(255, 255, 255, 46);
constexpr QChar cupSign(0x2615);
constexpr qreal grid = 22;
constexpr qreal disc = 10;

QImage blank(int width, int height)
{
    QImage image(std::max(width, 1), std::max(height, 1), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QString clockPart(const QString& text)
{
    const auto start = std::ranges::find_if(text, [](QChar c) { return c.isDigit(); });
    return text.last(text.end() - start);
}

QString minutes(const QString& text)
{
    return QString::number(clockPart(text).section(u':', 0, 0).toInt());
}

bool isClock(const StatusTitle& title)
{
    return !clockPart(title.text).isEmpty();
}

bool isBreak(const StatusTitle& title)
{
    return title.text.startsWith(cupSign);
}

QFont digitFont(qreal pixels, QFont::Weight weight)
{
    QFont font(Theme::current().fontFamily());
    // Drawn ten times as large and scaled down, since a font takes whole pixels only.
    font.setPixelSize(std::max(1, qRound(pixels * 10)));
    font.setWeight(weight);
    font.setHintingPreference(QFont::PreferNoHinting);
    // Each character is drawn by itself, so none of the font's rules applies.
    font.setStyleStrategy(QFont::PreferNoShaping);
    return font;
}

// Text whose digits stand in cells of equal width, so that it does not tremble as it counts.
class Digits final {
public:
    Digits(QString text, qreal pixels, QFont::Weight weight, bool equalCells = true)
        : m_text(std::move(text))
        , m_font(digitFont(pixels, weight))
        , m_metrics(m_font)
        , m_equalCells(equalCells)
    {
    }

    qreal width() const
    {
        qreal sum = 0;
        for (const QChar c : m_text)
            sum += cell(c);
        return sum / 10;
    }

    // The height of the digits themselves, without the room around them.
    qreal height() const { return m_metrics.capHeight() / 10; }

    void paint(QPainter& painter, QPointF baseline) const
    {
        painter.save();
        painter.translate(baseline);
        painter.scale(0.1, 0.1);
        QPainterPath path;
        qreal x = 0;
        for (const QChar c : m_text) {
            const qreal inset = (cell(c) - m_metrics.horizontalAdvance(c)) / 2;
            path.addText(x + inset, 0, m_font, c);
            x += cell(c);
        }
        painter.fillPath(path, painter.pen().color());
        painter.restore();
    }

private:
    qreal cell(QChar c) const
    {
        return m_metrics.horizontalAdvance(m_equalCells && c.isDigit() ? QChar(u'0') : c);
    }

    QString m_text;
    QFont m_font;
    QFontMetricsF m_metrics;
    bool m_equalCells;
};

// Digits are sharp when they stand on a device pixel.
qreal snapped(qreal points, qreal scale)
{
    return std::round(points * scale) / scale;
}

void paintCentred(QPainter& painter, const Digits& digits, QPointF centre, qreal scale)
{
    const qreal bottom = snapped(centre.y() + digits.height() / 2, scale);
    digits.paint(painter, { snapped(centre.x() - digits.width() / 2, scale), bottom });
}

void paintDisc(QPainter& painter, QPointF centre, qreal diameter)
{
    painter.setBrush(painter.pen().color());
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(centre, diameter / 2, diameter / 2);
}

QPainterPath cupBody()
{
    QPainterPath body(QPointF(2.3, 6.2));
    body.lineTo(15.7, 6.2);
    body.quadTo(16.5, 6.2, 16.5, 7);
    body.lineTo(16.5, 14);
    body.cubicTo(16.5, 17, 14, 19.5, 11, 19.5);
    body.lineTo(7, 19.5);
    body.cubicTo(4, 19.5, 1.5, 17, 1.5, 14);
    body.lineTo(1.5, 7);
    body.quadTo(1.5, 6.2, 2.3, 6.2);
    return body;
}

void paintCup(QPainter& painter)
{
    const auto ink = painter.pen().color();
    painter.fillPath(cupBody(), ink);

    QPainterPath handle(QPointF(16, 8.6));
    handle.lineTo(17.4, 8.6);
    handle.arcTo(QRectF(14.8, 8.6, 5.2, 5.2), 90, -180);
    handle.lineTo(16, 13.8);
    painter.strokePath(handle, QPen(ink, 2));

    QPainterPath steam(QPointF(6.4, 1.8));
    steam.lineTo(6.4, 3.9);
    steam.moveTo(11.6, 1.8);
    steam.lineTo(11.6, 3.9);
    painter.strokePath(steam, QPen(ink, 1.5, Qt::SolidLine, Qt::RoundCap));
}

void paintSquare(QPainter& painter, const StatusTitle& title, qreal scale)
{
    if (!isClock(title)) {
        paintDisc(painter, { grid / 2, grid / 2 }, disc);
        return;
    }
    const auto number = minutes(title.text);
    if (!isBreak(title)) {
        const qreal size = number.size() > 2 ? 10 : 13;
        paintCentred(painter, Digits(number, size, QFont::DemiBold), { grid / 2, grid / 2 }, scale);
        return;
    }
    paintCup(painter);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    const qreal size = number.size() > 2 ? 7.5 : 10;
    paintCentred(painter, Digits(number, size, QFont::Bold, false), { 9, 12.85 }, scale);
}

// Where the parts of a pill stand, in points.
struct PillLayout {
    explicit PillLayout(const StatusTitle& title, qreal pillHeight)
        : height(pillHeight)
        , shrink(std::min(1.0, height / 26))
        , words(isClock(title) ? clockPart(title.text) : QString(),
              // Lower trays first take the room above and below, and only then the words' size.
              std::min<qreal>(title.font.size, height * 0.66), title.font.weight,
              title.font.monospacedDigits)
        , cupSide(isBreak(title) ? std::min(17.0, height * 0.8) : 0)
    {
        if (!isClock(title)) {
            width = height;
            return;
        }
        // The cup's own margin inside its box is part of the padding.
        wordsLeft = isBreak(title) ? 9 * shrink + cupSide + 3 : 12 * shrink;
        width = wordsLeft + words.width() + 12 * shrink;
    }

    qreal height;
    qreal shrink;
    Digits words;
    qreal cupSide;
    qreal wordsLeft = 0;
    qreal width = 0;
};

void paintPillGround(QPainter& painter, QSizeF size, qreal scale)
{
    const qreal hair = 1 / scale;
    const QRectF outline({ 0, 0 }, size);
    const auto ring = outline.adjusted(hair / 2, hair / 2, -hair / 2, -hair / 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(outline, size.height() / 2, size.height() / 2);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(edge, hair));
    painter.drawRoundedRect(ring, ring.height() / 2, ring.height() / 2);
}

}

QImage StatusIcon::square(const StatusTitle& title, int side, const QColor& ink)
{
    auto image = blank(side, side);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / grid, side / grid);
    painter.setPen(ink);
    paintSquare(painter, title, side / grid);
    return image;
}

QImage StatusIcon::badge(const StatusTitle& title, int side)
{
    auto image = blank(side, side);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(image.rect(), side * 0.27, side * 0.27);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(edge);
    painter.drawRoundedRect(
        QRectF(image.rect()).adjusted(0.5, 0.5, -0.5, -0.5), side * 0.27 - 0.5, side * 0.27 - 0.5);
    // The cup reaches the sides of its grid and would break through the ground's edge.
    const int inner = isBreak(title) ? qRound(side * 0.84) : side;
    const int inset = (side - inner) / 2;
    painter.drawImage(inset, inset, square(title, inner, Qt::white));
    return image;
}

QImage StatusIcon::pill(const StatusTitle& title, int height, qreal scale)
{
    const PillLayout layout(title, height / scale);
    auto image = blank(qCeil(layout.width * scale), height);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    paintPillGround(painter, QSizeF(image.size()) / scale, scale);
    painter.setPen(Qt::white);
    const qreal middle = layout.height / 2;
    if (!isClock(title)) {
        paintDisc(painter, { middle, middle }, disc * layout.shrink);
        return image;
    }
    if (isBreak(title)) {
        const QPointF corner(9 * layout.shrink, snapped(middle - layout.cupSide / 2, scale));
        Symbols::paint(
            painter, u"ui.cup"_s, { corner, QSizeF(layout.cupSide, layout.cupSide) }, Qt::white);
    }
    const qreal bottom = snapped(middle + layout.words.height() / 2, scale);
    layout.words.paint(painter, { snapped(layout.wordsLeft, scale), bottom });
    return image;
}
