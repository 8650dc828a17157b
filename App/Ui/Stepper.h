// Minus and plus halves that step a whole number within its range. The number is shown elsewhere.
#pragma once

#include <QTimer>
#include <QWidget>

class Interaction;

class Stepper final : public QWidget {
    Q_OBJECT

public:
    // The name is not shown; it is what assistive technology says.
    explicit Stepper(const QString& name, QWidget* parent = nullptr);

    int value() const { return m_value; }
    int minimum() const { return m_minimum; }
    int maximum() const { return m_maximum; }
    int step() const { return m_step; }
    QRect box() const; // In the stepper's own coordinates.
    static QSize boxSize() { return { 44, 20 }; }
    QSize sizeHint() const override;

    void setRange(int minimum, int maximum); // Both may be taken.
    void setStep(int step);
    void setValue(int value); // As it is, silent; from outside the range a step leads into it.

    void placeBox(const QRect& box); // In the parent's coordinates.
    void stepBy(int steps);
    void edit(int value); // As the user does it: bounded, and told by edited().

Q_SIGNALS:
    void edited(int value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    enum class Half { none, minus, plus };

    QRect rectOf(Half half) const;
    Half halfAt(const QPoint& position) const;
    bool canStep(Half half) const;
    void stepOnce(Half half) { stepBy(half == Half::plus ? 1 : -1); }
    void setPressed(Half half);
    void setHovered(Half half);
    void repeat();
    void paintHalf(QPainter& painter, Half half) const;

    Interaction* m_interaction;
    QTimer m_repeat;
    int m_value = 0;
    int m_minimum = 0;
    int m_maximum = 99;
    int m_step = 1;
    int m_wheel = 0; // Eighths of a degree that have not made a step yet.
    Half m_pressed = Half::none;
    Half m_hovered = Half::none;
};
