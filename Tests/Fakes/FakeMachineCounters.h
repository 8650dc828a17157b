#pragma once

#include "App/Platform/MachineCounters.h"

struct FakeMachineCounters final : MachineCounters {
    std::optional<ProcessorTicks> processorTicks() override { return ticks; }
    std::optional<MemoryUse> memoryUse() override { return memory; }
    std::optional<VolumeSpace> startupVolume() override { return volume; }
    std::optional<NetworkBytes> networkBytes() override { return network; }

    std::optional<ProcessorTicks> ticks = {};
    std::optional<MemoryUse> memory = {};
    std::optional<VolumeSpace> volume = {};
    std::optional<NetworkBytes> network = {};
};
