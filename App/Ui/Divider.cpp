#include "App/Ui/Divider.h"

#include "App/Ui/Theme.h"

#include <QPainter>

Divider::Divider(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Divider::paintEvent(QPaintEvent*)
{
    const QRectF line(0, 0, width(), 1 / devicePixelRatioF());
    QPainter(this).fillRect(line, Theme::current().colors.divider);
}
