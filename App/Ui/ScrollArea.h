// Content that scrolls up and down under a floating thumb, as wide as the area itself.
#pragma once

#include <QScrollArea>

class ScrollBar;

class ScrollArea final : public QScrollArea {
    Q_OBJECT

public:
    explicit ScrollArea(QWidget* parent = nullptr);

    ScrollBar& bar() const { return *m_bar; }

    // As the arrows, the keys for pages, Home and End do; false for any other key.
    bool scrollBy(int key);
    // A part of the content, with some of what is beside it.
    void bringIntoSight(const QRect& part);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void placeBar();

    ScrollBar* m_bar;
};
