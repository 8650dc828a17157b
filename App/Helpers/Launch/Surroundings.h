// What the desktop, the machine and the user's choices offer beside the applications.
#pragma once

#include <functional>
#include <string>

struct Surroundings {
    std::string desktops = {}; // As in XDG_CURRENT_DESKTOP.
    // The id of the program for a type, as x-scheme-handler/https; empty for none.
    std::function<std::string(const std::string& type)> defaultFor = {};
    std::function<bool(const std::string& program)> hasProgram = {};
};
