#include "App/Notch/NotchContent.h"

#include "App/Focus/PomodoroModel.h"
#include "App/Meetings/CalendarModel.h"
#include "App/Meetings/MeetingTimes.h"

using namespace Qt::StringLiterals;

namespace {

NotchContent::Dot dotOf(const PomodoroModel& timer)
{
    if (!timer.running())
        return NotchContent::Dot::stopped;
    return timer.phase() == Phase::focus ? NotchContent::Dot::focus : NotchContent::Dot::rest;
}

QString meetingOf(const CalendarModel& calendar, const MeetingTimes& times)
{
    if (const auto* const next = calendar.next())
        return next->title + u" · "_s + times.shortTime(next->start);
    return calendar.authorized() ? u"No more meetings today"_s : u"Meetings: calendar access off"_s;
}

}

NotchContent notchContent(
    const PomodoroModel& timer, const CalendarModel& calendar, const MeetingTimes& times)
{
    return {
        .dot = dotOf(timer),
        .title = timer.isActive() ? timer.timeString() : u"Corvella"_s,
        .task = timer.taskName().isEmpty() ? u"No task set"_s : timer.taskName(),
        .meeting = meetingOf(calendar, times),
    };
}
