// A thumb that floats over the content: shown while there is more to see and something moves.
#pragma once

#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

class QScrollBar;

class ScrollBar final : public QWidget {
    Q_OBJECT

public:
    // Mirrors and moves the hidden bar of a scroll area.
    explicit ScrollBar(QScrollBar& range, QWidget* parent);

    static constexpr int stripWidth = 11; // The widest thumb and its distance from the edge.

    bool isShown() const { return m_opacity > 0; }
    QRect thumb() const; // Empty where all is seen.

    void wake(); // Shows the thumb; it fades some time after the last call.

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    bool hasMore() const;
    void setHovered(bool hovered);
    void setOpacity(qreal opacity);
    void dragTo(int top);

    QScrollBar& m_range;
    QTimer m_rest;
    QVariantAnimation m_fade;
    qreal m_opacity = 0;
    int m_grip = 0; // Where the thumb was taken, from its top.
    bool m_dragging = false;
    bool m_hovered = false;
};
