// Dates and times as iCalendar writes them, before it is known where on Earth they are meant.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace CivilTime {

constexpr std::int64_t secondsPerDay = 86'400;

struct Date {
    int year = 1970;
    int month = 1;
    int day = 1;
};

// Days since 1970-01-01.
std::int64_t dayNumber(Date date);
Date date(std::int64_t day);
// 0 on Mondays.
int weekday(std::int64_t day);
int daysInMonth(int year, int month);
int daysInYear(int year);

constexpr std::int64_t day(std::int64_t seconds)
{
    return (seconds >= 0 ? seconds : seconds - (secondsPerDay - 1)) / secondsPerDay;
}

// Without the blanks around it.
std::string_view trimmed(std::string_view text);
// Digits only, as many as there are.
std::optional<int> number(std::string_view digits);
std::optional<int> signedNumber(std::string_view text);

}

struct StatedTime {
    enum class Kind : std::uint8_t { date, local, utc };

    // Of kind date or local without a place: wherever the reader is.
    static constexpr std::uint32_t anywhere = 0;

    // 20260329, 20260329T100000 or 20260329T100000Z.
    static std::optional<StatedTime> parse(std::string_view text);

    std::int64_t day() const { return CivilTime::day(seconds); }

    std::int64_t seconds = 0; // From 1970-01-01T00:00:00 of that place's own clock.
    std::uint32_t place = anywhere; // Index of the TZID, see Places.
    Kind kind = Kind::local;
};

// P1W, P1DT2H and the like. Days are as long as the local clock makes them.
struct StatedLength {
    static std::optional<StatedLength> parse(std::string_view text);

    std::int64_t days = 0;
    std::int64_t seconds = 0;
};

// +0100 or -053000, in seconds; less than a day.
std::optional<int> parseUtcOffset(std::string_view text);
