#pragma once

#include "App/Platform/Clock.h"

struct FakeClock final : Clock {
    Moment now() const override { return time; }
    QTimeZone zone() const override { return timeZone; }
    void advance(double seconds) { time += std::chrono::duration<double>(seconds); }

    Moment time { std::chrono::duration<double>(1'700'000'000.25) };
    QTimeZone timeZone { "Europe/Berlin" };
};
