#include "App/Ui/ScrollArea.h"

#include "App/Ui/ScrollBar.h"

#include <QEvent>
#include <QScrollBar>
#include <QStyle>

namespace {

QAbstractSlider::SliderAction scrollAction(int key)
{
    switch (key) {
    case Qt::Key_Up:
        return QAbstractSlider::SliderSingleStepSub;
    case Qt::Key_Down:
        return QAbstractSlider::SliderSingleStepAdd;
    case Qt::Key_PageUp:
        return QAbstractSlider::SliderPageStepSub;
    case Qt::Key_PageDown:
        return QAbstractSlider::SliderPageStepAdd;
    case Qt::Key_Home:
        return QAbstractSlider::SliderToMinimum;
    case Qt::Key_End:
        return QAbstractSlider::SliderToMaximum;
    default:
        return QAbstractSlider::SliderNoAction;
    }
}

}

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

bool ScrollArea::scrollBy(int key)
{
    const auto action = scrollAction(key);
    verticalScrollBar()->triggerAction(action);
    return action != QAbstractSlider::SliderNoAction;
}

void ScrollArea::bringIntoSight(const QRect& part)
{
    ensureVisible(0, part.center().y(), 0, part.height());
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
