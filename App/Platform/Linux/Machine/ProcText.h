// What the kernel's tables say, from their first bytes: whatever is cut off or malformed says
// nothing.
#pragma once

#include "App/Platform/MachineCounters.h"

#include <string_view>

namespace ProcText {

// Of all processors together, in ticks.
struct ProcessorTimes {
    std::uint64_t user = 0;
    std::uint64_t nice = 0;
    std::uint64_t system = 0; // With interrupts, and what a hypervisor kept for others.
    std::uint64_t idle = 0; // With the wait for disks.
};

// From /proc/stat.
std::optional<ProcessorTimes> processorTimes(std::string_view stat);

// From /proc/meminfo, which takes a file system's own cache for used though it can be handed out.
std::optional<MemoryUse> memoryUse(std::string_view memInfo, std::uint64_t spareCacheBytes);

// From the statistics of the ZFS cache: what it gives back when memory gets scarce, in bytes.
std::uint64_t spareCacheBytes(std::string_view arcStats);

}
