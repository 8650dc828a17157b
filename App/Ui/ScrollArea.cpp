#include "App/Ui/ScrollArea.h"

#include "App/Ui/ScrollBar.h"

#include <QEvent>
#include <QScrollBar>
#include <QStyle>

ScrollArea::ScrollArea(QWidget* parent)
    : QScrollArea(parent)
    , m_bar(new ScrollBar(*verticalScrollBar(), this))
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    // The ground is the window's.
    viewport()->setAutoFillBackground(false);
}

void ScrollArea::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    placeBar();
}

void ScrollArea::changeEvent(QEvent* event)
{
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        placeBar();
}

void ScrollArea::placeBar()
{
    const QRect strip(width() - ScrollBar::stripWidth, 0, ScrollBar::stripWidth, height());
    m_bar->setGeometry(QStyle::visualRect(layoutDirection(), rect(), strip));
    m_bar->raise();
}
