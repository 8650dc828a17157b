#include "App/System/StatHeading.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QAccessibleWidget>
#include <QPaintEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

class AccessibleHeading final : public QAccessibleWidget {
public:
    explicit AccessibleHeading(StatHeading* heading)
        : QAccessibleWidget(heading, QAccessible::StaticText)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Name)
            return QAccessibleWidget::text(kind);
        const auto& heading = *static_cast<const StatHeading*>(object());
        return heading.title() + u": "_s + heading.value();
    }
};

}

StatHeading::StatHeading(const QString& title, QWidget* parent)
    : QWidget(parent)
    , m_title(title)
    , m_digits(Theme::current().font(TextRole::callout))
{
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new AccessibleHeading(static_cast<StatHeading*>(widget)); });
    setFixedHeight(Theme::lineHeight(TextRole::callout));
}

void StatHeading::setValue(const QString& value)
{
    if (m_value == value)
        return;
    m_value = value;
    Accessibility::tellName(this);
    const int widthBefore = m_valueWidth;
    measureValue();
    update(trailing(std::max(widthBefore, m_valueWidth)));
}

void StatHeading::measureValue()
{
    m_valueWidth = static_cast<int>(std::ceil(m_digits.width(m_value)));
}

void StatHeading::adoptFont()
{
    m_digits = DigitText(Theme::current().font(TextRole::callout));
    measureValue();
}

QRect StatHeading::trailing(int width) const
{
    return QStyle::visualRect(
        layoutDirection(), rect(), { this->width() - width, 0, width, height() });
}

void StatHeading::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange)
        adoptFont();
    QWidget::changeEvent(event);
}

void StatHeading::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const auto& theme = Theme::current();
    const auto value = trailing(m_valueWidth);
    // A new value leaves the title as it is.
    if (!value.contains(event->rect()))
        TextLine::paint(painter, rect(), Qt::AlignLeading, m_title,
            theme.font(TextRole::captionHeading), theme.colors.secondary);
    const auto baseline = TextLine::baseline(m_digits.font(), value);
    m_digits.paintAt(painter, QPointF(value.left(), baseline), m_value, theme.colors.text);
}
