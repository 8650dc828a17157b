#include "App/Ui/Accessibility.h"

#include "App/Ui/Bar.h"
#include "App/Ui/Picker.h"
#include "App/Ui/SegmentedPicker.h"
#include "App/Ui/Stepper.h"

#include <QAbstractButton>
#include <QAccessibleWidget>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

class AccessibleButton final : public QAccessibleWidget {
public:
    explicit AccessibleButton(QAbstractButton* button)
        : QAccessibleWidget(button)
    {
    }

    // Asked each time: Qt may come for the interface before the button is checkable.
    QAccessible::Role role() const override
    {
        if (qobject_cast<Picker*>(object()))
            return QAccessible::ButtonMenu;
        if (!button()->isCheckable())
            return QAccessible::Button;
        return button()->autoExclusive() ? QAccessible::RadioButton : QAccessible::CheckBox;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Value && qobject_cast<Picker*>(object()))
            return button()->text();
        const QString given = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && given.isEmpty() ? button()->text() : given;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = button()->isCheckable();
        state.checked = button()->isChecked();
        state.pressed = button()->isDown();
        return state;
    }

    QStringList actionNames() const override
    {
        if (!button()->isEnabled())
            return {};
        const bool isToggle = role() == QAccessible::CheckBox;
        return { isToggle ? toggleAction() : pressAction(), setFocusAction() };
    }

    void doAction(const QString& name) override
    {
        if (name == pressAction() || name == toggleAction())
            button()->click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    QAbstractButton* button() const { return static_cast<QAbstractButton*>(object()); }
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

class AccessibleBar final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleBar(Bar* bar)
        : QAccessibleWidget(bar, QAccessible::ProgressBar)
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
            return u"%1 %"_s.arg(currentValue().toInt());
        return QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override
    {
        return int(std::lround(static_cast<Bar*>(object())->fraction() * 100));
    }
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return 100; }
    QVariant minimumStepSize() const override { return 1; }
    void setCurrentValue(const QVariant&) override { }
};

// Qt asks for the most derived class first, so a unit can name a button of its own otherwise.
QAccessibleInterface* made(const QString& className, QObject* object)
{
    if (className == u"QAbstractButton")
        return new AccessibleButton(static_cast<QAbstractButton*>(object));
    if (className == u"Stepper")
        return new AccessibleStepper(static_cast<Stepper*>(object));
    if (className == u"Bar")
        return new AccessibleBar(static_cast<Bar*>(object));
    if (className == u"SegmentedPicker")
        return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Grouping);
    return nullptr;
}

}

void Accessibility::install()
{
    static const bool installed = [] {
        QAccessible::installFactory(made);
        return true;
    }();
    Q_UNUSED(installed)
}
