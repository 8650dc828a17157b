#include "App/Platform/Linux/Launch/ChildProcess.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class Actions final {
public:
    Actions(const ChildProcess::Streams& streams, const std::string& folder)
    {
        posix_spawn_file_actions_init(&m_actions);
        // The streams first: where this program's own are closed, they may have those numbers.
        take(streams.input, STDIN_FILENO);
        take(streams.errors, STDERR_FILENO);
        drop(streams.input, STDIN_FILENO);
        drop(-1, STDOUT_FILENO);
        drop(streams.errors, STDERR_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
        posix_spawn_file_actions_addchdir_np(&m_actions, folder.c_str());
    }

    ~Actions() { posix_spawn_file_actions_destroy(&m_actions); }
    Actions(const Actions&) = delete;
    Actions& operator=(const Actions&) = delete;

    const posix_spawn_file_actions_t* get() const { return &m_actions; }

private:
    void take(int descriptor, int number)
    {
        if (descriptor >= 0)
            posix_spawn_file_actions_adddup2(&m_actions, descriptor, number);
    }

    void drop(int descriptor, int number)
    {
        if (descriptor < 0)
            posix_spawn_file_actions_addopen(&m_actions, number, "/dev/null", O_RDWR, 0);
    }

    posix_spawn_file_actions_t m_actions {};
};

class Attributes final {
public:
    Attributes()
    {
        sigset_t signals;
        posix_spawnattr_init(&m_attributes);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
        posix_spawnattr_setflags(
            &m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }

    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const posix_spawnattr_t* get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes {};
};

bool canEnter(const std::string& folder)
{
    struct stat status { };
    return stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode)
        && access(folder.c_str(), X_OK) == 0;
}

// Corvella may have been started in a folder that is in the way there.
std::string folderFor(const std::string& wanted)
{
    if (canEnter(wanted))
        return wanted;
    const char* const home = std::getenv("HOME");
    return home && canEnter(home) ? home : "/";
}

std::vector<char*> inheritedVariables()
{
    const std::string own = std::string(ChildProcess::privateVariable) + '=';
    std::vector<char*> variables;
    for (char** variable = environ; *variable; ++variable) {
        if (!std::string_view(*variable).starts_with(own))
            variables.push_back(*variable);
    }
    variables.push_back(nullptr);
    return variables;
}

}

ChildProcess::Started ChildProcess::start(const std::string& path,
    std::vector<std::string> arguments, const Streams& streams, const std::string& folder)
{
    const auto isCut = [](const std::string& text) { return text.find('\0') != std::string::npos; };
    // It would end there, unnoticed.
    if (isCut(path) || std::ranges::any_of(arguments, isCut))
        return { -1, EINVAL };
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (auto& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    const Actions actions(streams, folderFor(folder));
    const Attributes attributes;
    const auto variables = inheritedVariables();
    Started started;
    started.error = posix_spawn(&started.process, path.c_str(), actions.get(), attributes.get(),
        pointers.data(), variables.data());
    return started;
}
