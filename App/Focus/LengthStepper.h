// One phase length: its title over the minutes and the stepper that changes them.
#pragma once

#include "App/Ui/ArrangedWidget.h"

class Label;
class Stepper;

class LengthStepper final : public ArrangedWidget {
    Q_OBJECT

public:
    static constexpr int height = 36; // Of what is seen of it.

    // The most minutes that can be stepped to; the fewest are 1.
    LengthStepper(const QString& title, int most, QWidget* parent);

    void placeBox(const QRect& box); // In the parent's coordinates.
    void setMinutes(qint64 minutes); // Shown as they are, inside the range or not.

Q_SIGNALS:
    void edited(qint64 minutes);

private:
    void paintEvent(QPaintEvent* event) override;
    QString words() const;
    void arrange() override;

    Label* m_title;
    Stepper* m_stepper;
    qint64 m_minutes = 0;
    QRect m_words; // Where the minutes are painted.
};
