#include "App/TabBar.h"

#include "App/TabButton.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/Surface.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 8;
constexpr int spacing = 2;
constexpr int tabHeight = 44;
constexpr QSize gearSize(34, 38);
constexpr qreal radius = 7;

}

TabBar::TabBar(QWidget* parent)
    : QWidget(parent)
{
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::PageTabList); });
    for (const auto tab : allTabs) {
        auto* const button
            = new TabButton(TabButton::Kind::tab, symbolName(tab), rawValue(tab), this);
        button->setObjectName(rawValue(tab));
        connect(button, &TabButton::clicked, this, [this, tab] { Q_EMIT tabPressed(tab); });
        m_tabs << button;
    }
    // Made last, so that the keyboard and assistive technology come to it last.
    m_gear = new TabButton(TabButton::Kind::toggle, u"gearshape"_s, u"Settings"_s, this);
    m_gear->setObjectName(u"gear"_s);
    connect(m_gear, &TabButton::clicked, this, &TabBar::settingsPressed);
}

void TabBar::highlight(Tab tab, bool settings)
{
    for (const auto each : allTabs)
        m_tabs[qsizetype(each)]->setChecked(each == tab && !settings);
    m_gear->setChecked(settings);
}

void TabBar::resizeEvent(QResizeEvent*)
{
    const auto place = [this](QWidget* button, const QRect& box) {
        button->setGeometry(QStyle::visualRect(layoutDirection(), rect(), box));
    };
    const auto count = static_cast<int>(m_tabs.size());
    const int shared = width() - 2 * padding - gearSize.width() - count * spacing;
    for (int i = 0; i < count; ++i) {
        const int left = padding + i * spacing + i * shared / count;
        const int right = padding + i * spacing + (i + 1) * shared / count;
        place(m_tabs[i], { left, padding, right - left, tabHeight });
    }
    place(m_gear,
        { QPoint(
              width() - padding - gearSize.width(), padding + (tabHeight - gearSize.height()) / 2),
            gearSize });
}

void TabBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto* button : findChildren<TabButton*>()) {
        if (button->showsFocus())
            Surface::focusRing(painter, button->geometry(), radius);
    }
}
