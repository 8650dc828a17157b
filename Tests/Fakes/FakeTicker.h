#pragma once

#include "App/Platform/Ticker.h"

#include <utility>

struct FakeTicker final : Ticker {
    void start(std::chrono::milliseconds every, std::function<void()> call) override
    {
        ++starts;
        interval = every;
        fire = std::move(call);
    }

    void stop() override { fire = nullptr; }
    bool isRunning() const { return fire != nullptr; }

    int starts = 0;
    std::chrono::milliseconds interval { 0 };
    std::function<void()> fire;
};
