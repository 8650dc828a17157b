#include "App/System/StatRow.h"

#include "App/System/StatHeading.h"
#include "App/Ui/Accessibility.h"

#include <QAccessibleWidget>
#include <QVBoxLayout>

static constexpr int spacing = 3;

StatRow::StatRow(const QString& title, QWidget* content, QWidget* parent)
    : QWidget(parent)
    , m_heading(new StatHeading(title, this))
{
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::Grouping); });
    setAccessibleName(title);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(spacing);
    column->addWidget(m_heading);
    column->addWidget(content);
}

QString StatRow::title() const
{
    return m_heading->title();
}

QString StatRow::value() const
{
    return m_heading->value();
}

void StatRow::setValue(const QString& value)
{
    m_heading->setValue(value);
}
