// Today's events, kept fresh, and which of them is next.
#pragma once

#include "App/Core/Model.h"
#include "App/Meetings/MeetingEvent.h"
#include "App/Platform/EventStore.h"

#include <QList>

class Clock;
class Ticker;

class CalendarModel final : public Model {
    Q_OBJECT

public:
    // The ticker every minute, midnight at the end of each day.
    CalendarModel(EventStore& store, Clock& clock, Ticker& timer, Ticker& midnight);
    static CalendarModel& shared(); // Defined in App/Wiring.cpp.

    const QList<MeetingEvent>& events() const { return m_events; } // Ordered by their start.
    bool denied() const { return m_denied; }
    bool authorized() const { return m_authorized; } // Neither before access was asked for.
    // The first that is not over yet and does not last all day; null when there is none. Valid
    // until the events change.
    const MeetingEvent* next() const;
    bool isOver(const MeetingEvent& event) const;
    QTimeZone zone() const; // Whose day today is.

    // Asks the user; handle() takes the answer.
    void requestAccess();
    // Finds out whether access was granted or refused elsewhere; no change before it was asked for.
    void checkAuthorization();
    void handle(bool granted);
    void refresh();

private:
    void watch();
    QList<MeetingEvent> mapped(const QList<CalendarEvent>& found) const;

    EventStore& m_store;
    Clock& m_clock;
    Ticker& m_timer;
    Ticker& m_midnight;
    bool m_isWatching = false;

    QList<CalendarEvent> m_found; // What the events were made of.
    QList<MeetingEvent> m_events;
    bool m_denied = false;
    bool m_authorized = false;
};
