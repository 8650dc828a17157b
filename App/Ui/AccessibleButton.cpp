#include "App/Ui/AccessibleButton.h"

AccessibleButton::AccessibleButton(QAbstractButton* button)
    : QAccessibleWidget(button)
{
}

// Asked each time: Qt may come for the interface before the button is checkable.
QAccessible::Role AccessibleButton::role() const
{
    if (!button()->isCheckable())
        return QAccessible::Button;
    return button()->autoExclusive() ? QAccessible::RadioButton : QAccessible::CheckBox;
}

QString AccessibleButton::text(QAccessible::Text kind) const
{
    const QString given = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && given.isEmpty() ? button()->text() : given;
}

QAccessible::State AccessibleButton::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = button()->isCheckable();
    state.checked = button()->isChecked();
    state.pressed = button()->isDown();
    return state;
}

QStringList AccessibleButton::actionNames() const
{
    if (!button()->isEnabled())
        return {};
    const bool isToggle = role() == QAccessible::CheckBox;
    return { isToggle ? toggleAction() : pressAction(), setFocusAction() };
}

void AccessibleButton::doAction(const QString& name)
{
    if (name == pressAction() || name == toggleAction())
        button()->click();
    else
        QAccessibleWidget::doAction(name);
}
