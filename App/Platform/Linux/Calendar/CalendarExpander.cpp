#include "App/Platform/Linux/Calendar/CalendarExpander.h"

#include "App/Platform/Linux/Calendar/CalendarFiles.h"
#include "App/Platform/Linux/Calendar/RecurrenceRule.h"
#include "App/Platform/Linux/ExpanderPipe.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// Notes are left out of what goes beyond it.
constexpr qsizetype fullestText = ExpanderPipe::largestAnswer / 2;

std::int64_t bounded(double seconds)
{
    static const auto first
        = static_cast<double>(CivilTime::dayNumber({ 1, 1, 1 }) * CivilTime::secondsPerDay);
    static const auto last
        = static_cast<double>(CivilTime::dayNumber({ 9999, 1, 1 }) * CivilTime::secondsPerDay);
    return static_cast<std::int64_t>(std::isnan(seconds) ? 0 : std::clamp(seconds, first, last));
}

CalendarWindow window(const EventExpander::Request& request)
{
    return { bounded(std::floor(request.start.time_since_epoch().count())),
        bounded(std::ceil(request.end.time_since_epoch().count())) };
}

Moment moment(std::int64_t seconds)
{
    return Moment(std::chrono::duration<double>(static_cast<double>(seconds)));
}

std::optional<QString> given(const std::string& text)
{
    return text.empty() ? std::nullopt : std::optional(QString::fromStdString(text));
}

// Parts of an identifier stand in lines of their own.
std::string inOneLine(std::string text)
{
    std::ranges::replace(text, '\n', ' ');
    return text;
}

qsizetype size(const CalendarEvent& event)
{
    qsizetype letters = 0;
    for (const auto& text :
        { event.identifier, event.title, event.location, event.notes, event.url })
        letters += text ? text->size() : 0;
    return letters * qsizetype { sizeof(QChar) };
}

bool isDear(const std::vector<const EventRecord*>& records)
{
    return std::ranges::any_of(records, [](const EventRecord* record) {
        return std::ranges::any_of(record->rules,
            [](const std::string& rule) { return rule.find("COUNT=") != std::string::npos; });
    });
}

}

CalendarExpander::CalendarExpander(const EventExpander::Request& request, const Budgets& budgets)
    : m_request(request)
    , m_budgets(budgets)
    , m_window(window(request))
    , m_textScanner(m_window, m_textContent)
{
}

void CalendarExpander::addText(std::string_view bytes)
{
    if (m_budgets.reading.isSpent())
        m_result.isComplete = false;
    else
        m_textScanner.feed(bytes);
}

EventExpander::Result CalendarExpander::finish()
{
    m_textScanner.finish();
    expand(m_textContent);
    readFiles(m_request.paths);
    std::ranges::stable_sort(
        m_result.events, [](const CalendarEvent& one, const CalendarEvent& other) {
            return std::tie(one.start, one.identifier) < std::tie(other.start, other.identifier);
        });
    return std::move(m_result);
}

void CalendarExpander::readFiles(const QStringList& paths)
{
    for (const auto& file : CalendarFiles::find(paths, m_budgets.reading)) {
        CalendarContent content;
        CalendarScanner scanner(m_window, content);
        CalendarFiles::read(file, [&](std::string_view bytes) {
            if (m_budgets.reading.isSpent())
                content.isComplete = false;
            else
                scanner.feed(bytes);
            return content.isComplete;
        });
        if (content.isComplete)
            scanner.finish();
        expand(content);
    }
}

void CalendarExpander::expand(CalendarContent& content)
{
    m_result.isComplete = m_result.isComplete && content.isComplete;
    EventSeries series(m_window, { content.places, m_zones, m_window.end + CalendarWindow::margin },
        [this](const Occurrence& occurrence) { add(occurrence); });
    for (const auto& group : groups(content)) {
        if (m_budgets.expanding.isSpent()) {
            m_result.isComplete = false;
            break;
        }
        series.expand(group);
    }
    for (const auto& zone : content.places.unknown()) {
        if (!m_result.unknownZones.contains(zone)
            && m_result.unknownZones.size() < ExpanderPipe::mostZones)
            m_result.unknownZones << zone;
    }
}

// One for each UID. Those that may take long come last, so that it is others who are waited for.
std::vector<CalendarExpander::Group> CalendarExpander::groups(const CalendarContent& content)
{
    Group all;
    all.reserve(content.events.size());
    for (const auto& event : content.events)
        all.push_back(&event);
    std::ranges::stable_sort(
        all, {}, [](const EventRecord* event) { return std::string_view(event->uid); });
    std::vector<Group> groups;
    for (const auto* event : all) {
        if (groups.empty() || event->uid.empty() || groups.back().front()->uid != event->uid)
            groups.emplace_back();
        groups.back().push_back(event);
    }
    std::ranges::stable_partition(groups, [](const Group& group) { return !isDear(group); });
    return groups;
}

void CalendarExpander::add(const Occurrence& occurrence)
{
    if (m_result.events.size() >= ExpanderPipe::mostEvents) {
        m_result.isComplete = false;
        return;
    }
    const auto& record = occurrence.event;
    CalendarEvent event;
    if (!record.uid.empty()) {
        event.identifier = m_request.source + u'\n' + QString::fromStdString(inOneLine(record.uid))
            + u'\n' + QString::fromStdString(occurrence.recurrenceId);
    }
    event.title = given(record.title);
    event.location = given(record.location);
    event.notes = given(record.notes);
    event.url = given(record.url);
    event.start = moment(occurrence.start);
    event.end = moment(occurrence.end);
    event.isAllDay = occurrence.isWholeDay;
    if (m_size + size(event) > fullestText)
        event.notes.reset();
    m_size += size(event);
    m_result.events.push_back(std::move(event));
}
