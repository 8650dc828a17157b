// What the kernel tells of the power supplies of this machine.
#pragma once

#include "App/Platform/PowerSources.h"

namespace PowerSupplies {

// All batteries as the one that they are to the machine; empty without any that tells its charge.
// The folder is laid out as /sys/class/power_supply. May take as long as the hardware does.
QList<PowerSource> read(const QString& folder);

}
