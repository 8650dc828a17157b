#include "App/Ui/Accessibility.h"

#include "App/Ui/AccessibleButton.h"
#include "App/Ui/AccessibleFraction.h"
#include "App/Ui/Bar.h"
#include "App/Ui/Picker.h"
#include "App/Ui/SegmentedPicker.h"
#include "App/Ui/Stepper.h"

#include <QAccessibleWidget>
#include <QHash>

namespace {

class AccessiblePicker final : public AccessibleButton {
public:
    using AccessibleButton::AccessibleButton;

    QAccessible::Role role() const override { return QAccessible::ButtonMenu; }

    // The choice is also the description: D-Bus carries no values but numbers.
    QString text(QAccessible::Text kind) const override
    {
        const bool isChoice = kind == QAccessible::Value || kind == QAccessible::Description;
        return isChoice ? button()->text() : AccessibleButton::text(kind);
    }
};

class AccessibleStepper final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleStepper(Stepper* stepper)
        : QAccessibleWidget(stepper, QAccessible::SpinBox)
    {
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Value)
            return QString::number(stepper()->value());
        return QAccessibleWidget::text(kind);
    }

    QStringList actionNames() const override
    {
        if (!stepper()->isEnabled())
            return {};
        return { increaseAction(), decreaseAction(), setFocusAction() };
    }

    void doAction(const QString& name) override
    {
        if (name == increaseAction())
            stepper()->stepBy(1);
        else if (name == decreaseAction())
            stepper()->stepBy(-1);
        else
            QAccessibleWidget::doAction(name);
    }

    QVariant currentValue() const override { return stepper()->value(); }
    QVariant minimumValue() const override { return stepper()->minimum(); }
    QVariant maximumValue() const override { return stepper()->maximum(); }
    QVariant minimumStepSize() const override { return stepper()->step(); }
    void setCurrentValue(const QVariant& value) override { stepper()->edit(value.toInt()); }

private:
    Stepper* stepper() const { return static_cast<Stepper*>(object()); }
};

QHash<QString, Accessibility::Maker>& makers()
{
    static QHash<QString, Accessibility::Maker> all;
    return all;
}

// Qt asks for the most derived class first.
QAccessibleInterface* made(const QString& className, QObject* object)
{
    const auto found = makers().constFind(className);
    return found == makers().constEnd() ? nullptr : (*found)(static_cast<QWidget*>(object));
}

void tell(QWidget* widget, QAccessible::Event change)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(widget, change);
    QAccessible::updateAccessibility(&event);
}

}

void Accessibility::describe(const QMetaObject& type, const Maker& make)
{
    if (makers().isEmpty())
        QAccessible::installFactory(made);
    makers().insert(QString::fromLatin1(type.className()), make);
}

void Accessibility::tellName(QWidget* widget)
{
    tell(widget, QAccessible::NameChanged);
}

void Accessibility::tellDescription(QWidget* widget)
{
    tell(widget, QAccessible::DescriptionChanged);
}

void Accessibility::tellExpanded(QWidget* widget)
{
    if (!QAccessible::isActive())
        return;
    QAccessible::State changed;
    changed.expanded = true;
    QAccessibleStateChangeEvent event(widget, changed);
    QAccessible::updateAccessibility(&event);
}

void Accessibility::tellValue(QWidget* widget, const QVariant& value)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(widget, value);
    QAccessible::updateAccessibility(&event);
}

void Accessibility::install()
{
    static const bool installed = [] {
        describe(QAbstractButton::staticMetaObject, [](QWidget* widget) {
            return new AccessibleButton(static_cast<QAbstractButton*>(widget));
        });
        describe(Picker::staticMetaObject,
            [](QWidget* widget) { return new AccessiblePicker(static_cast<Picker*>(widget)); });
        describe(Stepper::staticMetaObject,
            [](QWidget* widget) { return new AccessibleStepper(static_cast<Stepper*>(widget)); });
        describe(Bar::staticMetaObject, [](QWidget* widget) {
            return new AccessibleFraction(
                widget, [widget] { return static_cast<Bar*>(widget)->fraction(); });
        });
        describe(SegmentedPicker::staticMetaObject,
            [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::Grouping); });
        return true;
    }();
    Q_UNUSED(installed)
}
