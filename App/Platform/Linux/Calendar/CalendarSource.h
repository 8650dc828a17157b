// Where some of the user's calendars come from.
#pragma once

#include "App/Platform/EventStore.h"

#include <QList>
#include <QObject>

#include <functional>

struct TimeSpan {
    Moment start;
    Moment end;

    friend bool operator==(const TimeSpan&, const TimeSpan&) = default;
};

class CalendarSource : public QObject {
    Q_OBJECT

public:
    // Finds out whether this program may look here at all, without looking. Answers at once or
    // within a few seconds, unless the context is gone by then.
    virtual void checkAccess(QObject* context, const std::function<void(bool)>& answer) = 0;
    // Looks for events that overlap the span, and again whenever there are others. The first time
    // may start services.
    virtual void look(const TimeSpan& span) = 0;
    // The last known ones of each calendar, by calendar, then start, then identifier. Such of an
    // earlier span may be among them.
    virtual QList<CalendarEvent> events() const = 0;

Q_SIGNALS:
    // Only after looking, and only when the events are others than before.
    void changed();
};
