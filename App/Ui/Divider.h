// A line between parts of a view: fills its geometry, which is one point high.
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
