// The program's spine: what happens at launch, the item's title, and its popover.
#pragma once

#include <QObject>

class CalendarModel;
class PomodoroModel;
class PopoverWindow;
class StatusItem;

class AppDelegate final : public QObject {
    Q_OBJECT

public:
    AppDelegate(StatusItem& statusItem, PopoverWindow& popover, PomodoroModel& timer,
        CalendarModel& calendar);

    void applicationDidFinishLaunching();
    void showPopover();
    void togglePopover();

private:
    void updateTitle();

    StatusItem& m_statusItem;
    PopoverWindow& m_popover;
    PomodoroModel& m_timer;
    CalendarModel& m_calendar;
};
