// The alert sounds, made by arithmetic.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace AlertSounds {

constexpr int sampleRate = 44'100;

// One channel of samples.
using Samples = std::vector<std::int16_t>;

// A struck glass of 1.4 seconds.
Samples glass();

// Absent when no sound has that name.
std::optional<Samples> named(std::string_view name);

}
