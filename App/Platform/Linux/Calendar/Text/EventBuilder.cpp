#include "App/Platform/Linux/Calendar/Text/EventBuilder.h"

#include "App/Platform/Linux/Calendar/Text/RecurrenceRule.h"
#include "App/Platform/Linux/Calendar/Text/Split.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

// No honest event has nearly as many within the window's reach.
constexpr std::size_t mostDates = 20'000;

constexpr std::size_t longestTitle = 1000; // Characters
constexpr std::string_view spaces = " \t\r\n\v\f";

void setOnce(std::string& field, std::string value)
{
    if (field.empty())
        field = std::move(value);
}

// The words that may be one: nobody is shown the rest of an event's notes, and many are long.
std::string addresses(std::string_view notes)
{
    std::string words;
    while (!notes.empty()) {
        const auto size = std::min(notes.find_first_of(spaces), notes.size());
        const auto word = notes.substr(0, size);
        if (word.find("://") != std::string_view::npos)
            words.append(words.empty() ? "" : " ").append(word);
        notes.remove_prefix(std::min(size + 1, notes.size()));
    }
    return words;
}

// At most that many characters.
std::string_view beginning(std::string_view text, std::size_t most)
{
    std::size_t characters = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isFirstByte = (static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U;
        if (isFirstByte && ++characters > most)
            return text.substr(0, i);
    }
    return text;
}

// What is left of a long location has its addresses whole.
std::string shortened(std::string_view location)
{
    constexpr std::size_t most = 1000; // Characters
    constexpr std::size_t mostWithAddresses = 2000; // Bytes
    auto kept = beginning(location, most);
    if (kept.size() == location.size())
        return std::string(location);
    const auto lastWord = kept.find_last_of(spaces) + 1; // 0 without a space.
    const auto more = addresses(location.substr(lastWord));
    const auto wordSize = std::min(location.find_first_of(spaces, lastWord), location.size());
    if (location.substr(lastWord, wordSize - lastWord).find("://") != std::string_view::npos)
        kept = kept.substr(0, lastWord);
    kept = kept.substr(0, kept.find_last_not_of(spaces) + 1);
    std::string text(kept);
    split(more, ' ', [&](std::string_view address) {
        if (text.size() + 1 + address.size() <= mostWithAddresses)
            text.append(text.empty() ? "" : " ").append(address);
    });
    return text;
}

}

EventBuilder::EventBuilder(const CalendarWindow& window, Places& places)
    : m_window(window)
    , m_places(places)
{
}

EventBuilder::Property EventBuilder::property(const ContentLine& line)
{
    constexpr std::array<std::string_view, 17> names { "UID", "SUMMARY", "LOCATION", "DESCRIPTION",
        "URL", "CONFERENCE", "X-GOOGLE-CONFERENCE", "X-MICROSOFT-SKYPETEAMSMEETINGURL", "DTSTART",
        "DTEND", "DURATION", "RRULE", "EXRULE", "RDATE", "EXDATE", "RECURRENCE-ID", "SEQUENCE" };
    static_assert(names.size() == static_cast<std::size_t>(Property::other));
    const auto* const found
        = std::ranges::find_if(names, [&](std::string_view name) { return line.isNamed(name); });
    return static_cast<Property>(found - names.begin());
}

bool EventBuilder::isText(Property property)
{
    return property == Property::summary || property == Property::location
        || property == Property::description;
}

void EventBuilder::take(const ContentLine& line, bool isCut)
{
    const auto known = property(line);
    if (known == Property::other || m_isRefused)
        return;
    if (isCut && !isText(known)) {
        m_isRefused = true;
        return;
    }
    set(known, line);
}

std::optional<EventRecord> EventBuilder::finish()
{
    if (m_isRefused || !m_hasStart || !isNear())
        return {};
    setOnce(m_event.url, std::move(m_conference));
    setOnce(m_event.url, std::move(m_googleConference));
    setOnce(m_event.url, std::move(m_skypeConference));
    return std::move(m_event);
}

