// A ring that fills clockwise from twelve o'clock around the time left.
#pragma once

#include <QColor>
#include <QVariantAnimation>
#include <QWidget>

class ProgressRing final : public QWidget {
    Q_OBJECT

public:
    static constexpr int side = 150; // Of the box that the ring fills.
    // Around the box: between two pixels its outermost ones would be cut off.
    static constexpr int margin = 1;

    explicit ProgressRing(QWidget* parent);

    double progress() const { return m_progress; }
    QString time() const { return m_time; }

    // 0 is empty and 1 full. A change that the eye can follow is animated, others are not.
    void setProgress(double progress);
    void setTime(const QString& time);
    void setColor(const QColor& color);

private:
    void paintEvent(QPaintEvent* event) override;
    void paintTime(QPainter& painter);
    void setShown(double progress);

    double m_progress = 0;
    double m_shown = 0; // What is painted now; on its way to m_progress.
    QString m_time;
    QColor m_color;
    QVariantAnimation m_animation;
};
