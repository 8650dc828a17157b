#include "App/Helpers/Launch/StartApplication.h"

#include "App/Helpers/Launch/BusActivation.h"
#include "App/Helpers/Launch/CommandLine.h"
#include "App/Helpers/Launch/DetachedProgram.h"
#include "App/Helpers/Launch/Glib.h"
#include "App/Helpers/Launch/InstalledApplications.h"
#include "App/Helpers/Launch/Terminals.h"

static CommandLine::Arguments arguments(const Application& application, const std::string& address)
{
    const auto path = Glib::taken(g_filename_from_uri(address.c_str(), nullptr, nullptr));
    return CommandLine::expanded(CommandLine::split(application.command),
        { .address = address,
            .path = path,
            .name = application.name,
            .icon = application.icon,
            .file = application.file });
}

static Refusal startInTerminal(const Application& application,
    const CommandLine::Arguments& program, const Surroundings& around)
{
    const auto terminal = Terminals::best(InstalledApplications::all(), around);
    if (!terminal)
        return "it needs a terminal, and none is installed";
    auto all = arguments(*terminal, {});
    if (const auto option = Terminals::executeOption(*terminal); !option.empty())
        all.emplace_back(option);
    all.insert(all.end(), program.begin(), program.end());
    return DetachedProgram::start(all, application.folder);
}

Refusal startApplication(
    const Application& application, const std::string& address, const Surroundings& around)
{
    if (application.takesMessages) {
        const auto answer = BusActivation::start(application, address);
        if (answer.isReached || application.command.empty())
            return answer.refusal;
    }
    const auto program = arguments(application, address);
    if (application.needsTerminal && !program.empty())
        return startInTerminal(application, program, around);
    return DetachedProgram::start(program, application.folder);
}
