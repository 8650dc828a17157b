#include "App/Platform/Linux/Machine/LinuxCounters.h"

#include "App/Platform/Linux/Machine/ProcText.h"

#include <array>

LinuxCounters::LinuxCounters(const LinuxCounterPaths& paths)
    : m_stat(paths.stat)
    , m_memInfo(paths.memInfo)
    , m_arcStats(paths.arcStats)
    , m_volume(paths.volume)
{
}

std::optional<ProcessorTicks> LinuxCounters::processorTicks()
{
    std::array<char, 512> buffer; // The sums are the first line.
    const auto times = ProcText::processorTimes(m_stat.read(buffer));
    if (!times)
        return {};
    return ProcessorTicks { .user = m_user.follow(times->user),
        .system = m_system.follow(times->system),
        .idle = m_idle.follow(times->idle),
        .nice = m_nice.follow(times->nice) };
}

std::optional<MemoryUse> LinuxCounters::memoryUse()
{
    std::array<char, 4096> buffer;
    const auto spare = ProcText::spareCacheBytes(m_arcStats.read(buffer));
    return ProcText::memoryUse(m_memInfo.read(buffer), spare);
}
