// A push button with words, a symbol, or both.
#pragma once

#include <QAbstractButton>

class Interaction;

class Button final : public QAbstractButton {
    Q_OBJECT

public:
    enum class Kind {
        normal,
        prominent,
        small,
        destructive,
        tinted, // Red all over: something is off that should be noticed.
        icon, // Shows its symbol only; the text is its name for assistive technology.
    };

    explicit Button(Kind kind, const QString& text, QWidget* parent = nullptr);

    Kind kind() const { return m_kind; }
    QString symbol() const { return m_symbol; }
    QRect box() const; // In the button's own coordinates.
    QSize boxSize() const; // The natural size, or the fixed width; always even.
    QSize sizeHint() const override; // The box with its margin.
    QSize minimumSizeHint() const override { return sizeHint(); }

    void setKind(Kind kind);
    void setSymbol(const QString& name);
    void setBoxWidth(int width); // 0: as wide as the text needs.
    void setStrength(qreal strength); // The opacity of all but the focus ring; 1 unless told.

    void placeBox(const QRect& box); // In the parent's coordinates.

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    int naturalWidth() const;
    QFont wordsFont() const;
    QColor fillColor() const;
    QColor ringColor() const;
    QColor wordsColor() const;
    bool hasShade() const;
    void paintFaint(QPainter& painter) const;
    void paintSurface(QPainter& painter) const;
    void paintContent(QPainter& painter) const;
    qreal radius() const;

    Interaction* m_interaction;
    Kind m_kind;
    QString m_symbol;
    int m_boxWidth = 0;
    qreal m_strength = 1;
};
