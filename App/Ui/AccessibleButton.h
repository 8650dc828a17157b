// A button of ours as assistive technology sees it.
#pragma once

#include <QAbstractButton>
#include <QAccessibleWidget>

class AccessibleButton : public QAccessibleWidget {
public:
    explicit AccessibleButton(QAbstractButton* button);

    QAccessible::Role role() const override;
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& name) override;

protected:
    QAbstractButton* button() const { return static_cast<QAbstractButton*>(object()); }
};
