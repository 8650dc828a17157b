#include "App/Meetings/CalendarModel.h"

#include "App/Meetings/Day.h"
#include "App/Platform/Ticker.h"

#include <QMultiHash>

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

CalendarModel::CalendarModel(EventStore& store, Clock& clock, Ticker& timer, Ticker& midnight)
    : m_store(store)
    , m_clock(clock)
    , m_timer(timer)
    , m_midnight(midnight)
{
}

void CalendarModel::requestAccess()
{
    m_store.requestFullAccess(this, [this](bool granted) { handle(granted); });
}

void CalendarModel::checkAuthorization()
{
    m_store.authorizationStatus(this, [this](AuthorizationStatus status) {
        if (status != AuthorizationStatus::notDetermined)
            handle(status == AuthorizationStatus::fullAccess);
    });
}

void CalendarModel::handle(bool granted)
{
    publish(m_authorized, granted);
    publish(m_denied, !granted);
    if (!granted)
        return;
    refresh();
    watch();
}

void CalendarModel::watch()
{
    if (std::exchange(m_isWatching, true))
        return;
    m_timer.start(60s, [this] { refresh(); });
    connect(&m_store, &EventStore::changed, this, &CalendarModel::refresh);
    connect(&m_clock, &Clock::jumped, this, &CalendarModel::refresh);
}

void CalendarModel::refresh()
{
    const auto now = m_clock.now();
    const auto today = dayOf(now, m_clock.zone());
    auto found = m_store.events(today.start, today.end);
    std::ranges::stable_sort(found, {}, &CalendarEvent::start);
    publish(m_events, mapped(found));
    m_found = std::move(found);
    // A moment late rather than a moment early, which would still be today.
    m_midnight.start(
        std::chrono::ceil<std::chrono::milliseconds>(today.end - now), [this] { refresh(); });
}

// An event that did not change keeps its id, even where that is a random one, and no text is
// searched for links each minute.
QList<MeetingEvent> CalendarModel::mapped(const QList<CalendarEvent>& found) const
{
    if (found == m_found)
        return m_events;
    const auto keyOf = [](const CalendarEvent& event) {
        return qHashMulti(0, event.identifier.value_or(QString()), event.title.value_or(QString()),
            event.start.time_since_epoch().count());
    };
    QMultiHash<size_t, qsizetype> known;
    for (auto i = m_found.size() - 1; i >= 0; --i)
        known.insert(keyOf(m_found[i]), i);
    QList<MeetingEvent> events;
    events.reserve(found.size());
    for (const auto& event : found) {
        auto same = known.find(keyOf(event));
        while (same != known.end() && same.key() == keyOf(event) && m_found[*same] != event)
            ++same;
        if (same == known.end() || same.key() != keyOf(event)) {
            events.emplaceBack(event);
        } else {
            events << m_events[*same];
            known.erase(same);
        }
    }
    return events;
}

const MeetingEvent* CalendarModel::next() const
{
    const auto now = m_clock.now();
    const auto found = std::ranges::find_if(
        m_events, [now](const MeetingEvent& event) { return !event.allDay && event.end > now; });
    return found == m_events.cend() ? nullptr : &*found;
}

bool CalendarModel::isOver(const MeetingEvent& event) const
{
    return event.isOver(m_clock.now());
}

QTimeZone CalendarModel::zone() const
{
    return m_clock.zone();
}
