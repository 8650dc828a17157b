#include "App/Platform/Linux/Machine/SysfsAttribute.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// The kernel gives no attribute more than a page.
static constexpr qsizetype longest = 4096; // Bytes

static std::optional<QByteArray> readRegular(int descriptor)
{
    struct stat status { };
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    QByteArray bytes(longest + 1, Qt::Uninitialized);
    const auto count = read(descriptor, bytes.data(), static_cast<size_t>(bytes.size()));
    if (count < 0 || count > longest)
        return {};
    bytes.truncate(count);
    return bytes.trimmed();
}

std::optional<QByteArray> SysfsAttribute::text(const QString& path)
{
    // Whatever stands in the file's place, opening it waits for nobody.
    const int descriptor
        = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return {};
    auto bytes = readRegular(descriptor);
    close(descriptor);
    return bytes;
}

std::optional<qint64> SysfsAttribute::number(const QString& path)
{
    bool isNumber = false;
    const qint64 value = text(path).value_or(QByteArray()).toLongLong(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}
