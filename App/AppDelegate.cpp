#include "App/AppDelegate.h"

#include "App/Focus/PomodoroModel.h"
#include "App/Meetings/CalendarModel.h"
#include "App/Notch/NotchController.h"
#include "App/Platform/PopoverWindow.h"
#include "App/Platform/StatusItem.h"
#include "App/StatusTitle.h"

#include <QCoreApplication>

#include <utility>

AppDelegate::AppDelegate(StatusItem& statusItem, PopoverWindow& popover, PomodoroModel& timer,
    CalendarModel& calendar, MakeNotch makeNotch)
    : m_statusItem(statusItem)
    , m_popover(popover)
    , m_timer(timer)
    , m_calendar(calendar)
    , m_makeNotch(std::move(makeNotch))
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    connect(&m_statusItem, &StatusItem::activated, this, &AppDelegate::togglePopover);
    connect(&m_statusItem, &StatusItem::quitRequested, qApp, &QCoreApplication::quit);
    m_statusItem.show();
    updateTitle();
    m_timer.observe(this, [this] { updateTitle(); });
    m_notch = m_makeNotch();
    m_calendar.checkAuthorization();
}

void AppDelegate::updateTitle()
{
    m_statusItem.setTitle(statusTitle(m_timer.isActive(), m_timer.phase(), m_timer.timeString()));
}

void AppDelegate::showPopover()
{
    if (!m_popover.isShown())
        m_popover.show(m_statusItem.geometry());
}

void AppDelegate::togglePopover()
{
    if (m_popover.isShown())
        m_popover.close();
    else
        m_popover.show(m_statusItem.geometry());
}
