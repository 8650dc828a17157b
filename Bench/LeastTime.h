// How long something takes when nothing else comes in between.
#pragma once

#include <algorithm>
#include <chrono>
#include <limits>

template <typename Action>
double leastMilliseconds(int rounds, Action action)
{
    auto least = std::numeric_limits<double>::max();
    for (int i = 0; i < rounds; ++i) {
        const auto start = std::chrono::steady_clock::now();
        action();
        const std::chrono::duration<double, std::milli> taken
            = std::chrono::steady_clock::now() - start;
        least = std::min(least, taken.count());
    }
    return least;
}
