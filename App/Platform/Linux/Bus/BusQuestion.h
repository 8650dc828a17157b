// One question at a time to a service on a message bus.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <functional>

class QDBusPendingCallWatcher;

class BusQuestion final : public QObject {
public:
    explicit BusQuestion(const QDBusConnection& bus);

    bool isOpen() const { return m_call != nullptr; }

    // An earlier question is dropped. Without a time limit: the late answer of a service that hung
    // is the first sign that it is back, and the bus answers for one that is gone. Not answered at
    // all where there is no bus.
    void ask(const QDBusMessage& request, const std::function<void(const QDBusMessage&)>& answer);
    void drop();

private:
    QDBusConnection m_bus;
    QDBusPendingCallWatcher* m_call = nullptr;
};
