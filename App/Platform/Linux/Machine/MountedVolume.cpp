#include "App/Platform/Linux/Machine/MountedVolume.h"

#include <QFile>

#include <algorithm>
#include <limits>
#include <sys/statvfs.h>

namespace {

// File systems of other makers say what they like, up to all ones for "unknown".
std::uint64_t cappedProduct(std::uint64_t blocks, std::uint64_t blockSize)
{
    std::uint64_t bytes = 0;
    const bool overflows = __builtin_mul_overflow(blocks, blockSize, &bytes);
    return overflows ? std::numeric_limits<std::uint64_t>::max() : bytes;
}

}

MountedVolume::MountedVolume(const QString& path)
    : m_path(QFile::encodeName(path))
{
}

std::optional<VolumeSpace> MountedVolume::space() const
{
    struct statvfs figures { };
    if (::statvfs(m_path.constData(), &figures) != 0)
        return {};
    return spaceIn(figures);
}

std::optional<VolumeSpace> MountedVolume::spaceIn(const struct statvfs& figures)
{
    const auto total = cappedProduct(figures.f_blocks, figures.f_frsize);
    if (total == 0)
        return {};
    return VolumeSpace { std::min(cappedProduct(figures.f_bavail, figures.f_frsize), total),
        total };
}
