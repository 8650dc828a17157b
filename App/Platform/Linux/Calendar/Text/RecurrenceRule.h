// When an event happens again. Only the days around those asked for are looked at, so that neither
// an old rule nor one that never comes true takes long.
#pragma once

#include "App/Platform/Linux/Calendar/Text/CivilTime.h"

#include <array>
#include <bitset>
#include <string_view>
#include <vector>

class RecurrenceRule final {
public:
    // Both included; seconds of the event's own clock, as all times here.
    struct Range {
        std::int64_t from = 0;
        std::int64_t to = 0;
    };

    // Whether the rule may be meant to do harm, or follows no calendar known here.
    static bool isRefused(std::string_view text);
    // What stands outside a part's range is left out. Absent without a known frequency.
    static std::optional<RecurrenceRule> parse(std::string_view text, std::int64_t first);

    // Ordered. The first itself counts, and is in it where it is in range. UNTIL is left to the
    // caller, who knows where the event's clock stands.
    std::vector<std::int64_t> starts(Range range) const;

    std::optional<StatedTime> until() const { return m_until; }
    // Counted from the first, one by one, or picked from many.
    bool isDear() const;
    bool isYearly() const { return m_frequency == Frequency::yearly; }

private:
    enum class Frequency { hourly, daily, weekly, monthly, yearly };
    enum class Part {
        frequency,
        interval,
        count,
        until,
        weekStart,
        months,
        weeks,
        yearDays,
        monthDays,
        days,
        hours,
        minutes,
        seconds,
        positions,
        other,
    };

    // Counted from both ends: 1 is the first, -1 the last.
    template <std::size_t Size>
    struct Places {
        bool isGiven() const { return forward.any() || backward.any(); }
        void add(int place)
        {
            if (place > 0 && place <= static_cast<int>(Size))
                forward.set(static_cast<std::size_t>(place - 1));
            else if (place < 0 && -place <= static_cast<int>(Size))
                backward.set(static_cast<std::size_t>(-place - 1));
        }
        // The place is counted from 0, among that many.
        bool has(int place, int count) const
        {
            return forward.test(static_cast<std::size_t>(place))
                || backward.test(static_cast<std::size_t>(count - 1 - place));
        }

        std::bitset<Size> forward;
        std::bitset<Size> backward;
    };

    struct Days {
        std::int64_t from = 0;
        std::int64_t to = 0;
    };

    static Part part(std::string_view name);
    static std::optional<Frequency> frequency(std::string_view name);

    void set(Part part, std::string_view value);
    void addWeekday(std::string_view text);
    void completeFrom(std::int64_t first);

    bool isEven() const;
    std::int64_t period(std::int64_t seconds) const;
    Days days(std::int64_t period) const;
    bool matchesMonth(CivilTime::Date date) const;
    bool matches(std::int64_t day, CivilTime::Date date) const;
    bool matchesWeekday(std::int64_t day, CivilTime::Date date) const;
    bool matchesWeek(std::int64_t day) const;
    std::vector<std::int64_t> startsIn(std::int64_t period, Days limit) const;
    void addTimes(std::int64_t day, std::int64_t period, std::vector<std::int64_t>& starts) const;
    void addSeconds(std::int64_t minute, std::vector<std::int64_t>& starts) const;
    void keepPositions(std::vector<std::int64_t>& starts) const;

    Frequency m_frequency = Frequency::daily;
    std::int64_t m_first = 0;
    int m_interval = 1;
    int m_count = 0; // None where 0.
    int m_weekStart = 0;
    bool m_hasLimits = false; // Other than by weekday.
    std::optional<StatedTime> m_until;
    std::bitset<12> m_months;
    Places<53> m_weeks;
    Places<366> m_yearDays;
    Places<31> m_monthDays;
    std::bitset<7> m_weekdays;
    std::array<Places<53>, 7> m_numberedWeekdays;
    bool m_hasNumberedWeekdays = false;
    std::bitset<24> m_hours;
    std::bitset<60> m_minutes;
    std::bitset<60> m_seconds;
    Places<366> m_positions;
};
