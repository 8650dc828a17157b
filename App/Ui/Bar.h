// How much of something is used or left, as a bar.
#pragma once

#include "App/Ui/Colors.h"

#include <QWidget>

class Bar final : public QWidget {
    Q_OBJECT

public:
    // The name is not shown; it is what assistive technology says.
    explicit Bar(const QString& name, QWidget* parent = nullptr);

    qreal fraction() const { return m_fraction; }
    QSize sizeHint() const override { return { 120, 6 }; }

    void setFraction(qreal fraction); // 0 to 1; anything else is bounded.
    void setTint(QColor Colors::*tint); // The mark unless set.

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    qreal m_fraction = 0;
    QColor Colors::*m_tint = &Colors::mark;
};
