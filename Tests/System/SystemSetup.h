// A system monitor over fakes.
#pragma once

#include "App/System/SystemMonitor.h"
#include "Tests/Fakes/FakeClock.h"
#include "Tests/Fakes/FakeMachineCounters.h"
#include "Tests/Fakes/FakePowerSources.h"
#include "Tests/Fakes/FakeTicker.h"

struct SystemSetup {
    void sampleAfter(double seconds)
    {
        clock.advance(seconds);
        ticker.fire();
    }

    // Busy for so many of the next hundred ticks.
    void work(std::uint32_t percent)
    {
        auto ticks = counters.ticks.value_or(ProcessorTicks {});
        ticks.user += percent;
        ticks.idle += 100 - percent;
        counters.ticks = ticks;
    }

    // Both ways, on the first interface.
    void transfer(std::uint32_t received, std::uint32_t sent)
    {
        auto network = counters.network.value_or(NetworkBytes {});
        network[QStringLiteral("eth0")].received += received;
        network[QStringLiteral("eth0")].sent += sent;
        counters.network = network;
    }

    FakeMachineCounters counters;
    FakePowerSources power;
    FakeClock clock;
    FakeTicker ticker;
    SystemMonitor monitor { counters, power, clock, ticker };
};
