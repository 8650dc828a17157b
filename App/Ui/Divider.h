// A line between parts of a view: one device pixel at the top of its geometry of one point.
#pragma once

#include <QWidget>

class Divider final : public QWidget {
    Q_OBJECT

public:
    explicit Divider(QWidget* parent = nullptr);

    QSize sizeHint() const override { return { 120, 1 }; }

protected:
    void paintEvent(QPaintEvent* event) override;
};
