// The operating system's counters, as they stand at the moment of asking. Each answer is none where
// the system has no such counter or does not let it be read.
#pragma once

#include <QHash>
#include <QString>

#include <cstdint>
#include <optional>

// Time that all processors together have spent since the machine started, in ticks. Each counter
// starts again at 0 after 2^32 - 1.
struct ProcessorTicks {
    std::uint32_t user = 0;
    std::uint32_t system = 0;
    std::uint32_t idle = 0;
    std::uint32_t nice = 0;
};

struct MemoryUse {
    std::uint64_t usedBytes = 0; // All that cannot be handed out at once.
    std::uint64_t physicalBytes = 0; // Never 0 in an answer.
};

struct VolumeSpace {
    std::uint64_t availableBytes = 0; // To this user.
    std::uint64_t totalBytes = 0;
};

// Each counter starts again at 0 after 2^32 - 1.
struct InterfaceBytes {
    std::uint32_t received = 0;
    std::uint32_t sent = 0;
};

// The network interfaces that are up and no loopback, by a name that no other interface has: one
// that vanishes and comes back under its old name, counting from 0, has a new one here.
using NetworkBytes = QHash<QString, InterfaceBytes>;

class MachineCounters {
public:
    virtual ~MachineCounters() = default;

    virtual std::optional<ProcessorTicks> processorTicks() = 0;
    virtual std::optional<MemoryUse> memoryUse() = 0;
    virtual std::optional<VolumeSpace> startupVolume() = 0;
    virtual std::optional<NetworkBytes> networkBytes() = 0;
};
