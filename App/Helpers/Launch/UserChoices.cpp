#include "App/Helpers/Launch/UserChoices.h"

#include "App/Helpers/Launch/FileStart.h"
#include "App/Helpers/Launch/Glib.h"
#include "App/Helpers/Launch/InstalledApplications.h"

#include <gio/gdesktopappinfo.h>

namespace UserChoices {

// As much as any file is known by.
static constexpr size_t longestStart = size_t { 16 } * 1024; // Bytes.

struct Entry {
    std::string id;
    std::string file;
};

static Entry entryFor(const std::string& type)
{
    auto* const app = g_app_info_get_default_for_type(type.c_str(), FALSE);
    if (!app)
        return {};
    const auto* const id = g_app_info_get_id(app);
    const auto* const file = g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(app));
    Entry entry { id ? id : "", file ? file : "" };
    g_object_unref(app);
    return entry;
}

static std::optional<Application> forType(const std::string& type)
{
    const auto entry = entryFor(type);
    return InstalledApplications::fromEntry(entry.file, entry.id);
}

static std::string typeOf(const std::string& path)
{
    const auto start = FileStart::bytes(path, longestStart).value_or(std::string());
    gboolean isUncertain = FALSE;
    const auto type = Glib::taken(g_content_type_guess(
        path.c_str(), reinterpret_cast<const guchar*>(start.data()), start.size(), &isUncertain));
    // Nothing in it, and a name that says nothing: a text that is still to be written.
    const bool isBlank = start.empty() && (isUncertain || type == "application/x-zerosize");
    return isBlank ? "text/plain" : type;
}

Surroundings surroundings()
{
    const auto* const desktops = g_getenv("XDG_CURRENT_DESKTOP");
    return { .desktops = desktops ? desktops : "",
        .defaultFor = [](const std::string& type) { return entryFor(type).id; },
        .hasProgram =
            [](const std::string& program) {
                return !Glib::taken(g_find_program_in_path(program.c_str())).empty();
            } };
}

std::optional<Application> forScheme(const std::string& scheme)
{
    return forType("x-scheme-handler/" + scheme);
}

std::optional<Application> forFile(const std::string& path)
{
    return forType(
        FileStart::kind(path) == FileStart::Kind::folder ? "inode/directory" : typeOf(path));
}

}
