#include "App/Ui/ArrangedWidget.h"

#include <QEvent>

void ArrangedWidget::resizeEvent(QResizeEvent*)
{
    arrange();
}

void ArrangedWidget::changeEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::ApplicationFontChange:
    case QEvent::LayoutDirectionChange:
        arrange();
        break;
    default:
        break;
    }
    QWidget::changeEvent(event);
}
