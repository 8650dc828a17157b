// Properties of one object of a service on the system bus, as the service itself tells them.
#pragma once

#include "App/Platform/Followed.h"

#include <QDBusConnection>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include <memory>
#include <optional>

class QDBusMessage;
class QDBusPendingCallWatcher;
class SystemBus;

class RemoteProperties final : public Followed {
    Q_OBJECT

public:
    struct Source {
        QString service;
        QString path;
        QString interface;
        QStringList names = {}; // Of the properties of interest.
        bool startsService = false; // Where the bus knows how to.
    };

    enum class State {
        unknown,
        absent, // No bus, no service, an error, or no answer for three seconds.
        known,
    };

    RemoteProperties(SystemBus& bus, Source source);

    State state() const { return m_state; }
    // Those of interest with a plain value; empty unless the state is known.
    QVariantMap values() const { return m_values; }

private Q_SLOTS:
    void hear(const QDBusMessage& signal);
    void changeOwner(const QDBusMessage& signal);

private:
    void begin() override;
    void end() override;

    void subscribe(const QDBusConnection& connection);
    void ask();
    void drop();
    void learn(const QDBusMessage& answer);
    void take(QVariantMap& values, const QVariantMap& told) const;
    void lose();
    void loseBus();
    void set(State state, const QVariantMap& values);

    SystemBus& m_bus;
    const Source m_source;
    State m_state = State::unknown;
    QVariantMap m_values;

    std::unique_ptr<QObject> m_watch; // Lives while followed.
    std::optional<QDBusConnection> m_connection; // While subscribed.
    QDBusPendingCallWatcher* m_call = nullptr; // While an answer is due, followed or not.
    bool m_heardMeanwhile = false;
    QString m_owner; // The only one whose signals count.
    QTimer m_patience;
};
