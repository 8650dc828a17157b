// What a file is, by how it starts.
#pragma once

#include <optional>
#include <string>

namespace FileStart {

enum class Kind {
    missing,
    folder,
    program, // That the user may run.
    document,
    other, // A pipe, a device.
};

Kind kind(const std::string& path);

// As many as there are, and no more than most; absent for what is no file that can be read.
std::optional<std::string> bytes(const std::string& path, size_t most);

}
