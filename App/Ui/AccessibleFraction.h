// A widget that shows a fraction of a whole, as assistive technology sees it: a value in percent.
#pragma once

#include <QAccessibleWidget>

#include <functional>

class AccessibleFraction : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    // fraction: from 0 to 1.
    AccessibleFraction(QWidget* widget, std::function<double()> fraction);

    void* interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text kind) const override;

    QVariant currentValue() const override;
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return 100; }
    QVariant minimumStepSize() const override { return 1; }
    void setCurrentValue(const QVariant&) override { }

private:
    std::function<double()> m_fraction;
};
