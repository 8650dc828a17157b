#include "App/Helpers/Launch/OpenUrl.h"

#include "App/Helpers/Launch/DetachedProgram.h"
#include "App/Helpers/Launch/FileStart.h"
#include "App/Helpers/Launch/Glib.h"
#include "App/Helpers/Launch/InstalledApplications.h"
#include "App/Helpers/Launch/StartApplication.h"
#include "App/Helpers/Launch/UserChoices.h"

namespace OpenUrl {

static Refusal startFor(const std::optional<Application>& application, const std::string& address,
    const Surroundings& around)
{
    if (!application)
        return "no program is installed that opens it";
    return startApplication(*application, address, around);
}

// Empty for none, and for one on another machine.
static std::string localPath(const std::string& address)
{
    char* name = nullptr;
    auto path = Glib::taken(g_filename_from_uri(address.c_str(), &name, nullptr));
    const auto host = Glib::taken(name);
    const bool isHere = host.empty() || g_ascii_strcasecmp(host.c_str(), "localhost") == 0
        || host == g_get_host_name();
    return isHere ? path : std::string();
}

static Refusal openEntry(const std::string& path, const Surroundings& around)
{
    const auto application
        = InstalledApplications::fromEntry(path, path.substr(path.rfind('/') + 1));
    if (!application)
        return "it is no application that can run here";
    return startApplication(*application, {}, around);
}

static Refusal openFile(
    const std::string& path, const std::string& address, const Surroundings& around)
{
    const auto kind = FileStart::kind(path);
    if (kind == FileStart::Kind::missing)
        return "there is no such file";
    if (kind == FileStart::Kind::other)
        return "it is no file or folder";
    if (kind == FileStart::Kind::folder)
        return startFor(UserChoices::forFile(path), address, around);
    // Those that can be run, too: their first line is only there to have them opened.
    if (path.ends_with(".desktop"))
        return openEntry(path, around);
    if (kind == FileStart::Kind::program)
        return DetachedProgram::start({ path });
    return startFor(UserChoices::forFile(path), address, around);
}

std::string scheme(const std::string& address)
{
    const auto name = Glib::taken(g_uri_parse_scheme(address.c_str()));
    return name.empty() ? name : Glib::taken(g_ascii_strdown(name.c_str(), -1));
}

Refusal byScheme(const std::string& address, const Surroundings& around)
{
    return startFor(UserChoices::forScheme(scheme(address)), address, around);
}

Refusal open(const std::string& address, const Surroundings& around)
{
    const auto name = scheme(address);
    if (name.empty())
        return "it is no address";
    if (name != "file")
        return byScheme(address, around);
    const auto path = localPath(address);
    return path.empty() ? "it is no address of a file here" : openFile(path, address, around);
}

}
