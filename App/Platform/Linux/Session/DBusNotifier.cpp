#include "App/Platform/Linux/Session/DBusNotifier.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

static const auto service = u"org.freedesktop.Notifications"_s;

// A server that hangs for hours must not collect a queue without end.
static constexpr qsizetype mostWaiting = 16;

// The answer is awaited without a time limit of our own: a server that hangs shows the texts when
// it comes round, quoted as it wants them, and the bus itself reports one that is gone.
static constexpr int noTimeLimit = std::numeric_limits<int>::max();

static QDBusMessage request(const QString& method)
{
    return QDBusMessage::createMethodCall(
        service, u"/org/freedesktop/Notifications"_s, service, method);
}

static bool isUnreachable(const QDBusError& error)
{
    switch (error.type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::Disconnected:
    case QDBusError::NoServer:
    case QDBusError::AccessDenied:
        return true;
    default:
        return error.name().startsWith(u"org.freedesktop.DBus.Error.Spawn."_s)
            || error.name() == u"org.freedesktop.DBus.Error.NameHasNoOwner"_s;
    }
}

static QString escaped(QString text)
{
    return text.replace(u'&', u"&amp;"_s).replace(u'<', u"&lt;"_s).replace(u'>', u"&gt;"_s);
}

DBusNotifier::DBusNotifier(Notifier& fallback, const QDBusConnection& bus)
    : m_fallback(fallback)
    , m_bus(bus)
    , m_watcher(service, bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this] { m_bodyMarkup.reset(); });
}

void DBusNotifier::notify(const QString& title, const QString& body)
{
    // Calls on a bus that never was are not even answered with an error.
    if (!m_bus.isConnected()) {
        m_fallback.notify(title, body);
        return;
    }
    if (m_bodyMarkup) {
        send({ title, body }, *m_bodyMarkup);
        return;
    }
    m_waiting.append({ title, body });
    if (m_waiting.size() == 1)
        askForCapabilities();
    else if (m_waiting.size() > mostWaiting)
        m_waiting.removeFirst();
}

void DBusNotifier::askForCapabilities()
{
    auto* call = new QDBusPendingCallWatcher(
        m_bus.asyncCall(request(u"GetCapabilities"_s), noTimeLimit), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        learnCapabilities(call->reply());
    });
}

void DBusNotifier::learnCapabilities(const QDBusMessage& answer)
{
    const QDBusPendingReply<QStringList> capabilities(QDBusPendingCall::fromCompletedCall(answer));
    if (capabilities.isValid()) {
        m_bodyMarkup = capabilities.value().contains(u"body-markup"_s);
        sendWaiting(*m_bodyMarkup);
        return;
    }
    if (isUnreachable(capabilities.error())) {
        giveUpWaiting();
        return;
    }
    // The server left while it owed the answer; another one may have taken its place.
    if (capabilities.error().type() == QDBusError::NoReply && !m_askedTwice) {
        m_askedTwice = true;
        askForCapabilities();
        return;
    }
    sendWaiting(false);
}

void DBusNotifier::sendWaiting(bool bodyMarkup)
{
    m_askedTwice = false;
    for (const auto& notification : std::exchange(m_waiting, {}))
        send(notification, bodyMarkup);
}

void DBusNotifier::giveUpWaiting()
{
    m_askedTwice = false;
    for (const auto& [title, body] : std::exchange(m_waiting, {}))
        m_fallback.notify(title, body);
}

void DBusNotifier::send(const Notification& notification, bool bodyMarkup)
{
    const QVariantMap hints {
        { u"desktop-entry"_s, u"org.corvella.Corvella"_s },
        { u"suppress-sound"_s, true },
    };
    auto message = request(u"Notify"_s);
    message << u"Corvella"_s << 0U << u"org.corvella.Corvella"_s << notification.title
            << (bodyMarkup ? escaped(notification.body) : notification.body) << QStringList()
            << hints << -1;
    auto* call = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, notification] {
        call->deleteLater();
        // A server that merely does not answer has the text and will show it.
        if (call->isError() && isUnreachable(call->error()))
            m_fallback.notify(notification.title, notification.body);
    });
}
