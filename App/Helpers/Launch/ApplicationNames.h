// Applications by what people call them.
#pragma once

#include "App/Helpers/Launch/Application.h"

#include <string_view>

namespace ApplicationNames {

// As it is compared: without the spaces around it, and regardless of case.
std::string folded(std::string_view name);

// The one of that very name: the localized name before the plain one, the id and the program.
// Null for none.
const Application* exact(const Applications& applications, std::string_view name, bool shown);
// The one whose name starts like that.
const Application* prefixed(const Applications& applications, std::string_view name, bool shown);

// The names of up to three that are shown and may have been meant, the closest first.
std::vector<std::string> similar(const Applications& applications, std::string_view name);

}
