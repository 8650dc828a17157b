#include "App/Helpers/Launch/DetachedProgram.h"

#include "App/Helpers/Launch/FileStart.h"
#include "App/Helpers/Launch/Glib.h"
#include "App/Platform/Linux/Launch/ChildProcess.h"

#include <cerrno>
#include <cstring>

namespace DetachedProgram {

// As shells do with those that do not say what they are written in.
static bool isScript(const std::string& program)
{
    const auto start = FileStart::bytes(program, 4096);
    return start && !start->empty() && start->find('\0') == std::string::npos;
}

Refusal start(const std::vector<std::string>& arguments, const std::string& folder)
{
    if (arguments.empty())
        return "its command line cannot be understood";
    const auto program = Glib::taken(g_find_program_in_path(arguments.front().c_str()));
    if (program.empty())
        return "its program is missing";
    auto error = ChildProcess::start(program, arguments, {}, folder).error;
    if (error == ENOEXEC && isScript(program)) {
        auto script = arguments;
        script.front() = program;
        script.insert(script.begin(), "sh");
        error = ChildProcess::start("/bin/sh", script, {}, folder).error;
    }
    return error == 0 ? Refusal() : Refusal(std::strerror(error));
}

}
