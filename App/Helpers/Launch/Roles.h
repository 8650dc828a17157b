// What the default buttons are called, as parts that any application may play.
#pragma once

#include "App/Helpers/Launch/Application.h"

#include <optional>
#include <string_view>

struct Surroundings;

namespace Roles {

// The user's web browser for Safari, a notes program for Notes, a terminal for Terminal. Absent for
// every other name, and when nothing can play the part.
std::optional<Application> player(
    std::string_view name, const Applications& applications, const Surroundings& around);

}
