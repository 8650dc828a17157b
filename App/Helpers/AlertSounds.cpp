#include "App/Helpers/AlertSounds.h"

#include <array>
#include <cmath>
#include <numbers>

namespace AlertSounds {

struct Partial {
    double ratio; // To the fundamental.
    double level;
    double decay; // Seconds until it has faded to 1/e.
};

static constexpr double fundamental = 1318.5;
static constexpr double seconds = 1.4;
static constexpr double attack = 0.002;
static constexpr double release = 0.05;
static constexpr double loudness = 0.6;

// The pair a few hertz apart gives the slow beat of a real glass; high partials die first.
static constexpr std::array<Partial, 6> partials { {
    { 1.0, 1.0, 0.38 },
    { 1.0027, 0.5, 0.34 },
    { 2.32, 0.42, 0.2 },
    { 4.25, 0.22, 0.1 },
    { 6.63, 0.12, 0.05 },
    { 9.38, 0.06, 0.03 },
} };

static double struckGlass(double time)
{
    double sum = 0;
    double most = 0;
    for (const auto& [ratio, level, decay] : partials) {
        const double turn = 2 * std::numbers::pi * fundamental * ratio * time;
        sum += level * std::exp(-time / decay) * std::sin(turn);
        most += level;
    }
    return sum / most;
}

// Ramps at both ends, without which a loudspeaker clicks.
static double envelope(double time)
{
    return std::fmin(1, std::fmin(time / attack, (seconds - time) / release));
}

Samples glass()
{
    Samples samples(static_cast<std::size_t>(std::lround(seconds * sampleRate)));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double time = static_cast<double>(i) / sampleRate;
        const double value = loudness * envelope(time) * struckGlass(time);
        samples[i] = static_cast<std::int16_t>(std::lround(value * INT16_MAX));
    }
    return samples;
}

std::optional<Samples> named(std::string_view name)
{
    return name == "Glass" ? std::optional(glass()) : std::nullopt;
}

}
