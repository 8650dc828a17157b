#include "App/Platform/Linux/Calendar/Text/EventSeries.h"

#include "App/Platform/Linux/Calendar/Text/RecurrenceRule.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <utility>

namespace {

// Of changes from an occurrence on; a calendar has few for one event.
constexpr std::size_t mostFollowing = 100;

bool isWholeDay(const EventRecord& event)
{
    return event.start.kind == StatedTime::Kind::date;
}

bool isWithin(const StatedTime& until, std::int64_t local, std::int64_t utc, bool isWholeDay)
{
    // Midnight in UTC stands for the day itself where only days count.
    const bool isDay = isWholeDay && until.seconds % CivilTime::secondsPerDay == 0;
    if (until.kind == StatedTime::Kind::date || isDay)
        return CivilTime::day(local) <= until.day();
    return (until.kind == StatedTime::Kind::utc ? utc : local) <= until.seconds;
}

std::string stamp(std::int64_t seconds, bool isDay)
{
    const auto date = CivilTime::date(CivilTime::day(seconds));
    const auto second
        = static_cast<int>(seconds - CivilTime::day(seconds) * CivilTime::secondsPerDay);
    std::array<char, 48> text {};
    std::snprintf(text.data(), text.size(), isDay ? "%04d%02d%02d" : "%04d%02d%02dT%02d%02d%02dZ",
        date.year, date.month, date.day, second / 3600, second / 60 % 60, second % 60);
    return text.data();
}

bool isSame(const StatedTime& one, const StatedTime& other)
{
    return one.seconds == other.seconds && one.kind == other.kind && one.place == other.place;
}

// Of neighbours that are the same the first stays.
template <typename T, typename IsSame>
void eraseRepeated(std::vector<T>& list, IsSame isSame)
{
    list.erase(std::unique(list.begin(), list.end(), isSame), list.end());
}

}

EventSeries::EventSeries(const CalendarWindow& window, CalendarClock clock, Take take)
    : m_window(window)
    , m_clock(clock)
    , m_take(std::move(take))
{
}

bool EventSeries::expand(std::span<const EventRecord* const> records, const TimeBudget& budget)
{
    sortOut(records);
    for (const auto* event : m_events) {
        if (budget.isSpent())
            return false;
        if (event->repeats())
            expandRepeated(*event);
        else if (!isLeftOut(*event))
            expandOnce(*event);
    }
    for (const auto* replacement : m_replacements) {
        if (!replacement->replacesFollowing || m_events.empty())
            expandOnce(*replacement);
    }
    return true;
}

void EventSeries::sortOut(std::span<const EventRecord* const> records)
{
    m_events.clear();
    for (const auto* record : records) {
        if (!record->replaces)
            m_events.push_back(record);
    }
    if (m_events.size() > 1)
        keepNewest();
    m_replacements.clear();
    m_replacedDays = {};
    m_replacedTimes = {};
    if (m_events.size() < records.size())
        sortOutReplacements(records);
}

// Of several records for the same thing the newest counts, and the last of equally new ones.
void EventSeries::keepNewest()
{
    const auto newest = std::ranges::max(m_events, {}, &EventRecord::sequence)->sequence;
    std::erase_if(m_events, [&](const EventRecord* event) { return event->sequence < newest; });
    std::ranges::reverse(m_events);
    std::ranges::stable_sort(
        m_events, {}, [](const EventRecord* event) { return event->start.seconds; });
    eraseRepeated(m_events, [](const EventRecord* one, const EventRecord* other) {
        return isSame(one->start, other->start);
    });
}

void EventSeries::sortOutReplacements(std::span<const EventRecord* const> records)
{
    std::map<std::pair<std::int64_t, bool>, const EventRecord*> newest;
    std::size_t following = 0;
    for (const auto* record : records) {
        if (!record->replaces)
            continue;
        auto& known = newest[{ m_clock.toUtc(replacedBy(*record)), record->replacesFollowing }];
        if (!known || record->sequence >= known->sequence)
            known = record;
    }
    for (const auto& [start, record] : newest) {
        following += record->replacesFollowing ? 1 : 0;
        if (record->replacesFollowing && following > mostFollowing)
            continue;
        m_replacements.push_back(record);
        if (record->replacesFollowing)
            continue;
        name(m_replacedDays, replacedBy(*record), true);
        name(m_replacedTimes, replacedBy(*record), false);
    }
}

