#include "App/Platform/Linux/SystemClock.h"

#include <QDBusConnection>

using namespace Qt::StringLiterals;

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
    QDBusConnection::systemBus().connect(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
        u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s, u"b"_s, this,
        SLOT(prepareForSleep(bool)));
}

void SystemClock::prepareForSleep(bool goingToSleep)
{
    if (!goingToSleep)
        Q_EMIT jumped();
}
