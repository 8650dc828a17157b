// The batteries that this machine runs on; those of mice, headsets and the like are none of them.
#pragma once

#include "App/Platform/Followed.h"

#include <QList>

#include <optional>

struct PowerSource {
    // In a unit of the source's own; its charge is their ratio.
    std::optional<qint64> currentCapacity = {};
    std::optional<qint64> maxCapacity = {};
    bool isCharging = false;
    bool isOnMains = false;
    // Left on battery; 0 or less while that is still being worked out.
    std::optional<int> minutesToEmpty = {};

    bool operator==(const PowerSource&) const = default;
};

class PowerSources : public Followed {
    Q_OBJECT

public:
    // None while nothing is known yet. Told from memory: asking costs nothing.
    virtual std::optional<QList<PowerSource>> sources() const = 0;
};
