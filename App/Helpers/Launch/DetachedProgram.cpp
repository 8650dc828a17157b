#include "App/Helpers/Launch/DetachedProgram.h"

#include "App/Helpers/Launch/FileStart.h"
#include "App/Helpers/Launch/Glib.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace DetachedProgram {

namespace {

constexpr const char* nowhere = "/dev/null";
constexpr const char* shell = "/bin/sh";

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
    posix_spawnattr_t m_attributes;
};

// Whoever reads what we say would wait for a program that could still say more.
class Files final {
public:
    explicit Files(const std::string& folder)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, nowhere, O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, STDOUT_FILENO, nowhere, O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, nowhere, O_WRONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
        posix_spawn_file_actions_addchdir_np(&m_actions, folder.c_str());
    }
    ~Files() { posix_spawn_file_actions_destroy(&m_actions); }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;

    const posix_spawn_file_actions_t* get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

bool canEnter(const std::string& folder)
{
    struct stat status = {};
    return ::stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode)
        && ::access(folder.c_str(), X_OK) == 0;
}

std::string folderFor(const std::string& wanted)
{
    if (!wanted.empty() && canEnter(wanted))
        return wanted;
    const std::string home(g_get_home_dir());
    return canEnter(home) ? home : "/";
}

int spawn(const std::string& program, const std::vector<std::string>& arguments,
    const std::string& folder)
{
    std::vector<char*> texts;
    for (const auto& argument : arguments)
        texts.push_back(const_cast<char*>(argument.c_str()));
    texts.push_back(nullptr);
    pid_t pid = 0;
    return posix_spawn(
        &pid, program.c_str(), Files(folder).get(), Attributes().get(), texts.data(), environ);
}

// As shells do with those that do not say what they are written in.
bool isScript(const std::string& program)
{
    const auto start = FileStart::bytes(program, 4096);
    return start && !start->empty() && start->find('\0') == std::string::npos;
}

}

Refusal start(const std::vector<std::string>& arguments, const std::string& folder)
{
    if (arguments.empty())
        return "its command line cannot be understood";
    const auto program = Glib::taken(g_find_program_in_path(arguments.front().c_str()));
    if (program.empty())
        return "its program is missing";
    const auto home = folderFor(folder);
    auto error = spawn(program, arguments, home);
    if (error == ENOEXEC && isScript(program)) {
        auto script = arguments;
        script.front() = program;
        script.insert(script.begin(), shell);
        error = spawn(shell, script, home);
    }
    return error == 0 ? Refusal() : Refusal(std::strerror(error));
}

}
