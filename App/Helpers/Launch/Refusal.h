// What stood in the way of a start.
#pragma once

#include <optional>
#include <string>

// In words for the user; absent when it was started.
using Refusal = std::optional<std::string>;
