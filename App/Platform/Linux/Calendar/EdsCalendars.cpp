#include "App/Platform/Linux/Calendar/EdsCalendars.h"

#include "App/Platform/Linux/Calendar/EdsCalendar.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

static const auto service = u"org.gnome.evolution.dataserver.Calendar8"_s;
static const auto sources = u"org.gnome.evolution.dataserver.Sources5"_s;
static const auto theBus = u"org.freedesktop.DBus"_s;

namespace {

constexpr int patience = 3000; // Milliseconds.

QDBusPendingCall names(const QDBusConnection& bus, const QString& method)
{
    return bus.asyncCall(
        QDBusMessage::createMethodCall(theBus, u"/org/freedesktop/DBus"_s, theBus, method),
        patience);
}

bool hasService(const QDBusPendingCall& call)
{
    const QDBusPendingReply<QStringList> reply(call);
    return reply.isValid() && reply.value().contains(service);
}

}

EdsCalendars::EdsCalendars(EventExpander& expander, const QDBusConnection& bus)
    : m_expander(expander)
    , m_bus(bus)
    , m_sources(bus)
{
    connect(&m_sources, &EdsSources::changed, this, &EdsCalendars::learnSources);
}

EdsCalendars::~EdsCalendars() = default;

void EdsCalendars::checkAccess(QObject* context, const std::function<void(bool)>& answer)
{
    // Calls on a bus that never was are not even answered with an error.
    if (!m_bus.isConnected()) {
        answer(false);
        return;
    }
    auto* startable = new QDBusPendingCallWatcher(names(m_bus, u"ListActivatableNames"_s), context);
    connect(startable, &QDBusPendingCallWatcher::finished, context, [=, this] {
        startable->deleteLater();
        if (hasService(*startable)) {
            answer(true);
            return;
        }
        auto* running = new QDBusPendingCallWatcher(names(m_bus, u"ListNames"_s), context);
        connect(running, &QDBusPendingCallWatcher::finished, context, [=] {
            running->deleteLater();
            answer(hasService(*running));
        });
    });
}

void EdsCalendars::look(const TimeSpan& span)
{
    m_span = span;
    if (m_bus.isConnected() && !std::exchange(m_isFollowed, true))
        follow();
    m_sources.look();
    for (const auto& [uid, calendar] : m_calendars)
        calendar->look(span);
}

void EdsCalendars::follow()
{
    for (const auto& name : { service, sources })
        m_bus.connect({}, u"/org/freedesktop/DBus"_s, theBus, u"NameOwnerChanged"_s, { name },
            u"sss"_s, this, SLOT(changeOwner(QDBusMessage)));
}

// What was given up, or would be tried much later, may work now.
void EdsCalendars::changeOwner(const QDBusMessage& signal)
{
    if (signal.service() != theBus || signal.arguments().at(2).toString().isEmpty())
        return;
    for (const auto& [uid, calendar] : m_calendars)
        calendar->reopen();
}

QList<CalendarEvent> EdsCalendars::events() const
{
    QList<CalendarEvent> events;
    for (const auto& [uid, calendar] : m_calendars)
        events += calendar->events();
    return events;
}

void EdsCalendars::learnSources()
{
    const auto uids = m_sources.calendars();
    bool isLess = false;
    std::erase_if(m_calendars, [&](const auto& calendar) {
        const bool isGone = !uids.contains(calendar.first);
        isLess = isLess || (isGone && !calendar.second->events().isEmpty());
        return isGone;
    });
    for (const auto& uid : uids) {
        auto& calendar = m_calendars[uid];
        if (calendar)
            continue;
        calendar = std::make_unique<EdsCalendar>(m_bus, m_expander, uid);
        connect(calendar.get(), &EdsCalendar::changed, this, &CalendarSource::changed);
        calendar->look(*m_span);
    }
    if (isLess)
        Q_EMIT changed();
}
