#include "App/System/SystemView.h"

#include "App/Core/Fixed.h"
#include "App/Platform/ProcessInfo.h"
#include "App/System/ChartScale.h"
#include "App/System/Sparkline.h"
#include "App/System/StatRow.h"
#include "App/System/SystemFooter.h"
#include "App/System/SystemMonitor.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/Bar.h"
#include "App/Ui/Label.h"
#include "App/Ui/ScrollArea.h"

#include <QAccessibleWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 14;
constexpr int spacing = 12;
constexpr double wholePercent = 100;
constexpr double lowBattery = 20; // Percent.

QString percent(double value)
{
    return fixed(value, 0) + u'%';
}

double newest(const QList<double>& history)
{
    return history.isEmpty() ? 0 : history.last();
}

}

SystemView::SystemView(SystemMonitor& monitor, ProcessInfo& info)
    : m_monitor(monitor)
    , m_info(info)
{
    build();
    refresh();
    m_monitor.observe(this, [this] { refresh(); });
    connect(&m_info, &ProcessInfo::changed, this, &SystemView::refresh);
}

SystemView::~SystemView()
{
    disappear();
}

void SystemView::build()
{
    m_cpuChart = new Sparkline(u"CPU history"_s, &Colors::blue, percent);
    m_cpuChart->setMaxY(wholePercent);
    m_memChart = new Sparkline(u"Memory history"_s, &Colors::purple, percent);
    m_memChart->setMaxY(wholePercent);
    m_diskBar = new Bar(u"Disk in use"_s);
    m_batteryBar = new Bar(u"Battery charge"_s);
    m_downChart = new Sparkline(u"Download history"_s, &Colors::green, SystemMonitor::rate);
    m_upChart = new Sparkline(u"Upload history"_s, &Colors::orange, SystemMonitor::rate);
    m_cpu = new StatRow(u"CPU"_s, m_cpuChart);
    m_mem = new StatRow(u"Memory"_s, m_memChart);
    m_disk = new StatRow(u"Disk"_s, m_diskBar);
    m_battery = new StatRow(u"Battery"_s, m_batteryBar);
    m_down = new StatRow(u"Download"_s, m_downChart);
    m_up = new StatRow(u"Upload"_s, m_upChart);
    m_footer = new Label(TextRole::caption, &Colors::secondary);
    m_footer->setAlignment(Qt::AlignCenter);
    m_footer->setObjectName(u"footer"_s);

    auto* const scroll = new ScrollArea(this);
    scroll->setWidget(makeColumn());
    scroll->widget()->setAutoFillBackground(false); // The ground is the window's.
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(scroll);

    setAccessibleName(u"System monitor"_s);
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::Grouping); });
}

QWidget* SystemView::makeColumn()
{
    auto* const column = new QWidget;
    auto* const rows = new QVBoxLayout(column);
    rows->setContentsMargins(padding, padding, padding, padding);
    rows->setSpacing(spacing);
    for (auto* const row : { m_cpu, m_mem, m_disk, m_battery, m_down, m_up })
        rows->addWidget(row);
    rows->addWidget(m_footer);
    rows->addStretch();
    return column;
}

void SystemView::showEvent(QShowEvent*)
{
    appear();
}

void SystemView::hideEvent(QHideEvent*)
{
    disappear();
}

void SystemView::appear()
{
    if (m_isOnScreen)
        return;
    m_isOnScreen = true;
    m_info.follow();
    m_monitor.attach();
    refresh(); // The first picture shows the first sample already.
}

void SystemView::disappear()
{
    if (!m_isOnScreen)
        return;
    m_isOnScreen = false;
    m_monitor.detach();
    m_info.unfollow();
}

void SystemView::refresh()
{
    m_cpu->setValue(percent(newest(m_monitor.cpu())));
    m_cpuChart->setValues(m_monitor.cpu());
    m_mem->setValue(m_monitor.memText());
    m_memChart->setValues(m_monitor.mem());
    m_disk->setValue(m_monitor.diskFreeText());
    m_diskBar->setFraction(m_monitor.diskUsed() / wholePercent);
    refreshBattery();
    refreshNetwork();
    m_footer->setText(systemFooter(m_info));
}

void SystemView::refreshBattery()
{
    const auto level = m_monitor.batteryLevel();
    m_battery->setValue(m_monitor.batteryText());
    m_batteryBar->setVisible(level.has_value());
    m_batteryBar->setFraction(level.value_or(0) / wholePercent);
    // The exact level, not the rounded one that is shown.
    m_batteryBar->setTint(level < lowBattery ? &Colors::red : &Colors::green);
}

void SystemView::refreshNetwork()
{
    const double top = ChartScale::networkTop(m_monitor.down(), m_monitor.up());
    m_down->setValue(SystemMonitor::rate(newest(m_monitor.down())));
    m_downChart->setValues(m_monitor.down());
    m_downChart->setMaxY(top);
    m_up->setValue(SystemMonitor::rate(newest(m_monitor.up())));
    m_upChart->setValues(m_monitor.up());
    m_upChart->setMaxY(top);
}
