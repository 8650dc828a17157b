#include "App/Platform/Linux/Files/FolderTree.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <set>
#include <sys/stat.h>
#include <utility>

namespace {

constexpr qsizetype mostFolders = 1024;

using Identity = std::pair<dev_t, ino_t>;
using Folder = std::unique_ptr<DIR, int (*)(DIR*)>;

Folder opened(const QByteArray& path)
{
    return { opendir(path.constData()), closedir };
}

bool isFolder(const DIR* const folder, const dirent& entry)
{
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat status { };
    return fstatat(dirfd(const_cast<DIR*>(folder)), entry.d_name, &status, 0) == 0
        && S_ISDIR(status.st_mode);
}

bool isNew(DIR* folder, std::set<Identity>& seen)
{
    struct stat status { };
    return fstat(dirfd(folder), &status) == 0
        && seen.insert({ status.st_dev, status.st_ino }).second;
}

// False when the folder cannot be read.
bool walk(const QByteArray& path, int depth, std::set<Identity>& seen, FolderTree::Plan& plan)
{
    const auto folder = opened(path);
    if (!folder)
        return false;
    if (plan.folders.size() >= mostFolders || !isNew(folder.get(), seen))
        return true;
    plan.folders[path];
    if (depth == FolderTree::deepest)
        return true;
    while (const auto* entry = readdir(folder.get())) {
        const QByteArray name(entry->d_name);
        if (!name.startsWith('.') && isFolder(folder.get(), *entry))
            walk(path + '/' + name, depth + 1, seen, plan);
    }
    return true;
}

void awaitRoot(const QByteArray& root, FolderTree::Plan& plan)
{
    for (auto path = root; path.size() > 1;) {
        const auto slash = path.lastIndexOf('/');
        const auto name = path.mid(slash + 1);
        path = slash > 0 ? path.first(slash) : QByteArray("/");
        struct stat status { };
        if (stat(path.constData(), &status) != 0)
            continue;
        // One that is watched for anything need not wait for something.
        const auto known = plan.folders.constFind(path);
        if (known == plan.folders.cend() || !known->isEmpty())
            plan.folders[path].insert(name);
        return;
    }
}

}

FolderTree::Plan FolderTree::plan(const QList<QByteArray>& roots)
{
    Plan plan;
    std::set<Identity> seen;
    QList<QByteArray> missing;
    for (const auto& root : roots) {
        if (walk(root, 0, seen, plan)) {
            plan.readable.append(root);
            continue;
        }
        plan.isWhole = plan.isWhole && (errno == ENOENT || errno == ENOTDIR);
        missing.append(root);
    }
    for (const auto& root : std::as_const(missing))
        awaitRoot(root, plan);
    return plan;
}
