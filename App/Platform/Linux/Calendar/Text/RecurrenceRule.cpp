#include "App/Platform/Linux/Calendar/Text/RecurrenceRule.h"

#include "App/Platform/Linux/Calendar/Text/Split.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int secondsPerHour = 3600;
constexpr std::int64_t hoursPerDay = 24;
// A rule that names more times of a day is no appointment.
constexpr std::size_t mostTimesOfDay = 48;
// Days that are tried to count up to those asked for: some 130 years.
constexpr std::int64_t mostDays = 50'000;
constexpr std::size_t mostStarts = 2'000;

template <typename Visit>
void eachNumber(std::string_view list, Visit visit)
{
    split(list, ',', [&](std::string_view text) {
        if (const auto number = CivilTime::signedNumber(text))
            visit(*number);
    });
}

template <typename Visit>
void eachPart(std::string_view rule, Visit visit)
{
    split(CivilTime::trimmed(rule), ';', [&](std::string_view part) {
        const auto equalSign = part.find('=');
        if (equalSign != std::string_view::npos)
            visit(part.substr(0, equalSign), part.substr(equalSign + 1));
    });
}

template <std::size_t Size>
void addNumbers(std::bitset<Size>& set, std::string_view list, int first = 0)
{
    eachNumber(list, [&](int number) {
        if (number >= first && number < first + static_cast<int>(Size))
            set.set(static_cast<std::size_t>(number - first));
    });
}

std::optional<int> weekdayNamed(std::string_view name)
{
    constexpr std::array<std::string_view, 7> names { "MO", "TU", "WE", "TH", "FR", "SA", "SU" };
    const auto* const found = std::ranges::find(names, name);
    return found == names.end() ? std::nullopt
                                : std::optional(static_cast<int>(found - names.begin()));
}

std::size_t listSize(std::string_view list)
{
    return 1 + static_cast<std::size_t>(std::ranges::count(list, ','));
}

constexpr std::int64_t floorDivision(std::int64_t number, std::int64_t divisor)
{
    return (number >= 0 ? number : number - (divisor - 1)) / divisor;
}

std::int64_t monthStart(std::int64_t month)
{
    const auto year = floorDivision(month, 12);
    return CivilTime::dayNumber(
        { static_cast<int>(year), static_cast<int>(month - year * 12) + 1, 1 });
}

int dayOfYear(std::int64_t day, CivilTime::Date date)
{
    return static_cast<int>(day - CivilTime::dayNumber({ date.year, 1, 1 }));
}

}

RecurrenceRule::Part RecurrenceRule::part(std::string_view name)
{
    constexpr std::array<std::string_view, 14> names { "FREQ", "INTERVAL", "COUNT", "UNTIL", "WKST",
        "BYMONTH", "BYWEEKNO", "BYYEARDAY", "BYMONTHDAY", "BYDAY", "BYHOUR", "BYMINUTE", "BYSECOND",
        "BYSETPOS" };
    static_assert(names.size() == static_cast<std::size_t>(Part::other));
    return static_cast<Part>(std::ranges::find(names, name) - names.begin());
}

std::optional<RecurrenceRule::Frequency> RecurrenceRule::frequency(std::string_view name)
{
    constexpr std::array<std::string_view, 5> names { "HOURLY", "DAILY", "WEEKLY", "MONTHLY",
        "YEARLY" };
    const auto* const found = std::ranges::find(names, name);
    return found == names.end() ? std::nullopt
                                : std::optional(static_cast<Frequency>(found - names.begin()));
}

bool RecurrenceRule::isRefused(std::string_view text)
{
    bool isRefused = false;
    std::size_t timesOfDay = 1;
    eachPart(text, [&](std::string_view name, std::string_view value) {
        const auto known = part(name);
        isRefused = isRefused || name == "RSCALE"
            || (known == Part::frequency && (value == "SECONDLY" || value == "MINUTELY"));
        if (known == Part::hours || known == Part::minutes || known == Part::seconds)
            timesOfDay *= std::min(listSize(value), mostTimesOfDay + 1);
    });
    return isRefused || timesOfDay > mostTimesOfDay;
}

