#include "App/Platform/Linux/Calendar/EventSeries.h"

#include "App/Platform/Linux/Calendar/RecurrenceRule.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <utility>

namespace {

constexpr std::int64_t longestShift = 62 * CivilTime::secondsPerDay;

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

}

EventSeries::EventSeries(const CalendarWindow& window, CalendarClock clock, Take take)
    : m_window(window)
    , m_clock(clock)
    , m_take(std::move(take))
{
}

void EventSeries::expand(const std::vector<const EventRecord*>& records)
{
    sortOut(records);
    for (const auto* event : m_events) {
        if (event->repeats())
            expandRepeated(*event);
        else
            expandOnce(*event);
    }
    for (const auto* replacement : m_replacements) {
        if (!replacement->replacesFollowing || m_events.empty())
            expandOnce(*replacement);
    }
}

// Of several records for the same thing the newest counts, and the last of equally new ones.
void EventSeries::sortOut(const std::vector<const EventRecord*>& records)
{
    m_events.clear();
    std::map<std::pair<std::int64_t, bool>, const EventRecord*> replacements;
    int newest = 0;
    for (const auto* record : records) {
        if (record->replaces) {
            auto& known
                = replacements[{ m_clock.toUtc(*record->replaces), record->replacesFollowing }];
            if (!known || record->sequence >= known->sequence)
                known = record;
            continue;
        }
        newest = std::max(newest, record->sequence);
        m_events.push_back(record);
    }
    std::erase_if(m_events, [&](const EventRecord* event) { return event->sequence < newest; });
    std::ranges::stable_sort(
        m_events, {}, [](const EventRecord* event) { return event->start.seconds; });
    const auto isRepeated = [](const EventRecord* one, const EventRecord* other) {
        return isSame(one->start, other->start);
    };
    // From the end, so that the last of equal ones stays.
    std::ranges::reverse(m_events);
    const auto surplus = std::ranges::unique(m_events, isRepeated);
    m_events.erase(surplus.begin(), surplus.end());
    m_replacements.clear();
    for (const auto& [start, replacement] : replacements)
        m_replacements.push_back(replacement);
}

void EventSeries::expandOnce(const EventRecord& event)
{
    const auto start = m_clock.toUtc(event.start);
    const auto& replaced = event.replaces;
    takeOverlapping({ event, isWholeDay(event), start, end(event, event.start.seconds, start),
        replaced ? stamp(
            replaced->kind == StatedTime::Kind::date ? replaced->seconds : m_clock.toUtc(*replaced),
            replaced->kind == StatedTime::Kind::date)
                 : std::string() });
}

void EventSeries::expandRepeated(const EventRecord& event)
{
    const auto changes = following(event);
    std::int64_t shift = 0;
    for (const auto& change : changes)
        shift = std::max(shift, std::min(std::abs(change.shift), longestShift));
    auto excluded = exceptions(event);
    for (const auto* replacement : m_replacements) {
        if (!replacement->replacesFollowing)
            name(excluded, event, *replacement->replaces);
    }
    for (const auto& start : starts(event, shift)) {
        if (!has(excluded, start))
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
        starts.push_back({ local, zone.toUtc(local), &extra });
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
    const auto surplus = std::ranges::unique(starts, {}, &Start::utc);
    starts.erase(surplus.begin(), surplus.end());
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
        const auto replaced = localTime(event, *replacement->replaces);
        changes.push_back(
            { zone.toUtc(replaced), localTime(event, replacement->start) - replaced, replacement });
    }
    std::ranges::stable_sort(changes, {}, &Following::from);
    return changes;
}

EventSeries::Named EventSeries::exceptions(const EventRecord& event) const
{
    Named named;
    for (const auto& exception : event.exceptions)
        name(named, event, exception);
    return named;
}

void EventSeries::name(Named& named, const EventRecord& event, const StatedTime& time) const
{
    if (isWholeDay(event) || time.kind == StatedTime::Kind::date)
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
