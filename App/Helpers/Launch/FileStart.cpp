#include "App/Helpers/Launch/FileStart.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FileStart {

Kind kind(const std::string& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return Kind::missing;
    if (S_ISDIR(status.st_mode))
        return Kind::folder;
    if (!S_ISREG(status.st_mode))
        return Kind::other;
    const auto start = bytes(path, 4).value_or(std::string());
    const bool isProgram = start.starts_with("#!") || start == "\177ELF";
    return isProgram && ::access(path.c_str(), X_OK) == 0 ? Kind::program : Kind::document;
}

std::optional<std::string> bytes(const std::string& path, size_t most)
{
    struct stat status = {};
    // What is no file could hold up whoever opens or reads it.
    const int file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0)
        return {};
    std::string bytes;
    bool isRead = ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    while (isRead && bytes.size() < most) {
        char buffer[4096];
        const auto count = ::read(file, buffer, std::min(sizeof buffer, most - bytes.size()));
        isRead = count >= 0;
        if (count <= 0)
            break;
        bytes.append(buffer, static_cast<size_t>(count));
    }
    ::close(file);
    return isRead ? std::optional(std::move(bytes)) : std::nullopt;
}

}
