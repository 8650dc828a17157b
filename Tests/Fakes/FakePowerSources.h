#pragma once

#include "App/Platform/PowerSources.h"

struct FakePowerSources final : PowerSources {
    std::optional<QList<PowerSource>> sources() const override { return list; }
    void begin() override { isFollowed = true; }
    void end() override { isFollowed = false; }

    std::optional<QList<PowerSource>> list = {};
    bool isFollowed = false;
};
