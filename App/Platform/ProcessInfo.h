// What the machine says of its own condition.
#pragma once

#include "App/Platform/Followed.h"

#include <chrono>

enum class ThermalState {
    unknown,
    nominal,
    fair,
    serious,
    critical,
};

class ProcessInfo : public Followed {
    Q_OBJECT

public:
    static ProcessInfo& shared(); // Defined in App/Wiring.cpp.

    // Both told from memory, as of the last change that was followed.
    virtual ThermalState thermalState() const = 0;
    virtual bool isLowPowerModeEnabled() const = 0;
    // Since the machine started, without the time that it slept.
    virtual std::chrono::seconds systemUptime() const = 0;
};
