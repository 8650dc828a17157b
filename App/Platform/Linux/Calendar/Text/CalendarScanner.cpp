#include "App/Platform/Linux/Calendar/Text/CalendarScanner.h"

#include <utility>

namespace {

// Apart, so that too many of the ones leave room for the others.
constexpr std::size_t mostSingle = 12 * 1024 * 1024; // Bytes
constexpr std::size_t mostRepeated = 28 * 1024 * 1024; // Bytes; some 75,000 events.
// Texts beyond it go without their notes.
constexpr std::size_t fullestText = 8 * 1024 * 1024; // Bytes

std::size_t textSize(const EventRecord& event)
{
    return event.uid.size() + event.title.size() + event.location.size() + event.notes.size()
        + event.url.size();
}

std::size_t size(const EventRecord& event)
{
    std::size_t bytes = sizeof event + textSize(event)
        + event.exceptions.size() * sizeof(StatedTime)
        + event.extraStarts.size() * sizeof(EventRecord::ExtraStart);
    for (const auto& rule : event.rules)
        bytes += sizeof rule + rule.size();
    return bytes;
}

}

CalendarScanner::CalendarScanner(const CalendarWindow& window, CalendarContent& content)
    : m_window(window)
    , m_content(content)
    , m_reader([this](std::string_view line, bool isCut) { take(line, isCut); })
{
}

void CalendarScanner::take(std::string_view text, bool isCut)
{
    const auto line = ContentLine::parse(text);
    if (!line)
        return;
    if (line->isNamed("BEGIN"))
        begin(CivilTime::trimmed(line->value));
    else if (line->isNamed("END"))
        end(CivilTime::trimmed(line->value));
    else if (m_event && m_depth == 0)
        m_event->take(*line, isCut);
    else if (m_zone)
        m_zone->take(*line, isCut);
}

void CalendarScanner::begin(std::string_view component)
{
    const auto is = [&](std::string_view name) { return ContentLine::isSame(component, name); };
    if (is("VEVENT")) {
        m_event.emplace(m_window, m_content.places);
        m_zone.reset();
        m_depth = 0;
    } else if (is("VTIMEZONE")) {
        m_zone.emplace(m_window);
        m_event.reset();
    } else if (is("VCALENDAR")) {
        m_event.reset();
        m_zone.reset();
    } else if (m_event) {
        ++m_depth;
    } else if (m_zone) {
        m_zone->begin();
    }
}

void CalendarScanner::end(std::string_view component)
{
    const auto is = [&](std::string_view name) { return ContentLine::isSame(component, name); };
    if (is("VEVENT") && m_event) {
        if (auto event = m_event->finish())
            keep(std::move(*event));
        m_event.reset();
    } else if (is("VTIMEZONE") && m_zone) {
        m_zone->finish(m_content.places);
        m_zone.reset();
    } else if (is("VCALENDAR")) {
        m_event.reset();
        m_zone.reset();
    } else if (m_event) {
        m_depth -= m_depth > 0 ? 1 : 0;
    } else if (m_zone) {
        m_zone->end();
    }
}

void CalendarScanner::keep(EventRecord event)
{
    if (m_text + textSize(event) > fullestText)
        std::string().swap(event.notes); // An assignment would keep the memory.
    m_text += textSize(event);
    const bool isSingle = !event.repeats() && !event.replaces;
    auto& kept = isSingle ? m_single : m_repeated;
    const auto bytes = size(event);
    kept += bytes;
    if (kept > (isSingle ? mostSingle : mostRepeated)) {
        m_content.isComplete = false;
        return;
    }
    m_content.size += bytes;
    m_content.events.push_back(std::move(event));
}
