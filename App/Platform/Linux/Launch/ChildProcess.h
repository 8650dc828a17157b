// Starts programs that neither the end of this one nor anything of its own can touch.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace ChildProcess {

// Descriptors of this program; what is absent goes nowhere.
struct Streams {
    int input = -1;
    int errors = -1;
};

struct Started {
    pid_t process = -1;
    int error = 0; // As errno; otherwise the process is there and has to be waited for.
};

// A variable of this program's own environment that is nobody else's: on Wayland it tells Qt to
// leave windows of a certain kind to who made them.
constexpr auto privateVariable = "QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT";

// Without a shell and in a session of its own; nothing is inherited but the environment, without
// that variable, and the streams. The arguments begin with the program's name. An empty folder, or
// one that cannot be entered, is the user's home.
Started start(const std::string& path, std::vector<std::string> arguments,
    const Streams& streams = {}, const std::string& folder = {});

}
