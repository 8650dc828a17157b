// One line of text to be typed.
#pragma once

#include <QLineEdit>

class Interaction;

class TextField final : public QLineEdit {
    Q_OBJECT

public:
    // The placeholder is also its name for assistive technology.
    explicit TextField(const QString& placeholder, QWidget* parent = nullptr);

    QRect box() const; // In the field's own coordinates.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    void setPlaceholder(const QString& placeholder);

    void placeBox(const QRect& box); // In the parent's coordinates.

protected:
    void paintEvent(QPaintEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    void paintSurface(QPainter& painter);
    void paintPlaceholder(QPainter& painter);

    Interaction* m_interaction;
    bool m_isComposing = false; // An input method shows what it has not committed yet.
};
