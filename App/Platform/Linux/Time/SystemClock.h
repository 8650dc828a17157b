// The machine's wall clock, which jumps when it is set, its zone becomes another or the machine
// wakes up.
#pragma once

#include "App/Platform/Clock.h"
#include "App/Platform/Linux/Time/ClockSetWatch.h"
#include "App/Platform/Linux/Time/ZoneWatch.h"

class QDBusConnection;
class SystemBus;

class SystemClock final : public Clock {
    Q_OBJECT

public:
    explicit SystemClock(SystemBus& bus);

    Moment now() const override { return std::chrono::system_clock::now(); }

private Q_SLOTS:
    void prepareForSleep(bool goingToSleep);

private:
    void followSleep(QDBusConnection bus);

    ClockSetWatch m_watch;
    ZoneWatch m_zoneWatch;
};
