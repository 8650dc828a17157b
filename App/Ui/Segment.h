// One of the segments of a SegmentedPicker, which places it and paints the track under it.
#pragma once

#include <QAbstractButton>

class Segment final : public QAbstractButton {
    Q_OBJECT

public:
    Segment(const QString& title, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};
