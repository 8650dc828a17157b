// The program's spine: what happens at launch, the item's title, its popover, and the widget.
#pragma once

#include <QObject>

#include <functional>
#include <memory>

class CalendarModel;
class NotchController;
class PomodoroModel;
class PopoverWindow;
class StatusItem;

class AppDelegate final : public QObject {
    Q_OBJECT

public:
    using MakeNotch = std::function<std::unique_ptr<NotchController>()>;

    AppDelegate(StatusItem& statusItem, PopoverWindow& popover, PomodoroModel& timer,
        CalendarModel& calendar, MakeNotch makeNotch);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();
    void showPopover();
    void togglePopover();

private:
    void updateTitle();

    StatusItem& m_statusItem;
    PopoverWindow& m_popover;
    PomodoroModel& m_timer;
    CalendarModel& m_calendar;
    MakeNotch m_makeNotch;
    std::unique_ptr<NotchController> m_notch; // Absent until launch.
};