void EventSeries::expandOnce(const EventRecord& event)
{
    const auto start = m_clock.toUtc(event.start);
    std::string id;
    if (event.replaces) {
        const auto replaced = replacedBy(event);
        const bool isDay = replaced.kind == StatedTime::Kind::date;
        id = stamp(isDay ? replaced.seconds : m_clock.toUtc(replaced), isDay);
    }
    takeOverlapping(
        { event, isWholeDay(event), start, end(event, event.start.seconds, start), std::move(id) });
}

EventSeries::Named EventSeries::excluded(const EventRecord& event) const
{
    Named excluded;
    for (const auto& exception : event.exceptions)
        name(excluded, onClockOf(event, exception), isWholeDay(event));
    return excluded;
}

bool EventSeries::isLeftOut(const EventRecord& event) const
{
    const Start start { event.start.seconds, m_clock.toUtc(event.start) };
    const auto& replaced = isWholeDay(event) ? m_replacedDays : m_replacedTimes;
    return has(replaced, start) || (!event.exceptions.empty() && has(excluded(event), start));
}

void EventSeries::expandRepeated(const EventRecord& event)
{
    const auto changes = following(event);
    std::int64_t shift = 0;
    for (const auto& change : changes)
        shift = std::max(shift, std::min(std::abs(change.shift), CalendarWindow::longestShift));
    const auto exceptions = excluded(event);
    const auto& replaced = isWholeDay(event) ? m_replacedDays : m_replacedTimes;
    for (const auto& start : starts(event, shift)) {
        if (!has(exceptions, start) && !has(replaced, start))
            take(event, start, changes);
    }
}

void EventSeries::take(
    const EventRecord& event, const Start& start, const std::vector<Following>& following)
{
    const auto id = stamp(isWholeDay(event) ? start.local : start.utc, isWholeDay(event));
    const auto& zone = m_clock.zone(event.start);
    const auto next = std::ranges::upper_bound(following, start.utc, {}, &Following::from);
    if (next != following.begin()) {
        const auto& change = *std::prev(next);
        const auto local = start.local + change.shift;
        const auto utc = zone.toUtc(local);
        takeOverlapping(
            { *change.event, isWholeDay(event), utc, end(*change.event, local, utc), id });
        return;
    }
    const bool hasOwnEnd = start.extra && (start.extra->end || start.extra->length);
    takeOverlapping({ event, isWholeDay(event), start.utc,
        hasOwnEnd ? end(*start.extra, zone, start.utc) : end(event, start.local, start.utc), id });
}

void EventSeries::takeOverlapping(const Occurrence& occurrence)
{
    const bool isInstant = occurrence.start == occurrence.end;
    const bool reachesIn
        = isInstant ? occurrence.start >= m_window.start : occurrence.end > m_window.start;
    if (occurrence.start < m_window.end && reachesIn)
        m_take(occurrence);
}

std::vector<EventSeries::Start> EventSeries::starts(
    const EventRecord& event, std::int64_t shift) const
{
    const auto& zone = m_clock.zone(event.start);
    std::vector<Start> starts;
    for (const auto& extra : event.extraStarts) {
        // A day alone means the usual time on it.
        const auto timeOfDay = event.start.seconds - event.start.day() * CivilTime::secondsPerDay;
        const auto local = extra.start.kind == StatedTime::Kind::date
            ? extra.start.seconds + timeOfDay
            : localTime(event, extra.start);
        // The later of two equal hours is only told in UTC.
        const bool isInstant = extra.start.kind == StatedTime::Kind::utc && !isWholeDay(event);
        starts.push_back({ local, isInstant ? extra.start.seconds : zone.toUtc(local), &extra });
    }
    starts.push_back({ event.start.seconds, zone.toUtc(event.start.seconds) });
    for (const auto& rule : event.rules) {
        for (const auto local : ruledStarts(event, rule, shift))
            starts.push_back({ local, zone.toUtc(local) });
    }
    for (const auto& rule : event.exceptionRules) {
        const auto excluded = ruledStarts(event, rule, shift);
        std::erase_if(starts,
            [&](const Start& start) { return std::ranges::binary_search(excluded, start.local); });
    }
    std::ranges::stable_sort(starts, {}, &Start::utc);
    eraseRepeated(
        starts, [](const Start& one, const Start& other) { return one.utc == other.utc; });
    return starts;
}

