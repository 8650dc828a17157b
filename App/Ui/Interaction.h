// What pointer and keyboard do to a control: whether it is hovered inside its visible box, and
// whether it shows its focus. Repaints the control only when one of them changes.
#pragma once

#include <QObject>
#include <QPoint>

class QEvent;
class QWidget;

class Interaction final : public QObject {
    Q_OBJECT

public:
    enum class Ring {
        keyboard, // Only when the focus came by keyboard.
        always,
    };

    explicit Interaction(QWidget* control, Ring ring = Ring::keyboard);

    bool isHovered() const;
    // Where the pointer is inside the box; (-1, -1) outside.
    QPoint pointer() const { return m_pointer; }
    bool showsFocus() const { return m_showsFocus; }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    // The pointer moved inside the box: for controls of several parts.
    void moved();

private:
    void setPointer(const QPoint& position);
    void setShowsFocus(bool shows);
    void focused(Qt::FocusReason reason);

    QWidget& m_control;
    Ring m_ring;
    QPoint m_pointer { -1, -1 };
    bool m_byKeyboard = false;
    bool m_showsFocus = false;
};
