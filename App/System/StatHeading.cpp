#include "App/System/StatHeading.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/DigitText.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QAccessibleWidget>
#include <QPainter>

using namespace Qt::StringLiterals;

StatHeading::StatHeading(const QString& title, QWidget* parent)
    : QWidget(parent)
    , m_title(title)
{
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::StaticText); });
    setAccessibleName(title);
    setFixedHeight(Theme::lineHeight(TextRole::callout));
}

void StatHeading::setValue(const QString& value)
{
    if (m_value == value)
        return;
    m_value = value;
    setAccessibleName(m_title + u": "_s + m_value);
    update();
}

void StatHeading::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const auto& theme = Theme::current();
    TextLine::paint(painter, rect(), Qt::AlignLeading, m_title,
        theme.font(TextRole::captionHeading), theme.colors.secondary);
    const auto font = theme.font(TextRole::callout);
    const DigitText digits(font);
    const qreal left = layoutDirection() == Qt::LeftToRight ? width() - digits.width(m_value) : 0;
    digits.paintAt(painter, { left, TextLine::baseline(font, rect()) }, m_value, theme.colors.text);
}