void EventBuilder::set(Property property, const ContentLine& line)
{
    // Dates far from the window leave nothing behind.
    if (property != Property::exceptions && property != Property::extraStarts)
        m_size += line.value.size();
    m_isRefused = m_isRefused || m_size > largestEvent;
    switch (property) {
    case Property::uid:
        return setOnce(m_event.uid, line.text());
    case Property::summary:
        return setOnce(m_event.title, std::string(beginning(line.text(), longestTitle)));
    case Property::location:
        return setOnce(m_event.location, shortened(line.text()));
    case Property::description:
        return setOnce(m_event.notes, addresses(line.text()));
    case Property::url:
        return setOnce(m_event.url, std::string(line.value));
    case Property::conference:
        return setOnce(m_conference, std::string(line.value));
    case Property::googleConference:
        return setOnce(m_googleConference, std::string(line.value));
    case Property::skypeConference:
        return setOnce(m_skypeConference, std::string(line.value));
    case Property::start: {
        const auto start = time(line, line.value);
        m_hasStart = start.has_value();
        m_event.start = start.value_or(StatedTime());
        return;
    }
    case Property::end:
        m_event.end = time(line, line.value);
        return;
    case Property::duration:
        m_event.length = StatedLength::parse(line.value);
        return;
    case Property::rule:
        return addRule(m_event.rules, line);
    case Property::exceptionRule:
        return addRule(m_event.exceptionRules, line);
    case Property::extraStarts:
        return addExtraStarts(line);
    case Property::exceptions:
        return addExceptions(line);
    case Property::recurrenceId:
        m_event.replaces = time(line, line.value);
        m_event.replacesFollowing = ContentLine::isSame(line.parameter("RANGE"), "THISANDFUTURE");
        return;
    case Property::sequence:
        m_event.sequence = CivilTime::number(CivilTime::trimmed(line.value)).value_or(0);
        return;
    case Property::other:
        return;
    }
}

void EventBuilder::addRule(std::vector<std::string>& rules, const ContentLine& line)
{
    rules.push_back(ContentLine::inCapitals(line.value));
    m_isRefused = m_isRefused || RecurrenceRule::isRefused(rules.back())
        || m_event.rules.size() + m_event.exceptionRules.size() > mostRules;
}

void EventBuilder::addExtraStarts(const ContentLine& line)
{
    split(line.value, ',', [&](std::string_view value) {
        const auto slash = std::min(value.find('/'), value.size());
        const auto start = time(line, value.substr(0, slash));
        if (!start || !m_window.mayReach(*start))
            return;
        EventRecord::ExtraStart extra { *start };
        if (slash < value.size()) {
            extra.length = StatedLength::parse(value.substr(slash + 1));
            extra.end = time(line, value.substr(slash + 1));
        }
        m_event.extraStarts.push_back(extra);
    });
    m_isRefused = m_isRefused || m_event.extraStarts.size() > mostDates;
}

void EventBuilder::addExceptions(const ContentLine& line)
{
    split(line.value, ',', [&](std::string_view value) {
        const auto exception = time(line, value);
        if (exception && m_window.mayReach(*exception))
            m_event.exceptions.push_back(*exception);
    });
    m_isRefused = m_isRefused || m_event.exceptions.size() > mostDates;
}

std::optional<StatedTime> EventBuilder::time(const ContentLine& line, std::string_view value)
{
    auto time = StatedTime::parse(value);
    if (time && time->kind == StatedTime::Kind::local)
        time->place = m_places.index(ContentLine::unescaped(line.parameter("TZID")));
    return time;
}

bool EventBuilder::isNear() const
{
    const auto reach = [](const EventRecord& event) {
        const auto day = CivilTime::secondsPerDay;
        if (event.end)
            return event.end->seconds;
        const auto length = event.length.value_or(StatedLength { 1, 0 });
        return event.start.seconds + length.days * day + length.seconds;
    };
    return m_event.repeats() || m_window.isNear(m_event.start.seconds, reach(m_event))
        || (m_event.replaces
            && (m_event.replacesFollowing || m_window.mayReach(*m_event.replaces)));
}
