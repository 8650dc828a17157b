// How hot the machine is, by the limits that its maker set.
#pragma once

#include "App/Platform/ProcessInfo.h"

#include <QString>

namespace ThermalZones {

// That of the worst zone; unknown where none tells both how hot it is and what is too hot. The
// folder is laid out as /sys/class/thermal. May take as long as the hardware does.
ThermalState read(const QString& folder);

}
