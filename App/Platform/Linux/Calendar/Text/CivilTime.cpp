#include "App/Platform/Linux/Calendar/Text/CivilTime.h"

#include <algorithm>
#include <charconv>
#include <chrono>

namespace {

constexpr int longestNumber = 9; // Digits; what is longer does not fit an int.

std::chrono::year_month_day calendarDate(std::int64_t day)
{
    return std::chrono::sys_days(std::chrono::days(day));
}

bool isValid(CivilTime::Date date)
{
    return date.year > 0 && date.month >= 1 && date.month <= 12 && date.day >= 1
        && date.day <= CivilTime::daysInMonth(date.year, date.month);
}

std::optional<std::int64_t> dayOf(std::string_view text)
{
    const auto year = CivilTime::number(text.substr(0, 4));
    const auto month = CivilTime::number(text.substr(4, 2));
    const auto day = CivilTime::number(text.substr(6, 2));
    if (!year || !month || !day || !isValid({ *year, *month, *day }))
        return {};
    return CivilTime::dayNumber({ *year, *month, *day });
}

std::optional<std::int64_t> secondOfDay(std::string_view text)
{
    const auto hour = CivilTime::number(text.substr(0, 2));
    const auto minute = CivilTime::number(text.substr(2, 2));
    const auto second = CivilTime::number(text.substr(4, 2));
    if (!hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 60)
        return {};
    // Clocks that count from 1970 know no leap second.
    return (*hour * 60 + *minute) * 60 + std::min(*second, 59);
}

// Takes the sign off the text.
int sign(std::string_view& text)
{
    const bool isSigned = !text.empty() && (text.front() == '+' || text.front() == '-');
    const int sign = isSigned && text.front() == '-' ? -1 : 1;
    text.remove_prefix(isSigned ? 1 : 0);
    return sign;
}

constexpr char capital(char letter)
{
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool add(StatedLength& length, char unit, int amount, bool isTime)
{
    constexpr int minute = 60;
    constexpr int hour = 3600;
    switch (unit) {
    case 'W':
        length.days += std::int64_t { 7 } * amount;
        return !isTime;
    case 'D':
        length.days += amount;
        return !isTime;
    case 'H':
        length.seconds += std::int64_t { hour } * amount;
        return isTime;
    case 'M':
        length.seconds += std::int64_t { minute } * amount;
        return isTime;
    case 'S':
        length.seconds += amount;
        return isTime;
    default:
        return false;
    }
}

}

std::int64_t CivilTime::dayNumber(Date date)
{
    using namespace std::chrono;
    return sys_days(year(date.year) / month(static_cast<unsigned>(date.month))
        / std::chrono::day(static_cast<unsigned>(date.day)))
        .time_since_epoch()
        .count();
}

CivilTime::Date CivilTime::date(std::int64_t day)
{
    const auto date = calendarDate(day);
    return { static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
        static_cast<int>(static_cast<unsigned>(date.day())) };
}

int CivilTime::weekday(std::int64_t day)
{
    constexpr int thursday = 3; // 1970-01-01
    return static_cast<int>(((day + thursday) % 7 + 7) % 7);
}

int CivilTime::daysInMonth(int year, int month)
{
    constexpr int february = 2;
    if (month == february)
        return daysInYear(year) - 337;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

int CivilTime::daysInYear(int year)
{
    return std::chrono::year(year).is_leap() ? 366 : 365;
}

std::string_view CivilTime::trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

std::optional<int> CivilTime::number(std::string_view digits)
{
    int value = 0;
    const auto* const end = digits.data() + digits.size();
    if (digits.empty() || digits.size() > longestNumber || digits.front() == '-')
        return {};
    const auto result = std::from_chars(digits.data(), end, value);
    return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
}

std::optional<int> CivilTime::signedNumber(std::string_view text)
{
    const int factor = sign(text);
    const auto value = number(text);
    return value ? std::optional(factor * *value) : std::nullopt;
}

std::optional<StatedTime> StatedTime::parse(std::string_view text)
{
    constexpr std::size_t dateSize = 8;
    constexpr std::size_t localSize = 15;
    text = CivilTime::trimmed(text);
    const bool isDate = text.size() == dateSize;
    const bool isUtc = text.size() == localSize + 1 && (text.back() == 'Z' || text.back() == 'z');
    if (!isDate && !isUtc && text.size() != localSize)
        return {};
    const auto day = dayOf(text);
    if (!day)
        return {};
    if (isDate)
        return StatedTime { *day * CivilTime::secondsPerDay, anywhere, Kind::date };
    const auto second = secondOfDay(text.substr(dateSize + 1));
    if (!second || (text[dateSize] != 'T' && text[dateSize] != 't'))
        return {};
    return StatedTime { *day * CivilTime::secondsPerDay + *second, anywhere,
        isUtc ? Kind::utc : Kind::local };
}

std::optional<StatedLength> StatedLength::parse(std::string_view text)
{
    text = CivilTime::trimmed(text);
    const int factor = sign(text);
    if (text.empty() || capital(text.front()) != 'P')
        return {};
    text.remove_prefix(1);
    StatedLength length;
    bool isTime = false;
    while (!text.empty()) {
        if (!isTime && capital(text.front()) == 'T') {
            isTime = true;
            text.remove_prefix(1);
            continue;
        }
        const auto digits = std::min(text.find_first_not_of("0123456789"), text.size());
        const auto amount = CivilTime::number(text.substr(0, digits));
        if (!amount || digits == text.size()
            || !add(length, capital(text[digits]), *amount, isTime))
            return {};
        text.remove_prefix(digits + 1);
    }
    return StatedLength { factor * length.days, factor * length.seconds };
}

std::optional<int> parseUtcOffset(std::string_view text)
{
    text = CivilTime::trimmed(text);
    const int factor = sign(text);
    const auto hours = CivilTime::number(text.substr(0, 2));
    const auto minutes = text.size() >= 4 ? CivilTime::number(text.substr(2, 2)) : std::nullopt;
    const auto seconds = text.size() == 6 ? CivilTime::number(text.substr(4, 2)) : std::optional(0);
    const bool isFit = (text.size() == 4 || text.size() == 6) && hours && minutes && seconds
        && *hours < 24 && *minutes < 60 && *seconds < 60;
    if (!isFit)
        return {};
    return factor * ((*hours * 60 + *minutes) * 60 + *seconds);
}
