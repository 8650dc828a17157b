// Opens an address, or starts an application by its name, with what the user has installed: a
// program of its own, so that GIO stays out of the resident one, and what holds it up can hold up
// nothing but this.
#include "App/Helpers/Launch/ApplicationNames.h"
#include "App/Helpers/Launch/FindApplication.h"
#include "App/Helpers/Launch/InstalledApplications.h"
#include "App/Helpers/Launch/OpenUrl.h"
#include "App/Helpers/Launch/StartApplication.h"
#include "App/Helpers/Launch/UserChoices.h"
#include "App/Helpers/Launch/Wording.h"
#include "App/Helpers/SettingsPrograms.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

// A service that has not answered by then is not going to.
constexpr unsigned longestRun = 30;
constexpr std::string_view settingsScheme = "x-apple.systempreferences";

void giveUp(int)
{
    static constexpr std::string_view text = "Nothing answered in time.\n";
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
    ::_exit(1);
}

// A mask that we came with would keep the alarm from us.
void takeSignals()
{
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGALRM, giveUp);
    alarm(longestRun);
}

std::optional<Application> settings(const Surroundings& around)
{
    const auto applications = InstalledApplications::all();
    for (const auto& entry : SettingsPrograms::candidates(around.desktops)) {
        const auto found = std::ranges::find(applications, entry, &Application::id);
        if (found != applications.end() && found->isShown)
            return *found;
    }
    const auto any = std::ranges::find_if(applications, [](const Application& each) {
        const auto& categories = each.categories;
        return each.isShown && std::ranges::find(categories, "Settings") != categories.end();
    });
    return any != applications.end() ? std::optional(*any) : std::nullopt;
}

Refusal openLimited(const std::string& address)
{
    const auto around = UserChoices::surroundings();
    const auto scheme = OpenUrl::scheme(address);
    // Files and programs are nothing that a calendar may open.
    if (scheme != "http" && scheme != "https" && scheme != settingsScheme)
        return "neither a web address nor that of the settings";
    auto refusal = OpenUrl::byScheme(address, around);
    if (!refusal || scheme != settingsScheme)
        return refusal;
    const auto program = settings(around);
    return program ? startApplication(*program, {}, around) : refusal;
}

// What to say when it was not opened; empty when it was.
std::string openAddress(const std::string& address)
{
    const auto refusal = openLimited(address);
    return refusal ? Wording::notOpened(address, *refusal) : std::string();
}

std::string openUrl(const std::string& url)
{
    const auto refusal = OpenUrl::open(url, UserChoices::surroundings());
    return refusal ? Wording::notOpened(url, *refusal) : std::string();
}

std::string openApplication(const std::string& name)
{
    const auto around = UserChoices::surroundings();
    const auto applications = InstalledApplications::all();
    const auto found = findApplication(name, applications, around);
    if (!found)
        return Wording::notFound(name, ApplicationNames::similar(applications, name));
    const auto refusal = startApplication(*found, {}, around);
    return refusal ? Wording::notStarted(found->name, *refusal) : std::string();
}

int said(const std::string& text)
{
    if (!text.empty())
        std::fprintf(stderr, "%s\n", text.c_str());
    return text.empty() ? 0 : 1;
}

}

int main(int argc, char** argv)
{
    static constexpr std::string_view usage
        = "Usage: open ADDRESS\n       open -a NAME\n       open -u URL";
    takeSignals();
    if (argc == 2 && argv[1] == std::string_view("--help")) {
        std::puts(usage.data());
        return 0;
    }
    if (argc == 2)
        return said(openAddress(argv[1]));
    const std::string_view form(argc == 3 ? argv[1] : "");
    if (form == "-a")
        return said(openApplication(argv[2]));
    if (form == "-u")
        return said(openUrl(argv[2]));
    return said(std::string(usage));
}
