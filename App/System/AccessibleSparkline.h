// A chart as assistive technology sees it: its newest value on its scale, and its range in words.
#pragma once

#include <QAccessibleWidget>

class Sparkline;

class AccessibleSparkline final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleSparkline(Sparkline* chart);

    void* interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text kind) const override;

    QVariant currentValue() const override;
    QVariant minimumValue() const override { return 0.0; }
    QVariant maximumValue() const override;
    QVariant minimumStepSize() const override { return 0.0; }
    void setCurrentValue(const QVariant&) override { }

private:
    const Sparkline& chart() const;
    QString description() const;
};
