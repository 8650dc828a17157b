// Runs one of the user's shortcuts, an executable found by its name, in the place of this program:
// its status, its signals and what it writes are the shortcut's own.
#include "App/Helpers/ShortcutFiles.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

constexpr auto usage = "Usage: shortcuts run NAME\n"
                       "       shortcuts list\n";

std::string quoted(const std::string& name)
{
    constexpr size_t mostShown = 60;
    return "“" + ShortcutFiles::printable(name, mostShown) + "”";
}

int fail(const std::string& message)
{
    std::fprintf(stderr, "%s\n", message.c_str());
    return 1;
}

void leaveTerminal()
{
    const int nothing = ::open("/dev/null", O_RDONLY);
    if (nothing >= 0 && dup2(nothing, STDIN_FILENO) >= 0 && nothing != STDIN_FILENO)
        ::close(nothing);
    if (chdir(ShortcutFiles::home().c_str()) != 0 && chdir("/") != 0)
        return;
}

// Something else than text would only make the shell complain of what it reads.
bool isText(const std::string& path)
{
    char start[256];
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    const auto size = file >= 0 ? ::read(file, start, sizeof start) : -1;
    if (file >= 0)
        ::close(file);
    return size >= 0 && !std::memchr(start, '\0', static_cast<size_t>(size));
}

// Returns only where that fails.
int replaceBy(const std::string& path)
{
    std::string program = path;
    char* const arguments[] = { program.data(), nullptr };
    execv(path.c_str(), arguments);
    if (errno == ENOEXEC && isText(path)) {
        std::string shell = "sh";
        char* const words[] = { shell.data(), program.data(), nullptr };
        execv("/bin/sh", words);
        errno = ENOEXEC;
    }
    return errno;
}

int run(const std::string& name)
{
    if (!ShortcutFiles::isName(name))
        return fail(quoted(name) + " cannot be the name of a shortcut.");
    const auto folder = ShortcutFiles::shown(ShortcutFiles::folder());
    const auto [path, isExecutable] = ShortcutFiles::find(name);
    if (path.empty())
        return fail("No shortcut is named " + quoted(name)
            + ". To make one, put an executable file of that name into " + folder + ".");
    const auto file = ShortcutFiles::shown(path);
    if (!isExecutable)
        return fail(quoted(name) + " is not executable. To let it run: chmod +x "
            + ShortcutFiles::typed(path));
    leaveTerminal();
    const int error = replaceBy(path);
    if (error == ENOENT)
        return fail(file + " cannot be started: the program named in its first line is missing.");
    return fail(file + " cannot be started: " + std::strerror(error) + ".");
}

int list()
{
    for (const auto& name : ShortcutFiles::names())
        std::printf("%s\n", ShortcutFiles::printable(name, name.size()).c_str());
    return std::fflush(stdout) == 0 ? 0 : 1;
}

}

int main(int argc, char** argv)
{
    const std::string command = argc > 1 ? argv[1] : "";
    ShortcutFiles::useUnicode();
    if (command == "run" && argc == 3)
        return run(argv[2]);
    if (command == "list" && argc == 2)
        return list();
    const bool isAsked = argc == 2 && (command == "--help" || command == "-h");
    std::fputs(usage, isAsked ? stdout : stderr);
    return isAsked ? 0 : 2;
}
