// The last good events of a calendar, until there are better ones.
#pragma once

#include "App/Platform/Linux/Calendar/CalendarSource.h"
#include "App/Platform/Linux/Calendar/EventExpander.h"
#include "App/Platform/Linux/Calendar/Retry.h"

#include <QList>

#include <algorithm>
#include <chrono>
#include <optional>

class KeptEvents final {
public:
    const QList<CalendarEvent>& events() const { return m_events; }

    // Whether others are kept now. A reading that is not complete is tried again; it counts only
    // where no complete one of the span is known, or once nothing more is tried.
    bool take(const EventExpander::Result& result, const TimeSpan& span, Retry& retry);

    // What changes all the time, as a calendar that is being filled, leaves most of the time to
    // others: how long to wait after a reading that took so long.
    static std::chrono::milliseconds pauseAfter(std::chrono::milliseconds taken)
    {
        using namespace std::chrono_literals;
        return std::clamp(
            3 * taken, std::chrono::milliseconds(200ms), std::chrono::milliseconds(30'000ms));
    }

private:
    QList<CalendarEvent> m_events;
    std::optional<TimeSpan> m_known; // The last one of which all was read.
};
