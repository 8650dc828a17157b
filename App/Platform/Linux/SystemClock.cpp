#include "App/Platform/Linux/SystemClock.h"

#include "App/Platform/Linux/BusProbe.h"

#include <QDBusConnection>

using namespace Qt::StringLiterals;

static constexpr auto patience = std::chrono::seconds(5);

SystemClock::SystemClock()
    : m_connector(QThread::create([this] { followSleep(); }))
{
    connect(&m_watch, &ClockSetWatch::clockSet, this, &Clock::jumped);
    m_connector->start();
}

SystemClock::~SystemClock()
{
    m_connector->wait();
}

void SystemClock::followSleep()
{
    // One thread of the library serves all buses: a bus that hangs would stop the session's, too.
    if (!BusProbe::answers(BusProbe::systemBusAddress(), patience))
        return;
    QDBusConnection::systemBus().connect(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
        u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s, u"b"_s, this,
        SLOT(prepareForSleep(bool)));
}

void SystemClock::prepareForSleep(bool goingToSleep)
{
    if (!goingToSleep)
        Q_EMIT jumped();
}
