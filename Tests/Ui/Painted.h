// Counts how often a widget is painted.
#pragma once

#include <QEvent>
#include <QWidget>

class Painted final : public QObject {
public:
    explicit Painted(QWidget& widget) { widget.installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    int count = 0;
};
