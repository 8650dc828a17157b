#include "App/Ui/AccessibleFraction.h"

#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

AccessibleFraction::AccessibleFraction(QWidget* widget, std::function<double()> fraction)
    : QAccessibleWidget(widget, QAccessible::ProgressBar)
    , m_fraction(std::move(fraction))
{
}

void* AccessibleFraction::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QString AccessibleFraction::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Value)
        return u"%1 %"_s.arg(currentValue().toInt());
    return QAccessibleWidget::text(kind);
}

QVariant AccessibleFraction::currentValue() const
{
    return int(std::lround(m_fraction() * 100));
}
