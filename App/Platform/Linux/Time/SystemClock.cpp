#include "App/Platform/Linux/Time/SystemClock.h"

#include "App/Platform/Linux/Bus/SystemBus.h"

using namespace Qt::StringLiterals;

SystemClock::SystemClock(SystemBus& bus)
{
    connect(&m_watch, &ClockSetWatch::clockSet, this, &Clock::jumped);
    connect(&m_zoneWatch, &ZoneWatch::zoneChanged, this, &Clock::jumped);
    bus.whenConnected(this, [this](const QDBusConnection& connection) { followSleep(connection); });
}

void SystemClock::followSleep(QDBusConnection bus)
{
    // From anyone: the library would wait for the bus to tell whose a name is, and whoever forges
    // this signal merely has the time read once more.
    bus.connect(QString(), u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s,
        u"PrepareForSleep"_s, u"b"_s, this, SLOT(prepareForSleep(bool)));
}

void SystemClock::prepareForSleep(bool goingToSleep)
{
    if (!goingToSleep)
        Q_EMIT jumped();
}
