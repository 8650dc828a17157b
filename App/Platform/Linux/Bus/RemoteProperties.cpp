#include "App/Platform/Linux/Bus/RemoteProperties.h"

#include "App/Platform/Linux/Bus/SystemBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

static const auto properties = u"org.freedesktop.DBus.Properties"_s;
static const auto theBus = u"org.freedesktop.DBus"_s;

// The late answer of a service that hung is the first sign that it is back.
static constexpr int noTimeLimit = std::numeric_limits<int>::max();

RemoteProperties::RemoteProperties(SystemBus& bus, Source source)
    : m_bus(bus)
    , m_source(std::move(source))
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(std::chrono::seconds(3));
    connect(&m_patience, &QTimer::timeout, this, &RemoteProperties::lose);
    connect(&m_bus, &SystemBus::ended, this, &RemoteProperties::loseBus);
}

void RemoteProperties::begin()
{
    m_watch = std::make_unique<QObject>();
    m_patience.start();
    m_bus.whenConnected(
        m_watch.get(), [this](const QDBusConnection& connection) { subscribe(connection); });
}

void RemoteProperties::end()
{
    m_patience.stop();
    m_watch.reset();
    m_owner.clear();
    auto connection = std::exchange(m_connection, std::nullopt);
    if (!connection)
        return;
    connection->disconnect(QString(), m_source.path, properties, u"PropertiesChanged"_s,
        { m_source.interface }, u"sa{sv}as"_s, this, SLOT(hear(QDBusMessage)));
    connection->disconnect(QString(), u"/org/freedesktop/DBus"_s, theBus, u"NameOwnerChanged"_s,
        { m_source.service }, u"sss"_s, this, SLOT(changeOwner(QDBusMessage)));
}

// Without names of services, whose owners the library would wait for; with types, since a signal of
// others would end the program when it meets the slot.
void RemoteProperties::subscribe(const QDBusConnection& connection)
{
    // A call on a bus that is gone is never answered.
    if (!connection.isConnected()) {
        lose();
        return;
    }
    m_connection = connection;
    m_connection->connect(QString(), m_source.path, properties, u"PropertiesChanged"_s,
        { m_source.interface }, u"sa{sv}as"_s, this, SLOT(hear(QDBusMessage)));
    m_connection->connect(QString(), u"/org/freedesktop/DBus"_s, theBus, u"NameOwnerChanged"_s,
        { m_source.service }, u"sss"_s, this, SLOT(changeOwner(QDBusMessage)));
    // A service that hangs is asked once, however often somebody looks: the bus lets nobody have
    // many questions open, and would then refuse those to others.
    if (m_call)
        m_heardMeanwhile = true;
    else
        ask();
}

void RemoteProperties::ask()
{
    drop();
    auto request
        = QDBusMessage::createMethodCall(m_source.service, m_source.path, properties, u"GetAll"_s);
    request << m_source.interface;
    request.setAutoStartService(m_source.startsService);
    auto* call = new QDBusPendingCallWatcher(m_connection->asyncCall(request, noTimeLimit), this);
    m_call = call;
    m_heardMeanwhile = false;
    m_patience.start();
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        drop();
        if (m_connection)
            learn(call->reply());
    });
}

void RemoteProperties::drop()
{
    m_patience.stop();
    if (m_call) {
        m_call->disconnect(this);
        m_call->deleteLater();
    }
    m_call = nullptr;
}

void RemoteProperties::learn(const QDBusMessage& answer)
{
    // Whose signals counted was not known yet, or the answer was older than they.
    if (m_heardMeanwhile)
        ask();
    const QDBusPendingReply<QVariantMap> told(QDBusPendingCall::fromCompletedCall(answer));
    if (!told.isValid()) {
        lose();
        return;
    }
    m_owner = answer.service();
    QVariantMap values;
    take(values, told.value());
    set(State::known, values);
}

void RemoteProperties::hear(const QDBusMessage& signal)
{
    // A last signal may be on its way yet when the watch has ended.
    if (!m_connection)
        return;
    m_heardMeanwhile = true;
    if (m_state == State::known && signal.service() == m_owner) {
        auto values = m_values;
        take(values, qdbus_cast<QVariantMap>(signal.arguments().at(1)));
        const auto stale = signal.arguments().at(2).toStringList();
        const bool isStale = std::ranges::any_of(
            stale, [this](const QString& name) { return m_source.names.contains(name); });
        if (isStale && !m_call)
            ask();
        set(State::known, values);
    } else if (m_state != State::known && !m_call) {
        // An object that was not there when it was asked for has come.
        ask();
    }
}

void RemoteProperties::changeOwner(const QDBusMessage& signal)
{
    if (!m_connection || signal.service() != theBus)
        return;
    m_owner.clear();
    if (!signal.arguments().at(2).toString().isEmpty()) {
        ask();
        return;
    }
    drop();
    lose();
}

// What is no plain value cannot be told apart from another, and nobody here asks for it.
void RemoteProperties::take(QVariantMap& values, const QVariantMap& told) const
{
    for (const auto& name : m_source.names) {
        const auto value = told.constFind(name);
        if (value == told.cend())
            continue;
        if (value->typeId() < QMetaType::User)
            values.insert(name, *value);
        else
            values.remove(name);
    }
}

void RemoteProperties::lose()
{
    set(State::absent, {});
}

void RemoteProperties::loseBus()
{
    drop();
    m_owner.clear();
    m_connection.reset();
    if (m_watch)
        lose();
}

void RemoteProperties::set(State state, const QVariantMap& values)
{
    if (m_state == state && m_values == values)
        return;
    m_state = state;
    m_values = values;
    Q_EMIT changed();
}
