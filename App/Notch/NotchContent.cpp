#include "App/Notch/NotchContent.h"

#include "App/Focus/PomodoroModel.h"
#include "App/Meetings/CalendarModel.h"
#include "App/Meetings/MeetingTimes.h"
#include "App/Meetings/MeetingsContent.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

// In one line, and no more of it than any line could show: it may come from anywhere.
QString lineOf(const QString& text)
{
    constexpr qsizetype longest = 500;
    return oneLine(text.left(longest)).simplified();
}

NotchContent::Dot dotOf(const PomodoroModel& timer)
{
    if (!timer.running())
        return NotchContent::Dot::stopped;
    return timer.phase() == Phase::focus ? NotchContent::Dot::focus : NotchContent::Dot::rest;
}

QString meetingOf(const CalendarModel& calendar, const MeetingTimes& times)
{
    if (const auto* const next = calendar.next())
        return isolated(lineOf(next->title)) + u" · "_s + times.shortTime(next->start);
    return calendar.authorized() ? u"No more meetings today"_s : u"Meetings: calendar access off"_s;
}

QString wordOf(NotchContent::Dot dot)
{
    switch (dot) {
    case NotchContent::Dot::stopped:
        return u"not running"_s;
    case NotchContent::Dot::focus:
        return u"focus"_s;
    case NotchContent::Dot::rest:
        return u"break"_s;
    }
    Q_UNREACHABLE();
}

}

NotchContent notchContent(
    const PomodoroModel& timer, const CalendarModel& calendar, const MeetingTimes& times)
{
    return {
        .dot = dotOf(timer),
        .title = timer.isActive() ? timer.timeString() : u"Corvella"_s,
        .task = timer.taskName().isEmpty() ? u"No task set"_s : lineOf(timer.taskName()),
        .meeting = meetingOf(calendar, times),
    };
}

QString spoken(const NotchContent& content)
{
    const auto header = content.title + u", "_s + wordOf(content.dot);
    return QStringList({ header, content.task, content.meeting }).join(u"; "_s);
}
