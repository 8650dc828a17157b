// Time that nobody can set, for measuring spans: it says nothing of the hour.
#pragma once

#include "App/Platform/Clock.h"

class SteadyClock final : public Clock {
    Q_OBJECT

public:
    // Stands still while the machine sleeps, and so never jumps.
    Moment now() const override
    {
        return Moment(std::chrono::steady_clock::now().time_since_epoch());
    }
};
