// A small chart of a history: a line over a tinted area, oldest value at the left.
#pragma once

#include "App/Ui/Colors.h"

#include <QList>
#include <QWidget>

#include <functional>
#include <optional>

class Sparkline final : public QWidget {
    Q_OBJECT

public:
    static constexpr int height = 34;

    // How a value is said in words.
    using Words = std::function<QString(double)>;

    // The name and the words are not shown; they are what assistive technology says. A chart
    // without maxY follows its data.
    Sparkline(const QString& name, QColor Colors::*color, Words words, QWidget* parent = nullptr);

    QList<double> values() const { return m_values; }
    std::optional<double> maxY() const { return m_maxY; }
    double top() const; // Of the vertical scale, which begins at 0.
    QString said(double value) const { return m_words(value); }

    // At most SystemMonitor::historyLength, oldest first; what lies off the scale is drawn at its
    // edge.
    void setValues(const QList<double>& values);
    void setMaxY(std::optional<double> maxY);

private:
    void paintEvent(QPaintEvent* event) override;
    void paintIfNew();
    QPolygonF lineIn(const QRectF& box) const;

    QColor Colors::*m_color;
    Words m_words;
    QList<double> m_values;
    std::optional<double> m_maxY;
    QList<int> m_levels; // What is painted of the values.
};
