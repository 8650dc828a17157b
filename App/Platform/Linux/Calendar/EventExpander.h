// Turns iCalendar text into the events of a day, without ever holding up or harming this program.
#pragma once

#include "App/Platform/EventStore.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

#include <functional>
#include <optional>

class EventExpander {
public:
    struct Request {
        // Those that overlap [start, end); local time is that of this process.
        Moment start = {};
        Moment end = {};
        // Begins the identifiers, so that they differ between calendars.
        QString source = {};
        // Paths of files, and of folders that are read with their folders, for *.ics.
        QStringList paths = {};
        // Whole VCALENDAR, VEVENT and VTIMEZONE components, one after the other.
        QByteArray text = {};
    };

    struct Result {
        QList<CalendarEvent> events; // Ordered by start, then identifier.
        QStringList unknownZones; // TZIDs that no component and no zone of the system explains.
        bool isComplete = true; // False where the work took too long, or found too many.
    };

    virtual ~EventExpander() = default;

    // Answers later, absent when the work failed as a whole, and not at all once the context is
    // gone.
    virtual void expand(const Request& request, QObject* context,
        const std::function<void(const std::optional<Result>&)>& answer)
        = 0;
};
