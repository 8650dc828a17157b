// The time that is asked for.
#pragma once

#include "App/Platform/Linux/Calendar/Text/CivilTime.h"

#include <algorithm>

struct CalendarWindow {
    // Clocks on Earth are within a day of each other, and custom zones within another.
    static constexpr std::int64_t margin = 2 * CivilTime::secondsPerDay;
    // One occurrence of a repeated event does not last longer.
    static constexpr std::int64_t longestOccurrence = 366 * CivilTime::secondsPerDay;

    // A change from an occurrence on moves what follows by no more than that.
    static constexpr std::int64_t longestShift = 62 * CivilTime::secondsPerDay;

    // Whether [from, to) may overlap, wherever the times are meant.
    bool isNear(std::int64_t from, std::int64_t to) const
    {
        return from <= end + margin && std::max(from, to) >= start - margin;
    }

    // Whether an occurrence that starts then may overlap, even after it has been moved.
    bool mayReach(const StatedTime& time) const
    {
        return isNear(time.seconds - longestShift, time.seconds + longestOccurrence + longestShift);
    }

    // Seconds of UTC.
    std::int64_t start = 0;
    std::int64_t end = 0;
};
