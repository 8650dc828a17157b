#include "App/Helpers/Launch/InstalledApplications.h"

#include "App/Helpers/Launch/CommandLine.h"
#include "App/Helpers/Launch/FileStart.h"
#include "App/Helpers/Launch/Glib.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string_view>
#include <sys/stat.h>

namespace InstalledApplications {

namespace {

namespace fs = std::filesystem;

constexpr size_t longestEntry = 1 << 20; // Bytes.
constexpr size_t mostLooks = 20'000;
constexpr std::string_view suffix = ".desktop";
constexpr const char* group = G_KEY_FILE_DESKTOP_GROUP;

// The entries below a folder. Each folder is read once, whatever links lead to it, and those near
// the top before those below: one that leads to all of the disk must not hide the others.
class Folder final {
public:
    explicit Folder(const fs::path& path)
        : m_prefix(path.native().size() + 1)
        , m_rest { path }
    {
        for (size_t next = 0; next < m_rest.size(); ++next)
            read(fs::path(m_rest[next]));
    }

    const std::vector<std::string>& files() const { return m_files; }
    std::string id(const std::string& file) const
    {
        auto id = file.substr(m_prefix);
        std::ranges::replace(id, '/', '-');
        return id;
    }

private:
    void read(const fs::path& folder)
    {
        struct stat status = {};
        if (::stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)
            || !m_seen.insert({ status.st_dev, status.st_ino }).second)
            return;
        std::error_code error;
        std::set<fs::path> inside;
        for (fs::directory_iterator each(folder, error), end;
             !error && each != end && m_looks < mostLooks; each.increment(error), ++m_looks)
            inside.insert(each->path());
        for (const auto& path : inside) {
            if (path.native().ends_with(suffix))
                m_files.push_back(path.native());
            else
                m_rest.push_back(path);
        }
    }

    size_t m_prefix;
    size_t m_looks = 0;
    std::vector<fs::path> m_rest;
    std::set<std::pair<dev_t, ino_t>> m_seen;
    std::vector<std::string> m_files;
};

std::string text(GKeyFile* entry, const char* key)
{
    return Glib::taken(g_key_file_get_string(entry, group, key, nullptr));
}

bool isTrue(GKeyFile* entry, const char* key)
{
    return g_key_file_get_boolean(entry, group, key, nullptr);
}

std::vector<std::string> list(GKeyFile* entry, const char* key)
{
    return Glib::taken(g_key_file_get_string_list(entry, group, key, nullptr, nullptr));
}

bool isInstalled(const std::string& program)
{
    return !Glib::taken(g_find_program_in_path(program.c_str())).empty();
}

// The desktop's names are separated by colons.
bool namesDesktop(const std::vector<std::string>& desktops)
{
    const auto* const current = g_getenv("XDG_CURRENT_DESKTOP");
    const auto names = Glib::taken(g_strsplit(current ? current : "", ":", -1));
    return std::ranges::any_of(names,
        [&](const auto& name) { return std::ranges::find(desktops, name) != desktops.end(); });
}

bool isShown(GKeyFile* entry)
{
    const bool isElsewhere = g_key_file_has_key(entry, group, "OnlyShowIn", nullptr)
        && !namesDesktop(list(entry, "OnlyShowIn"));
    return !isTrue(entry, "NoDisplay") && !isElsewhere && !namesDesktop(list(entry, "NotShowIn"));
}

bool canRun(GKeyFile* entry, const Application& application)
{
    const auto needed = text(entry, "TryExec");
    if (!needed.empty() && !isInstalled(needed))
        return false;
    if (application.command.empty())
        return application.takesMessages;
    const auto arguments = CommandLine::split(application.command);
    return !arguments.empty() && isInstalled(arguments.front());
}

Application described(GKeyFile* entry, const std::string& file, const std::string& id)
{
    auto keywords = list(entry, "Keywords");
    const auto own = Glib::taken(
        g_key_file_get_locale_string_list(entry, group, "Keywords", nullptr, nullptr, nullptr));
    keywords.insert(keywords.end(), own.begin(), own.end());
    return { .id = id,
        .file = file,
        .name = Glib::taken(g_key_file_get_locale_string(entry, group, "Name", nullptr, nullptr)),
        .plainName = text(entry, "Name"),
        .command = text(entry, "Exec"),
        .folder = text(entry, "Path"),
        .icon = text(entry, "Icon"),
        .categories = list(entry, "Categories"),
        .keywords = std::move(keywords),
        .isShown = isShown(entry),
        .needsTerminal = isTrue(entry, "Terminal"),
        .takesMessages = isTrue(entry, "DBusActivatable") };
}

}

std::optional<Application> fromEntry(const std::string& file, const std::string& id)
{
    const auto content = FileStart::bytes(file, longestEntry + 1);
    const Glib::KeyFile entry(g_key_file_new());
    if (!content || content->size() > longestEntry
        || !g_key_file_load_from_data(
            entry.get(), content->data(), content->size(), G_KEY_FILE_NONE, nullptr)
        || text(entry.get(), "Type") != G_KEY_FILE_DESKTOP_TYPE_APPLICATION
        || isTrue(entry.get(), "Hidden"))
        return {};
    auto application = described(entry.get(), file, id);
    if (!canRun(entry.get(), application))
        return {};
    return application;
}

Applications all()
{
    auto roots = Glib::taken(g_strdupv(const_cast<char**>(g_get_system_data_dirs())));
    roots.insert(roots.begin(), g_get_user_data_dir());
    // The user's own entry is taken before one of that id of the system, also when it deletes it.
    std::map<std::string, std::string> files;
    for (const auto& root : roots) {
        const Folder folder(fs::path(root) / "applications");
        for (const auto& file : folder.files())
            files.try_emplace(folder.id(file), file);
    }
    Applications applications;
    for (const auto& [id, file] : files) {
        if (auto application = fromEntry(file, id))
            applications.push_back(std::move(*application));
    }
    return applications;
}

}
