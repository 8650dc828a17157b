// How much of one frequency a sound holds.
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <span>

namespace Tone {

// Mean power of the frequency, in hertz, by Goertzel's recurrence; 0.25 for its full-scale sine.
inline double power(std::span<const std::int16_t> samples, double frequency, int rate)
{
    const double step = 2 * std::cos(2 * std::numbers::pi * frequency / rate);
    double last = 0;
    double beforeLast = 0;
    for (const auto sample : samples) {
        const double next = sample / 32'768.0 + step * last - beforeLast;
        beforeLast = last;
        last = next;
    }
    const auto count = static_cast<double>(samples.size());
    return (last * last + beforeLast * beforeLast - step * last * beforeLast) / (count * count);
}

}
