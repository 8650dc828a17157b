// The machine's wall clock, which jumps when it is set and when the machine wakes up.
#pragma once

#include "App/Platform/Clock.h"
#include "App/Platform/Linux/ClockSetWatch.h"

#include <QThread>

#include <memory>

class SystemClock final : public Clock {
    Q_OBJECT

public:
    SystemClock();
    ~SystemClock() override;

    Moment now() const override { return std::chrono::system_clock::now(); }

private Q_SLOTS:
    void prepareForSleep(bool goingToSleep);

private:
    void followSleep();

    ClockSetWatch m_watch;
    // Connecting to the system bus waits for its greeting, so it is done beside the main thread.
    std::unique_ptr<QThread> m_connector;
};
