#pragma once

#include "App/Platform/ProcessInfo.h"

struct FakeProcessInfo final : ProcessInfo {
    ThermalState thermalState() const override { return state; }
    bool isLowPowerModeEnabled() const override { return isLowPower; }
    std::chrono::seconds systemUptime() const override { return uptime; }
    void begin() override { isFollowed = true; }
    void end() override { isFollowed = false; }

    ThermalState state = ThermalState::unknown;
    bool isLowPower = false;
    std::chrono::seconds uptime { 0 };
    bool isFollowed = false;
};
