#include "App/Platform/Linux/Bus/BusQuestion.h"

#include <QDBusPendingCallWatcher>

#include <limits>

static constexpr int noTimeLimit = std::numeric_limits<int>::max();

BusQuestion::BusQuestion(const QDBusConnection& bus)
    : m_bus(bus)
{
}

void BusQuestion::ask(
    const QDBusMessage& request, const std::function<void(const QDBusMessage&)>& answer)
{
    drop();
    if (!m_bus.isConnected())
        return;
    m_call = new QDBusPendingCallWatcher(m_bus.asyncCall(request, noTimeLimit), this);
    connect(m_call, &QDBusPendingCallWatcher::finished, this,
        [this, answer](QDBusPendingCallWatcher* call) {
            drop();
            answer(call->reply());
        });
}

void BusQuestion::drop()
{
    if (m_call) {
        m_call->disconnect(this);
        m_call->deleteLater();
    }
    m_call = nullptr;
}
