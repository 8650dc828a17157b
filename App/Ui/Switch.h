// An on and off switch whose knob slides.
#pragma once

#include <QAbstractButton>
#include <QVariantAnimation>

class Interaction;

class Switch final : public QAbstractButton {
    Q_OBJECT

public:
    // The name is not shown; it is what assistive technology says.
    explicit Switch(const QString& name, QWidget* parent = nullptr);

    QRect box() const; // In the switch's own coordinates.
    static QSize boxSize() { return { 34, 20 }; }
    QSize sizeHint() const override;

    void placeBox(const QRect& box); // In the parent's coordinates.

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override;
    void checkStateSet() override;
    void nextCheckState() override;

private:
    void moveKnob();
    QColor trackColor() const;

    Interaction* m_interaction;
    QVariantAnimation m_slide;
    qreal m_knob = 0; // 0 off to 1 on.
};
