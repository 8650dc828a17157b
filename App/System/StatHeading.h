// The first line of a row: what it is about, and its value in digits that do not jitter.
#pragma once

#include "App/Ui/DigitText.h"

#include <QWidget>

class StatHeading final : public QWidget {
    Q_OBJECT

public:
    StatHeading(const QString& title, QWidget* parent);

    QString title() const { return m_title; }
    QString value() const { return m_value; }

    void setValue(const QString& value);

private:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void measureValue();
    void adoptFont();
    QRect trailing(int width) const;

    QString m_title;
    QString m_value;
    DigitText m_digits;
    int m_valueWidth = 0;
};
