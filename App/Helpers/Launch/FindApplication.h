// The application that a person means by a name.
#pragma once

#include "App/Helpers/Launch/Application.h"

#include <optional>
#include <string_view>

struct Surroundings;

// By its very name, or else by the part that one of that name plays elsewhere, or else by the
// beginning of its name. Those that are not shown come after those that are.
std::optional<Application> findApplication(
    std::string_view name, const Applications& applications, const Surroundings& around);
