// One calendar event of today, with the link to its online meeting.
#pragma once

#include "App/Platform/Clock.h"

#include <QString>

#include <optional>

struct CalendarEvent;

struct MeetingEvent {
    explicit MeetingEvent(const CalendarEvent& event);

    bool isOver(Moment now) const { return end < now; }

    QString id; // A random UUID where the calendar gives none.
    QString title; // "Untitled" where the calendar gives none.
    Moment start;
    Moment end;
    bool allDay;
    std::optional<QString> link; // As it stands in the event's texts.
    std::optional<QString> service; // "Zoom", "Meet" or "Teams"; absent without a link.
};
