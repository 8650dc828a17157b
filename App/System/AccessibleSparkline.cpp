#include "App/System/AccessibleSparkline.h"

#include "App/System/Sparkline.h"

#include <algorithm>

using namespace Qt::StringLiterals;

AccessibleSparkline::AccessibleSparkline(Sparkline* chart)
    : QAccessibleWidget(chart, QAccessible::Chart)
{
}

const Sparkline& AccessibleSparkline::chart() const
{
    return *static_cast<const Sparkline*>(object());
}

void* AccessibleSparkline::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QString AccessibleSparkline::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Value)
        return chart().said(currentValue().toDouble());
    if (kind == QAccessible::Description)
        return description();
    return QAccessibleWidget::text(kind);
}

QVariant AccessibleSparkline::currentValue() const
{
    const auto values = chart().values();
    return values.isEmpty() ? 0.0 : values.last();
}

QVariant AccessibleSparkline::maximumValue() const
{
    return chart().top();
}

QString AccessibleSparkline::description() const
{
    const auto values = chart().values();
    if (values.isEmpty())
        return {};
    const auto [least, most] = std::ranges::minmax(values);
    return u"Newest %1, lowest %2, highest %3, on a scale up to %4"_s.arg(
        chart().said(values.last()), chart().said(least), chart().said(most),
        chart().said(chart().top()));
}