std::optional<RecurrenceRule> RecurrenceRule::parse(std::string_view text, std::int64_t first)
{
    RecurrenceRule rule;
    bool hasFrequency = false;
    eachPart(text, [&](std::string_view name, std::string_view value) {
        const auto known = part(name);
        hasFrequency = hasFrequency || (known == Part::frequency && frequency(value));
        rule.m_hasLimits = rule.m_hasLimits
            || (known >= Part::months && known != Part::days && known < Part::other);
        rule.set(known, value);
    });
    if (!hasFrequency || isRefused(text))
        return {};
    rule.completeFrom(first);
    return rule;
}

void RecurrenceRule::set(Part part, std::string_view value)
{
    switch (part) {
    case Part::frequency:
        m_frequency = frequency(value).value_or(m_frequency);
        break;
    case Part::interval:
        m_interval = std::max(CivilTime::number(value).value_or(1), 1);
        break;
    case Part::count:
        m_count = CivilTime::number(value).value_or(0);
        break;
    case Part::until:
        m_until = StatedTime::parse(value);
        break;
    case Part::weekStart:
        m_weekStart = weekdayNamed(value).value_or(0);
        break;
    case Part::months:
        addNumbers(m_months, value, 1);
        break;
    case Part::weeks:
        eachNumber(value, [&](int week) { m_weeks.add(week); });
        break;
    case Part::yearDays:
        eachNumber(value, [&](int day) { m_yearDays.add(day); });
        break;
    case Part::monthDays:
        eachNumber(value, [&](int day) { m_monthDays.add(day); });
        break;
    case Part::days:
        split(value, ',', [&](std::string_view day) { addWeekday(day); });
        break;
    case Part::hours:
        addNumbers(m_hours, value);
        break;
    case Part::minutes:
        addNumbers(m_minutes, value);
        break;
    case Part::seconds:
        addNumbers(m_seconds, value);
        break;
    case Part::positions:
        eachNumber(value, [&](int position) { m_positions.add(position); });
        break;
    case Part::other:
        break;
    }
}

void RecurrenceRule::addWeekday(std::string_view text)
{
    constexpr std::size_t nameSize = 2;
    if (text.size() < nameSize)
        return;
    const auto weekday = weekdayNamed(text.substr(text.size() - nameSize));
    if (!weekday)
        return;
    const auto index = static_cast<std::size_t>(*weekday);
    if (text.size() == nameSize) {
        m_weekdays.set(index);
    } else if (const auto place = CivilTime::signedNumber(text.substr(0, text.size() - nameSize))) {
        m_numberedWeekdays[index].add(*place);
        m_hasNumberedWeekdays = true;
    }
}

void RecurrenceRule::completeFrom(std::int64_t first)
{
    m_first = first;
    const auto day = CivilTime::day(first);
    const auto date = CivilTime::date(day);
    const auto weekday = static_cast<std::size_t>(CivilTime::weekday(day));
    const bool namesDays = m_yearDays.isGiven() || m_monthDays.isGiven() || m_weekdays.any()
        || m_hasNumberedWeekdays;
    if (m_frequency == Frequency::weekly || m_weeks.isGiven()) {
        if (!namesDays)
            m_weekdays.set(weekday);
    } else if (!namesDays
        && (m_frequency == Frequency::yearly || m_frequency == Frequency::monthly)) {
        m_monthDays.add(date.day);
        if (m_frequency == Frequency::yearly && m_months.none())
            m_months.set(static_cast<std::size_t>(date.month - 1));
    }
    const auto second = first - day * CivilTime::secondsPerDay;
    if (m_hours.none() && m_frequency != Frequency::hourly)
        m_hours.set(static_cast<std::size_t>(second / secondsPerHour));
    if (m_minutes.none())
        m_minutes.set(static_cast<std::size_t>(second / 60 % 60));
    if (m_seconds.none())
        m_seconds.set(static_cast<std::size_t>(second % 60));
}

