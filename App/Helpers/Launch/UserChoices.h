// The programs that the user has chosen for addresses and kinds of files.
#pragma once

#include "App/Helpers/Launch/Application.h"
#include "App/Helpers/Launch/Surroundings.h"

#include <optional>

namespace UserChoices {

Surroundings surroundings();

// Absent where nothing opens it.
std::optional<Application> forScheme(const std::string& scheme);
std::optional<Application> forFile(const std::string& path);

}
