// Times and figures whose digits stand in equal cells, so that a running clock does not jitter.
// No feature of the font is needed; every glyph is centred in its cell.
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QHash>
#include <QStaticText>

class QColor;
class QPainter;
class QPointF;
class QRectF;
class QString;

class DigitText final {
public:
    // Digits as wide as the font's 0; all else keeps its own width and spacing.
    explicit DigitText(const QFont& font);
    // The cells of the large time in the ring; six characters stand closer than five.
    static DigitText ring(const QFont& font, qsizetype characters);

    const QFont& font() const { return m_font; }
    qreal width(const QString& text) const;
    // Centred in the box, both ways.
    void paint(
        QPainter& painter, const QRectF& box, const QString& text, const QColor& color) const;
    // From the left edge x on the baseline y.
    void paintAt(
        QPainter& painter, const QPointF& start, const QString& text, const QColor& color) const;

private:
    // What is drawn at once: a character with a cell of its own, or a run of others.
    struct Piece {
        QChar first;
        qreal advance = 0;
        QStaticText drawing;
    };

    qsizetype pieceLength(QStringView text) const;
    bool hasCell(QChar character) const;
    qreal cellOf(const Piece& piece) const;
    const Piece& pieceAt(QStringView text) const;

    QFont m_font;
    QFontMetricsF m_metrics;
    qreal m_digitCell = 0;
    qreal m_colonCell = 0; // 0: the colon's own width.
    qreal m_colonRise = 0;
    // Shaping words is the dearest part of drawing them, and the same few come again and again.
    mutable QHash<QString, Piece> m_pieces;
};