std::vector<std::int64_t> RecurrenceRule::starts(Range range) const
{
    std::vector<std::int64_t> found;
    if (m_first >= range.from && m_first <= range.to)
        found.push_back(m_first);
    const auto firstPeriod = period(m_first);
    const auto lastPeriod = period(range.to);
    const auto skipped = std::max<std::int64_t>(period(range.from) - firstPeriod, 0);
    const bool countsAll = m_count > 0 && !isEven();
    // Where starts are counted, the one before the range in its own period is among them.
    const Days limit { CivilTime::day(m_count > 0 ? m_first : range.from),
        CivilTime::day(range.to) };
    // The first has been counted.
    std::int64_t turn = countsAll ? 0 : (skipped + m_interval - 1) / m_interval;
    std::int64_t number = std::max<std::int64_t>(turn, 1);
    std::int64_t daysLeft = mostDays;
    for (;; ++turn) {
        const auto current = firstPeriod + turn * m_interval;
        if (current > lastPeriod || daysLeft < 0 || found.size() >= mostStarts)
            return found;
        const auto span = days(current);
        daysLeft -= span.to - span.from + 1;
        for (const auto start : startsIn(current, limit)) {
            if (start <= m_first)
                continue;
            if (m_count > 0 && ++number > m_count)
                return found;
            if (start >= range.from && start <= range.to)
                found.push_back(start);
        }
    }
}

bool RecurrenceRule::isDear() const
{
    constexpr std::size_t mostCheapTimes = 4; // Of a day.
    const auto times = m_hours.count() * m_minutes.count() * m_seconds.count();
    return (m_count > 0 && !isEven()) || (m_positions.isGiven() && times > mostCheapTimes);
}

// One start in each period, like the first, so that they need not be counted one by one.
bool RecurrenceRule::isEven() const
{
    if (m_frequency > Frequency::weekly || m_hasLimits)
        return false;
    const auto weekday = static_cast<std::size_t>(CivilTime::weekday(CivilTime::day(m_first)));
    const bool isOnItsWeekday = m_weekdays.count() == 1 && m_weekdays.test(weekday);
    return m_weekdays.none() || (m_frequency == Frequency::weekly && isOnItsWeekday);
}

std::int64_t RecurrenceRule::period(std::int64_t seconds) const
{
    const auto day = CivilTime::day(seconds);
    const auto date = CivilTime::date(day);
    switch (m_frequency) {
    case Frequency::hourly:
        return floorDivision(seconds, secondsPerHour);
    case Frequency::daily:
        return day;
    case Frequency::weekly:
        // The week of 1970-01-01 began on Monday, 1969-12-29.
        return floorDivision(day + 3 - m_weekStart, 7);
    case Frequency::monthly:
        return std::int64_t { date.year } * 12 + date.month - 1;
    case Frequency::yearly:
        return date.year;
    }
    return 0;
}

RecurrenceRule::Days RecurrenceRule::days(std::int64_t period) const
{
    switch (m_frequency) {
    case Frequency::hourly: {
        const auto day = floorDivision(period, hoursPerDay);
        return { day, day };
    }
    case Frequency::daily:
        return { period, period };
    case Frequency::weekly: {
        const auto from = period * 7 - 3 + m_weekStart;
        return { from, from + 6 };
    }
    case Frequency::monthly:
        return { monthStart(period), monthStart(period + 1) - 1 };
    case Frequency::yearly:
        return { monthStart(period * 12), monthStart((period + 1) * 12) - 1 };
    }
    return {};
}

bool RecurrenceRule::matchesMonth(CivilTime::Date date) const
{
    return m_months.none() || m_months.test(static_cast<std::size_t>(date.month - 1));
}

bool RecurrenceRule::matches(std::int64_t day, CivilTime::Date date) const
{
    if (m_monthDays.isGiven()
        && !m_monthDays.has(date.day - 1, CivilTime::daysInMonth(date.year, date.month)))
        return false;
    if (m_yearDays.isGiven()
        && !m_yearDays.has(dayOfYear(day, date), CivilTime::daysInYear(date.year)))
        return false;
    return (!m_weeks.isGiven() || matchesWeek(day)) && matchesWeekday(day, date);
}

