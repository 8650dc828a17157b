// Terminals, and how each is told to run a program.
#pragma once

#include "App/Helpers/Launch/Application.h"

#include <optional>
#include <string_view>

struct Surroundings;

namespace Terminals {

// The one to use on this desktop; absent when none is installed.
std::optional<Application> best(const Applications& applications, const Surroundings& around);

// What stands between the terminal and the command line of the program; empty for nothing.
std::string_view executeOption(const Application& terminal);

}
