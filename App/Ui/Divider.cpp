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
    QPainter painter(this);
    const qreal hairline = 1 / devicePixelRatioF();
    painter.fillRect(QRectF(0, 0, width(), hairline), Theme::current().colors.divider);
}
