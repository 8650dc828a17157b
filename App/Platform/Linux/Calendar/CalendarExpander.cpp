#include "App/Platform/Linux/Calendar/CalendarExpander.h"

#include "App/Platform/Linux/Calendar/CalendarFiles.h"
#include "App/Platform/Linux/Calendar/RecurrenceRule.h"
#include "App/Platform/Linux/ExpanderPipe.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace {

// Of the answer, in bytes. Its events go without notes beyond the first, and are left out beyond
// the second.
constexpr qsizetype fullestNotes = qsizetype { 8 } * 1024 * 1024;
constexpr qsizetype fullestText = qsizetype { 12 } * 1024 * 1024;

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

qsizetype sizeBesideNotes(const EventRecord& record)
{
    const auto letters
        = record.uid.size() + record.title.size() + record.location.size() + record.url.size();
    return static_cast<qsizetype>(sizeof(CalendarEvent) + letters * sizeof(QChar));
}

bool isDear(const EventRecord& record, const CalendarContent& content)
{
    return content.places.isDescribed(record.start)
        || std::ranges::any_of(record.rules,
            [](const std::string& rule) { return rule.find("COUNT=") != std::string::npos; });
}

// What comes first is not kept from its place by what may take long, or fill the answer.
int rank(std::span<const EventRecord* const> group, const CalendarContent& content)
{
    const bool hasDear = std::ranges::any_of(
        group, [&](const EventRecord* record) { return isDear(*record, content); });
    if (hasDear)
        return 2;
    return group.size() > 1 || group.front()->repeats() ? 1 : 0;
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
    m_textContent = {};
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
    const auto events = sorted(content);
    for (const auto& group : groups(events, content)) {
        if (!series.expand(group, m_budgets.expanding)) {
            m_result.isComplete = false;
            break;
        }
    }
    for (const auto& zone : content.places.unknown()) {
        if (!m_result.unknownZones.contains(zone)
            && m_result.unknownZones.size() < ExpanderPipe::mostZones)
            m_result.unknownZones << zone;
    }
}

std::vector<const EventRecord*> CalendarExpander::sorted(const CalendarContent& content)
{
    std::vector<const EventRecord*> events;
    events.reserve(content.events.size());
    for (const auto& event : content.events)
        events.push_back(&event);
    std::ranges::stable_sort(
        events, {}, [](const EventRecord* event) { return std::string_view(event->uid); });
    return events;
}

// Of one UID each.
std::vector<CalendarExpander::Group> CalendarExpander::groups(
    const std::vector<const EventRecord*>& events, const CalendarContent& content)
{
    std::vector<std::pair<int, Group>> ranked;
    for (auto first = events.begin(); first != events.end();) {
        const auto last = std::find_if(first + 1, events.end(), [&](const EventRecord* event) {
            return event->uid.empty() || event->uid != (*first)->uid;
        });
        const Group group(first, last);
        ranked.emplace_back(rank(group, content), group);
        first = last;
    }
    std::ranges::stable_sort(ranked, {}, &std::pair<int, Group>::first);
    std::vector<Group> groups;
    for (const auto& [rank, group] : ranked)
        groups.push_back(group);
    return groups;
}

void CalendarExpander::add(const Occurrence& occurrence)
{
    const auto& record = occurrence.event;
    const auto notes = static_cast<qsizetype>(record.notes.size() * sizeof(QChar));
    const auto besideNotes = sizeBesideNotes(record);
    if (m_result.events.size() >= ExpanderPipe::mostEvents || m_size + besideNotes > fullestText) {
        m_result.isComplete = false;
        return;
    }
    const bool hasRoom = m_size + besideNotes + notes <= fullestNotes;
    m_size += besideNotes + (hasRoom ? notes : 0);
    CalendarEvent event;
    if (!record.uid.empty()) {
        event.identifier = m_request.source + u'\n' + QString::fromStdString(inOneLine(record.uid))
            + u'\n' + QString::fromStdString(occurrence.recurrenceId);
    }
    event.title = given(record.title);
    event.location = given(record.location);
    if (hasRoom)
        event.notes = given(record.notes);
    event.url = given(record.url);
    event.start = moment(occurrence.start);
    event.end = moment(occurrence.end);
    event.isAllDay = occurrence.isWholeDay;
    m_result.events.push_back(std::move(event));
}
