// Content that scrolls up and down under a floating thumb, as wide as the area itself.
#pragma once

#include <QScrollArea>

class ScrollBar;

class ScrollArea final : public QScrollArea {
    Q_OBJECT

public:
    explicit ScrollArea(QWidget* parent = nullptr);

    ScrollBar& bar() const { return *m_bar; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void placeBar();

    ScrollBar* m_bar;
};
