#include "App/Platform/Linux/Calendar/Text/ZoneBuilder.h"

#include "App/Platform/Linux/Calendar/Text/RecurrenceRule.h"

#include <algorithm>
#include <utility>

ZoneBuilder::ZoneBuilder(const CalendarWindow& window)
    : m_window(window)
{
}

void ZoneBuilder::begin()
{
    m_observance = {};
    m_isInObservance = true;
    m_hasStart = false;
    m_hasOffset = false;
}

void ZoneBuilder::end()
{
    if (!std::exchange(m_isInObservance, false) || !m_hasStart || !m_hasOffset)
        return;
    m_observances.push_back(std::move(m_observance));
    m_isRefused = m_isRefused || m_observances.size() > mostObservances;
}

void ZoneBuilder::take(const ContentLine& line, bool isCut)
{
    m_size += line.value.size();
    m_isRefused = m_isRefused || isCut || m_size > largestZone;
    if (m_isRefused)
        return;
    if (m_isInObservance)
        setInObservance(line);
    else if (line.isNamed("TZID"))
        m_name = line.text();
}

void ZoneBuilder::finish(Places& places)
{
    if (!m_isRefused && !m_name.empty() && !m_observances.empty())
        places.describe(m_name, std::move(m_observances));
}

void ZoneBuilder::setInObservance(const ContentLine& line)
{
    if (line.isNamed("DTSTART")) {
        const auto start = StatedTime::parse(line.value);
        m_hasStart = start.has_value();
        m_observance.start = start.value_or(StatedTime());
    } else if (line.isNamed("TZOFFSETFROM")) {
        m_observance.offsetBefore = parseUtcOffset(line.value).value_or(0);
    } else if (line.isNamed("TZOFFSETTO")) {
        const auto offset = parseUtcOffset(line.value);
        m_hasOffset = offset.has_value();
        m_observance.offset = offset.value_or(0);
    } else if (line.isNamed("RDATE")) {
        addDates(line);
    } else if (line.isNamed("RRULE")) {
        addRule(line);
    }
}

void ZoneBuilder::addDates(const ContentLine& line)
{
    auto list = line.value;
    while (!list.empty()) {
        const auto size = std::min(list.find(','), list.size());
        const auto date = StatedTime::parse(list.substr(0, size));
        if (date && date->seconds >= CustomZone::firstUtc - CalendarWindow::margin
            && date->seconds <= m_window.end + CalendarWindow::margin)
            m_observance.dates.push_back(*date);
        list.remove_prefix(std::min(size + 1, list.size()));
    }
}

void ZoneBuilder::addRule(const ContentLine& line)
{
    auto text = ContentLine::inCapitals(line.value);
    const auto rule = RecurrenceRule::parse(text, 0);
    m_isRefused = m_isRefused || !rule || !rule->isYearly() || !m_observance.rule.empty();
    m_observance.rule = std::move(text);
}
