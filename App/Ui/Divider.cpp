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
    QPainter(this).fillRect(rect(), Theme::current().colors.divider);
}
