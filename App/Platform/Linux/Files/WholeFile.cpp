#include "App/Platform/Linux/Files/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

constexpr int mostBadFiles = 100;
constexpr int mostLinks = 16;

class Descriptor final {
public:
    explicit Descriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }

    Q_DISABLE_COPY_MOVE(Descriptor)

    ~Descriptor()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    operator int() const { return m_descriptor; }

    // Some file systems only say at the end that the disk was full.
    bool close() { return ::close(std::exchange(m_descriptor, -1)) == 0; }

private:
    int m_descriptor;
};

WholeFile::State refusal()
{
    switch (errno) {
    case ENOENT:
    case ENOTDIR:
        return WholeFile::State::missing;
    case EACCES:
    case EPERM:
    case ELOOP:
    case ENXIO:
    case ENODEV:
    case EISDIR:
        return WholeFile::State::unfit;
    default:
        return WholeFile::State::unreachable;
    }
}

bool isFit(int descriptor, qint64 most)
{
    struct stat status { };
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size <= most;
}

WholeFile::Content readAll(int descriptor, qint64 most)
{
    QByteArray bytes;
    char block[16384];
    while (bytes.size() <= most) {
        const auto count = ::read(descriptor, block, sizeof block);
        if (count == 0)
            return { WholeFile::State::whole, bytes };
        if (count < 0 && errno != EINTR)
            return { refusal(), {} };
        bytes.append(block, std::max<ssize_t>(count, 0));
    }
    return { WholeFile::State::unfit, {} };
}

bool writeAll(int descriptor, const QByteArray& bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const auto count = ::write(
            descriptor, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (count < 0 && errno != EINTR)
            return false;
        done += std::max<ssize_t>(count, 0);
    }
    return true;
}

bool writeNew(const QByteArray& name, const QByteArray& bytes)
{
    ::unlink(name.constData());
    Descriptor file(
        ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    return file >= 0 && writeAll(file, bytes) && fdatasync(file) == 0 && file.close();
}

bool renameToNothing(const QByteArray& from, const QByteArray& to)
{
    if (renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    struct stat status { };
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    if (lstat(to.constData(), &status) != 0)
        return ::rename(from.constData(), to.constData()) == 0;
    errno = EEXIST;
    return false;
}

}

WholeFile::Content WholeFile::read(const QString& path, qint64 most)
{
    const Descriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file < 0)
        return { refusal(), {} };
    return isFit(file, most) ? readAll(file, most) : Content { State::unfit, {} };
}

bool WholeFile::replace(const QString& path, const QByteArray& bytes)
{
    const auto name = QFile::encodeName(path);
    const auto temporary = name + ".tmp";
    if (writeNew(temporary, bytes) && ::rename(temporary.constData(), name.constData()) == 0)
        return true;
    const int why = errno;
    ::unlink(temporary.constData());
    errno = why;
    return false;
}

bool WholeFile::setAside(const QString& path)
{
    const auto from = QFile::encodeName(path);
    for (int number = 0; number < mostBadFiles; ++number) {
        const auto suffix = number == 0 ? ".bad" : ".bad-" + QByteArray::number(number);
        if (renameToNothing(from, from + suffix))
            return true;
        if (errno != EEXIST)
            return errno == ENOENT;
    }
    return false;
}

bool WholeFile::makeFolder(const QString& folder)
{
    if (QFileInfo(folder).isDir())
        return true;
    QDir().mkpath(QFileInfo(folder).path());
    return ::mkdir(QFile::encodeName(folder).constData(), S_IRWXU) == 0 || errno == EEXIST;
}

QString WholeFile::behindLinks(const QString& path)
{
    namespace fs = std::filesystem;
    std::error_code error;
    fs::path file(QFile::encodeName(path).toStdString());
    for (int links = 0; fs::is_symlink(fs::symlink_status(file, error)); ++links) {
        if (links == mostLinks)
            return path;
        file = file.parent_path() / fs::read_symlink(file, error);
    }
    const auto type = fs::status(file, error).type();
    const bool usable = type == fs::file_type::regular || type == fs::file_type::not_found;
    return usable ? QFile::decodeName(QByteArray::fromStdString(file.string())) : path;
}
