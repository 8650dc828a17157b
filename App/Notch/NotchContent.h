// What the widget says.
#pragma once

#include <QString>

class CalendarModel;
class MeetingTimes;
class PomodoroModel;

struct NotchContent {
    enum class Dot { stopped, focus, rest };

    Dot dot = Dot::stopped;
    QString title;
    QString task;
    QString meeting;
};

NotchContent notchContent(
    const PomodoroModel& timer, const CalendarModel& calendar, const MeetingTimes& times);

// For those who do not see it; the dot in words.
QString spoken(const NotchContent& content);
