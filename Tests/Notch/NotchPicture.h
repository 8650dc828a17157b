// What is seen of the widget, and what of it is painted again.
#pragma once

#include <QCoreApplication>
#include <QImage>
#include <QPaintEvent>
#include <QWidget>

#include <algorithm>

class Repaints final : public QObject {
public:
    explicit Repaints(QWidget& widget)
    {
        QCoreApplication::processEvents();
        widget.installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        region += static_cast<QPaintEvent*>(event)->region();
        ++count;
        return false;
    }

    QRegion region;
    int count = 0;
};

// Around what is neither black nor outside the tab.
inline QRect inked(const QImage& image, const QRect& part)
{
    QRect found;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            if (image.pixelColor(x, y) != Qt::black)
                found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

inline int brightest(const QImage& image, const QRect& part)
{
    int most = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x)
            most = std::max(most, qGray(image.pixel(x, y)));
    }
    return most;
}
