// The occurrences of one event in the window, from all that its calendar says of it.
#pragma once

#include "App/Platform/Linux/Calendar/Text/CalendarWindow.h"
#include "App/Platform/Linux/Calendar/Text/EventRecord.h"
#include "App/Platform/Linux/Calendar/Text/Places.h"
#include "App/Platform/Linux/Calendar/Text/TimeBudget.h"

#include <functional>
#include <span>
#include <unordered_set>

struct Occurrence {
    const EventRecord& event; // Whose texts it has.
    bool isWholeDay = false;
    std::int64_t start = 0; // Seconds of UTC, as the end.
    std::int64_t end = 0;
    std::string recurrenceId = {}; // Empty where the event happens once.
};

// How times of a calendar become points of time.
struct CalendarClock {
    const Zone& zone(const StatedTime& time) const { return places.zone(time, system, lastUtc); }
    std::int64_t toUtc(const StatedTime& time) const { return zone(time).toUtc(time.seconds); }

    Places& places;
    SystemZones& system;
    std::int64_t lastUtc = 0; // No later time is asked for.
};

class EventSeries final {
public:
    using Take = std::function<void(const Occurrence&)>;

    EventSeries(const CalendarWindow& window, CalendarClock clock, Take take);

    // The records have one UID. False once there is no time left.
    bool expand(std::span<const EventRecord* const> records, const TimeBudget& budget);

private:
    // How long an occurrence lasts: days of the local clock, then seconds.
    struct Length {
        std::int64_t days = 0;
        std::int64_t seconds = 0;
    };

    // As the rules give it, before anything replaces it.
    struct Start {
        std::int64_t local = 0;
        std::int64_t utc = 0;
        const EventRecord::ExtraStart* extra = nullptr;
    };

    // Starts that a list names by their time or by their day.
    struct Named {
        std::unordered_set<std::int64_t> utc;
        std::unordered_set<std::int64_t> days;
    };

    // All occurrences from one on are replaced.
    struct Following {
        std::int64_t from = 0; // Seconds of UTC.
        std::int64_t shift = 0; // Seconds of the local clock.
        const EventRecord* event = nullptr;
    };

    void sortOut(std::span<const EventRecord* const> records);
    void sortOutReplacements(std::span<const EventRecord* const> records);
    void keepNewest();
    void expandOnce(const EventRecord& event);
    void expandRepeated(const EventRecord& event);
    void take(
        const EventRecord& event, const Start& start, const std::vector<Following>& following);
    void takeOverlapping(const Occurrence& occurrence);

    Named excluded(const EventRecord& event) const;
    // Of an event that happens once.
    bool isLeftOut(const EventRecord& event) const;
    std::vector<Start> starts(const EventRecord& event, std::int64_t longestShift) const;
    std::vector<std::int64_t> ruledStarts(
        const EventRecord& event, const std::string& rule, std::int64_t longestShift) const;
    std::vector<Following> following(const EventRecord& event) const;
    static StatedTime onClockOf(const EventRecord& event, StatedTime time);
    StatedTime replacedBy(const EventRecord& replacement) const;
    void name(Named& named, const StatedTime& time, bool isWholeDay) const;
    static bool has(const Named& named, const Start& start);

    Length length(const EventRecord& event) const;
    std::int64_t end(const EventRecord& event, std::int64_t local, std::int64_t utc) const;
    std::int64_t end(
        const EventRecord::ExtraStart& extra, const Zone& zone, std::int64_t utc) const;
    std::int64_t localTime(const EventRecord& event, const StatedTime& time) const;

    const CalendarWindow& m_window;
    CalendarClock m_clock;
    Take m_take;
    std::vector<const EventRecord*> m_events;
    std::vector<const EventRecord*> m_replacements;
    Named m_replacedDays; // For events of whole days, the other one for all others.
    Named m_replacedTimes;
};