std::vector<std::int64_t> EventSeries::ruledStarts(
    const EventRecord& event, const std::string& text, std::int64_t shift) const
{
    const auto rule = RecurrenceRule::parse(text, event.start.seconds);
    if (!rule)
        return {};
    const auto lasts = length(event);
    const auto reach = std::min(
        lasts.days * CivilTime::secondsPerDay + lasts.seconds, CalendarWindow::longestOccurrence);
    auto starts = rule->starts({ m_window.start - reach - CalendarWindow::margin - shift,
        m_window.end + CalendarWindow::margin + shift });
    const auto until = rule->until();
    const auto& zone = m_clock.zone(event.start);
    std::erase_if(starts, [&](std::int64_t local) {
        return until && !isWithin(*until, local, zone.toUtc(local), isWholeDay(event));
    });
    return starts;
}

std::vector<EventSeries::Following> EventSeries::following(const EventRecord& event) const
{
    std::vector<Following> changes;
    const auto& zone = m_clock.zone(event.start);
    for (const auto* replacement : m_replacements) {
        if (!replacement->replacesFollowing)
            continue;
        const auto replaced = localTime(event, replacedBy(*replacement));
        changes.push_back(
            { zone.toUtc(replaced), localTime(event, replacement->start) - replaced, replacement });
    }
    std::ranges::stable_sort(changes, {}, &Following::from);
    return changes;
}

// Without a zone of its own, a time of a series is read off the clock of the series.
StatedTime EventSeries::onClockOf(const EventRecord& event, StatedTime time)
{
    const auto local = StatedTime::Kind::local;
    const bool isBare = time.kind == local && time.place == StatedTime::anywhere;
    if (isBare && event.start.kind == local)
        time.place = event.start.place;
    return time;
}

StatedTime EventSeries::replacedBy(const EventRecord& replacement) const
{
    const auto& replaced = *replacement.replaces;
    return m_events.empty() ? replaced : onClockOf(*m_events.front(), replaced);
}

void EventSeries::name(Named& named, const StatedTime& time, bool isWholeDay) const
{
    if (isWholeDay || time.kind == StatedTime::Kind::date)
        named.days.insert(time.day());
    else
        named.utc.insert(m_clock.toUtc(time));
}

bool EventSeries::has(const Named& named, const Start& start)
{
    return named.utc.contains(start.utc) || named.days.contains(CivilTime::day(start.local));
}

EventSeries::Length EventSeries::length(const EventRecord& event) const
{
    constexpr auto day = CivilTime::secondsPerDay;
    const auto stated = event.length.value_or(StatedLength { isWholeDay(event) ? 1 : 0, 0 });
    if (isWholeDay(event)) {
        const auto days = event.end ? event.end->day() - event.start.day()
                                    : stated.days + (stated.seconds + day - 1) / day;
        return { std::max<std::int64_t>(days, 1), 0 };
    }
    if (event.end) {
        const auto& zone = event.end->kind == StatedTime::Kind::date ? m_clock.zone(event.start)
                                                                     : m_clock.zone(*event.end);
        const auto seconds = zone.toUtc(event.end->seconds) - m_clock.toUtc(event.start);
        return { 0, std::max<std::int64_t>(seconds, 0) };
    }
    return stated.days < 0 || stated.seconds < 0 ? Length()
                                                 : Length { stated.days, stated.seconds };
}

std::int64_t EventSeries::end(const EventRecord& event, std::int64_t local, std::int64_t utc) const
{
    const auto lasts = length(event);
    // Hours pass as they do, days as the clock says.
    const auto& zone = m_clock.zone(event.start);
    const auto wholeDays
        = lasts.days == 0 ? utc : zone.toUtc(local + lasts.days * CivilTime::secondsPerDay);
    return std::max(wholeDays, utc) + lasts.seconds;
}

std::int64_t EventSeries::end(
    const EventRecord::ExtraStart& extra, const Zone& zone, std::int64_t utc) const
{
    if (extra.end)
        return std::max(m_clock.toUtc(*extra.end), utc);
    const auto days = extra.length->days * CivilTime::secondsPerDay;
    return std::max(zone.toUtc(zone.toLocal(utc) + days) + extra.length->seconds, utc);
}

// What the event's own clock shows then.
std::int64_t EventSeries::localTime(const EventRecord& event, const StatedTime& time) const
{
    if (isWholeDay(event)
        || isSame({ 0, event.start.place, event.start.kind }, { 0, time.place, time.kind }))
        return isWholeDay(event) ? time.day() * CivilTime::secondsPerDay : time.seconds;
    if (time.kind == StatedTime::Kind::date)
        return time.seconds + event.start.seconds - event.start.day() * CivilTime::secondsPerDay;
    return m_clock.zone(event.start).toLocal(m_clock.toUtc(time));
}
