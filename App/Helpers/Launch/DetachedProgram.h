// Starts programs that owe nothing to the one that has started them.
#pragma once

#include "App/Helpers/Launch/Refusal.h"

#include <vector>

namespace DetachedProgram {

// In a session of its own, with no file and no signal of ours. The first argument is the program,
// found by name as in a shell. An empty folder, or one that cannot be entered, is the user's home.
Refusal start(const std::vector<std::string>& arguments, const std::string& folder = {});

}
