#include "App/Platform/Linux/Calendar/Text/CalendarExpander.h"

#include "App/Platform/Linux/Calendar/ExpanderPipe.h"
#include "App/Platform/Linux/Calendar/Text/CalendarFiles.h"
#include "App/Platform/Linux/Calendar/Text/RecurrenceRule.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace {

// Of the answer, in bytes. Its events go without notes beyond the first, and are left out beyond
// the second.
constexpr qsizetype fullestNotes = qsizetype { 8 } * 1024 * 1024;
constexpr qsizetype fullestText = qsizetype { 12 } * 1024 * 1024;
// Of contents between two turns, in bytes.
constexpr std::size_t mostKept = std::size_t { 12 } * 1024 * 1024;

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
    const auto isDearRule = [&](const std::string& text) {
        // Most have neither, and need not be read for it.
        if (text.find("COUNT") == std::string::npos && text.find("BYSETPOS") == std::string::npos)
            return false;
        const auto rule = RecurrenceRule::parse(text, record.start.seconds);
        return rule && rule->isDear();
    };
    return content.places.isDescribed(record.start) || std::ranges::any_of(record.rules, isDearRule)
        || std::ranges::any_of(record.exceptionRules, isDearRule);
}

}

CalendarExpander::CalendarExpander(const EventExpander::Request& request, const Budgets& budgets)
    : m_request(request)
    , m_budgets(budgets)
    , m_window(window(request))
    , m_text { {}, std::make_unique<CalendarContent>() }
    , m_textScanner(m_window, *m_text.content)
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
    findCalendars();
    for (const auto turn : { Turn::single, Turn::cheap, Turn::dear }) {
        for (auto& calendar : m_calendars)
            take(turn, calendar);
        std::erase_if(m_calendars, [](const Calendar& calendar) { return !calendar.hasMore; });
    }
    std::ranges::stable_sort(
        m_result.events, [](const CalendarEvent& one, const CalendarEvent& other) {
            return std::tie(one.start, one.identifier) < std::tie(other.start, other.identifier);
        });
    return std::move(m_result);
}

void CalendarExpander::findCalendars()
{
    if (!m_text.content->events.empty() || !m_text.content->isComplete)
        m_calendars.push_back(std::move(m_text));
    const auto found = CalendarFiles::find(m_request.paths, m_budgets.reading);
    m_result.isComplete = m_result.isComplete && found.isComplete;
    for (const auto& file : found.files)
        m_calendars.push_back({ file });
    m_isShared = m_calendars.size() > 1;
}

std::unique_ptr<CalendarContent> CalendarExpander::read(
    const QByteArray& file, const TimeBudget& budget)
{
    auto content = std::make_unique<CalendarContent>();
    CalendarScanner scanner(m_window, *content);
    bool isInTime = true;
    const bool isReadable = CalendarFiles::read(file, [&](std::string_view bytes) {
        isInTime = !budget.isSpent();
        if (isInTime)
            scanner.feed(bytes);
        return isInTime;
    });
    if (isInTime)
        scanner.finish();
    content->isComplete = content->isComplete && isInTime && isReadable;
    return content;
}

void CalendarExpander::take(Turn turn, Calendar& calendar)
{
    const bool isFirst = turn == Turn::single;
    const bool isLast = turn == Turn::dear && &calendar == &m_calendars.back();
    const auto budget = isFirst || isLast ? m_budgets.expanding : m_budgets.expanding.half();
    if (!calendar.content)
        calendar.content = read(calendar.file, isFirst ? m_budgets.reading : budget);
    m_kept -= std::exchange(calendar.size, 0);
    calendar.hasMore = false;
    expand(turn, calendar, budget);
    noteUnknownZones(*calendar.content);
    keepOrForget(calendar);
}

void CalendarExpander::keepOrForget(Calendar& calendar)
{
    constexpr std::size_t frame = 4096;
    const auto size = frame + calendar.content->size + calendar.content->places.size();
    const bool fits
        = calendar.file.isEmpty() || size <= (mostKept - std::min(m_kept, mostKept)) / 2;
    if (calendar.hasMore && fits)
        m_kept += calendar.size = size;
    else
        calendar.content.reset();
}

void CalendarExpander::expand(Turn now, Calendar& calendar, const TimeBudget& budget)
{
    auto& content = *calendar.content;
    m_result.isComplete = m_result.isComplete && content.isComplete;
    EventSeries series(m_window, { content.places, m_zones, m_window.end + CalendarWindow::margin },
        [&](const Occurrence& occurrence) { add(calendar, occurrence); });
    const auto events = sorted(content);
    for (const auto& group : groups(events)) {
        const auto its = turn(group, content);
        calendar.hasMore = calendar.hasMore || its > now;
        if (its == now && !series.expand(group, budget)) {
            m_result.isComplete = false;
            calendar.hasMore = calendar.hasMore || now < Turn::dear;
            return;
        }
    }
}

void CalendarExpander::noteUnknownZones(const CalendarContent& content)
{
    for (const auto& zone : content.places.unknown()) {
        if (!m_result.unknownZones.contains(zone)
            && m_result.unknownZones.size() < ExpanderPipe::mostZones)
            m_result.unknownZones << zone;
    }
}

CalendarExpander::Turn CalendarExpander::turn(Group group, const CalendarContent& content)
{
    const bool isSingle = group.size() == 1 && !group.front()->repeats();
    const bool hasDear = std::ranges::any_of(
        group, [&](const EventRecord* record) { return isDear(*record, content); });
    if (hasDear)
        return Turn::dear;
    return isSingle ? Turn::single : Turn::cheap;
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
    const std::vector<const EventRecord*>& events)
{
    std::vector<Group> groups;
    for (auto first = events.begin(); first != events.end();) {
        const auto last = std::find_if(first + 1, events.end(), [&](const EventRecord* event) {
            return event->uid.empty() || event->uid != (*first)->uid;
        });
        groups.emplace_back(first, last);
        first = last;
    }
    return groups;
}

qsizetype CalendarExpander::share(qsizetype most, qsizetype all, qsizetype own) const
{
    const auto left = most - (all - own);
    return m_isShared ? left / 2 : left;
}

void CalendarExpander::add(Calendar& calendar, const Occurrence& occurrence)
{
    const auto& record = occurrence.event;
    const auto notes = static_cast<qsizetype>(record.notes.size() * sizeof(QChar));
    const auto besideNotes = sizeBesideNotes(record);
    const auto text = calendar.text + besideNotes;
    if (calendar.events >= share(ExpanderPipe::mostEvents, m_result.events.size(), calendar.events)
        || text > share(fullestText, m_size, calendar.text)) {
        m_result.isComplete = false;
        return;
    }
    const bool hasRoom = text + notes <= share(fullestNotes, m_size, calendar.text);
    const auto size = besideNotes + (hasRoom ? notes : 0);
    m_size += size;
    calendar.text += size;
    ++calendar.events;
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
