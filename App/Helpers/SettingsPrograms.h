// The desktop's own program for the user's accounts, or else for settings.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace SettingsPrograms {

// The names of desktop entries, the best for these desktops first, then those of all others.
// desktops: as in XDG_CURRENT_DESKTOP, separated by colons, the more special first.
std::vector<std::string> candidates(std::string_view desktops);

}