bool RecurrenceRule::matchesWeekday(std::int64_t day, CivilTime::Date date) const
{
    const auto weekday = static_cast<std::size_t>(CivilTime::weekday(day));
    if (m_weekdays.none() && !m_hasNumberedWeekdays)
        return true;
    if (m_weekdays.test(weekday))
        return true;
    const auto& places = m_numberedWeekdays[weekday];
    if (!places.isGiven())
        return false;
    const bool isYearly = m_frequency == Frequency::yearly && !m_weeks.isGiven();
    // Where numbers mean nothing, the day alone counts.
    if (!isYearly && m_frequency != Frequency::monthly)
        return true;
    const bool isWithinYear = isYearly && m_months.none();
    const int place = isWithinYear ? dayOfYear(day, date) : date.day - 1;
    const int length = isWithinYear ? CivilTime::daysInYear(date.year)
                                    : CivilTime::daysInMonth(date.year, date.month);
    return places.has(place / 7, place / 7 + (length - 1 - place) / 7 + 1);
}

// A week belongs to the year that has most of its days.
bool RecurrenceRule::matchesWeek(std::int64_t day) const
{
    const auto midweek = day - (CivilTime::weekday(day) - m_weekStart + 7) % 7 + 3;
    const auto date = CivilTime::date(midweek);
    const int place = dayOfYear(midweek, date);
    return m_weeks.has(
        place / 7, place / 7 + (CivilTime::daysInYear(date.year) - 1 - place) / 7 + 1);
}

std::vector<std::int64_t> RecurrenceRule::startsIn(std::int64_t period, Days limit) const
{
    std::vector<std::int64_t> starts;
    auto span = days(period);
    // The last of a month is only known with the others.
    if (!m_positions.isGiven())
        span = { std::max(span.from, limit.from), std::min(span.to, limit.to) };
    for (auto day = span.from; day <= span.to; ++day) {
        const auto date = CivilTime::date(day);
        if (!matchesMonth(date))
            day += CivilTime::daysInMonth(date.year, date.month) - date.day;
        else if (matches(day, date))
            addTimes(day, period, starts);
    }
    if (m_positions.isGiven())
        keepPositions(starts);
    return starts;
}

void RecurrenceRule::addTimes(
    std::int64_t day, std::int64_t period, std::vector<std::int64_t>& starts) const
{
    const auto addHour = [&](std::int64_t hour) {
        if (m_hours.any() && !m_hours.test(static_cast<std::size_t>(hour)))
            return;
        const auto start = day * CivilTime::secondsPerDay + hour * secondsPerHour;
        for (std::size_t minute = 0; minute < m_minutes.size(); ++minute) {
            if (m_minutes.test(minute))
                addSeconds(start + static_cast<std::int64_t>(minute) * 60, starts);
        }
    };
    if (m_frequency == Frequency::hourly) {
        addHour(period - day * hoursPerDay);
        return;
    }
    for (std::int64_t hour = 0; hour < hoursPerDay; ++hour)
        addHour(hour);
}

void RecurrenceRule::addSeconds(std::int64_t minute, std::vector<std::int64_t>& starts) const
{
    for (std::size_t second = 0; second < m_seconds.size(); ++second) {
        if (m_seconds.test(second))
            starts.push_back(minute + static_cast<std::int64_t>(second));
    }
}

void RecurrenceRule::keepPositions(std::vector<std::int64_t>& starts) const
{
    constexpr std::size_t mostPlaces = 366;
    std::vector<std::int64_t> kept;
    const auto count = starts.size();
    for (std::size_t i = 0; i < count; ++i) {
        const bool isForward = i < mostPlaces && m_positions.forward.test(i);
        const bool isBackward
            = count - 1 - i < mostPlaces && m_positions.backward.test(count - 1 - i);
        if (isForward || isBackward)
            kept.push_back(starts[i]);
    }
    starts = std::move(kept);
}
