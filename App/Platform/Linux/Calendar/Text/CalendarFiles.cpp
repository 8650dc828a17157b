#include "App/Platform/Linux/Calendar/Text/CalendarFiles.h"

#include "App/Platform/Linux/Files/FolderTree.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <set>
#include <string>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::size_t mostFiles = 200'000;

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

class Search final {
public:
    explicit Search(const TimeBudget& budget)
        : m_budget(budget)
    {
    }

    // The files of a folder only where they are named as calendars are.
    void add(const std::string& path, int depth = 0)
    {
        struct stat status { };
        if (stat(path.c_str(), &status) != 0) {
            m_isComplete = m_isComplete && (errno == ENOENT || errno == ENOTDIR || errno == ELOOP);
            return;
        }
        if (S_ISREG(status.st_mode) && (depth == 0 || isCalendar(path)))
            m_files.emplace_back(status.st_size, path);
        else if (S_ISDIR(status.st_mode) && depth <= FolderTree::deepest)
            addFolder(path, status, depth);
    }

    bool isComplete() const { return m_isComplete; }

    std::vector<QByteArray> bySize()
    {
        std::ranges::sort(m_files);
        std::vector<QByteArray> names;
        names.reserve(m_files.size());
        for (const auto& [size, name] : m_files)
            names.push_back(QByteArray::fromStdString(name));
        return names;
    }

private:
    // Links may lead back to where they are.
    void addFolder(const std::string& path, const struct stat& status, int depth)
    {
        if (!m_folders.emplace(status.st_dev, status.st_ino).second)
            return;
        const std::unique_ptr<DIR, CloseFolder> folder(opendir(path.c_str()));
        m_isComplete = m_isComplete && folder;
        while (folder) {
            if (m_files.size() >= mostFiles || m_budget.isSpent()) {
                m_isComplete = false;
                return;
            }
            const auto* const entry = readdir(folder.get());
            if (!entry)
                return;
            if (concerns(*entry))
                add(path + '/' + static_cast<const char*>(entry->d_name), depth + 1);
        }
    }

    static bool isCalendar(const std::string& name)
    {
        constexpr std::string_view suffix = ".ics";
        return name.size() > suffix.size()
            && strcasecmp(name.c_str() + name.size() - suffix.size(), suffix.data()) == 0;
    }

    static bool concerns(const dirent& entry)
    {
        const std::string name(static_cast<const char*>(entry.d_name));
        const bool mayBeFolder
            = entry.d_type == DT_DIR || entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN;
        return !name.starts_with('.')
            && (mayBeFolder || (entry.d_type == DT_REG && isCalendar(name)));
    }

    const TimeBudget& m_budget;
    bool m_isComplete = true;
    std::set<std::pair<dev_t, ino_t>> m_folders;
    std::vector<std::pair<off_t, std::string>> m_files;
};

}

CalendarFiles::Found CalendarFiles::find(const QStringList& paths, const TimeBudget& budget)
{
    Search search(budget);
    for (const auto& path : paths)
        search.add(QFile::encodeName(path).toStdString());
    return { search.bySize(), search.isComplete() };
}

bool CalendarFiles::read(const QByteArray& file, const TakePiece& take)
{
    static std::array<char, 64 * 1024> piece;
    const int descriptor = open(file.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct stat status { };
    bool isReadable = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    for (bool isWanted = isReadable; isWanted;) {
        const auto count = ::read(descriptor, piece.data(), piece.size());
        if (count < 0 && errno == EINTR)
            continue;
        isReadable = count >= 0;
        isWanted = count > 0 && take({ piece.data(), static_cast<std::size_t>(count) });
    }
    close(descriptor);
    return isReadable;
}
