// A repeating timer on the main thread.
#pragma once

#include <chrono>
#include <functional>

class Ticker {
public:
    virtual ~Ticker() = default;

    // Calls fire every interval until stop(); a second start replaces the first.
    virtual void start(std::chrono::milliseconds interval, std::function<void()> fire) = 0;
    virtual void stop() = 0;
};
