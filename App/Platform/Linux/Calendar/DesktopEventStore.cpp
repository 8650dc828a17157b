#include "App/Platform/Linux/Calendar/DesktopEventStore.h"

#include "App/Platform/UserDefaults.h"

#include <QPointer>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

static const auto consentKey = u"calendarAccess"_s;

namespace {

// One without length counts where it stands.
bool overlaps(const CalendarEvent& event, const TimeSpan& span)
{
    return event.start < span.end && (event.end > span.start || event.start >= span.start);
}

}

DesktopEventStore::DesktopEventStore(
    const QList<CalendarSource*>& sources, UserDefaults& defaults, const Clock& clock)
    : m_sources(sources)
    , m_defaults(defaults)
    , m_clock(clock)
{
    for (auto* source : m_sources)
        connect(source, &CalendarSource::changed, this, &EventStore::changed);
    // While the machine slept, or its clock stood elsewhere, changes may have been missed.
    connect(&m_clock, &Clock::jumped, this, &DesktopEventStore::forget);
}

void DesktopEventStore::authorizationStatus(
    QObject* context, const std::function<void(AuthorizationStatus)>& answer)
{
    const auto consent = m_defaults.boolean(consentKey);
    if (!consent) {
        answer(AuthorizationStatus::notDetermined);
        return;
    }
    struct Check {
        qsizetype due;
        bool isAnswered = false;
    };
    const auto check = std::make_shared<Check>(Check { *consent ? m_sources.size() : 0 });
    const auto conclude = [this, check, answer, number = ++m_checks](bool isGranted) {
        check->isAnswered = true;
        if (number < m_lastTold)
            return;
        m_lastTold = number;
        m_isGranted = isGranted;
        answer(isGranted ? AuthorizationStatus::fullAccess : AuthorizationStatus::denied);
    };
    if (check->due == 0) {
        conclude(false);
        return;
    }
    for (auto* source : m_sources) {
        source->checkAccess(context, [check, conclude](bool isOpen) {
            --check->due;
            if (!check->isAnswered && (isOpen || check->due == 0))
                conclude(isOpen);
        });
    }
}

void DesktopEventStore::requestFullAccess(
    QObject* context, const std::function<void(bool granted)>& answer)
{
    if (!m_defaults.boolean(consentKey))
        m_defaults.setBoolean(consentKey, true);
    authorizationStatus(context, [answer](AuthorizationStatus status) {
        answer(status == AuthorizationStatus::fullAccess);
    });
}

QList<CalendarEvent> DesktopEventStore::events(Moment start, Moment end)
{
    const auto consent = [this] { return m_defaults.boolean(consentKey).value_or(false); };
    if (!(m_isGranted ? *m_isGranted : consent()))
        return {};
    // Days are at other times in another zone, even where the span stays the same.
    const TimeSpan span { start, end };
    if (m_span != span || m_zone != m_clock.zone()) {
        m_span = span;
        m_zone = m_clock.zone();
        for (auto* source : m_sources)
            source->look(span);
    }
    QList<CalendarEvent> found;
    for (const auto* source : m_sources) {
        const auto events = source->events();
        std::ranges::copy_if(events, std::back_inserter(found),
            [&span](const CalendarEvent& event) { return overlaps(event, span); });
    }
    std::ranges::stable_sort(found, {}, &CalendarEvent::start);
    return found;
}

// Whoever heard of the jump before this did asks again.
void DesktopEventStore::forget()
{
    if (!m_span)
        return;
    m_span.reset();
    if (m_isGranted.value_or(true))
        Q_EMIT changed();
}
