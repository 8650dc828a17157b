// The counters of the Linux kernel.
#pragma once

#include "App/Platform/Linux/Machine/MountedVolume.h"
#include "App/Platform/Linux/Machine/NetlinkCounters.h"
#include "App/Platform/Linux/Machine/ProcFile.h"
#include "App/Platform/Linux/Machine/RisingCounter.h"

struct LinuxCounterPaths {
    QString stat = QStringLiteral("/proc/stat");
    QString memInfo = QStringLiteral("/proc/meminfo");
    QString arcStats = QStringLiteral("/proc/spl/kstat/zfs/arcstats"); // Only where ZFS is used.
    QString volume = QStringLiteral("/");
};

class LinuxCounters final : public MachineCounters {
public:
    explicit LinuxCounters(const LinuxCounterPaths& paths = {});

    std::optional<ProcessorTicks> processorTicks() override;
    std::optional<MemoryUse> memoryUse() override;
    std::optional<VolumeSpace> startupVolume() override { return m_volume.space(); }
    std::optional<NetworkBytes> networkBytes() override { return m_network.read(); }

private:
    ProcFile m_stat;
    ProcFile m_memInfo;
    ProcFile m_arcStats;
    MountedVolume m_volume;
    NetlinkCounters m_network;

    // The kernel corrects waiting times downwards, and begins anew for an unplugged processor.
    RisingCounter m_user;
    RisingCounter m_system;
    RisingCounter m_idle;
    RisingCounter m_nice;
};
