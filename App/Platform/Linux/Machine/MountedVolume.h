// The space of the volume that holds a path.
#pragma once

#include "App/Platform/MachineCounters.h"

#include <QByteArray>

struct statvfs;

class MountedVolume final {
public:
    explicit MountedVolume(const QString& path);

    // None where there is no such path, or nothing is stored there.
    std::optional<VolumeSpace> space() const;

    static std::optional<VolumeSpace> spaceIn(const struct statvfs& figures);

private:
    QByteArray m_path;
};
