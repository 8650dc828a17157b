#include "App/System/SystemFooter.h"

#include "App/Platform/ProcessInfo.h"

using namespace Qt::StringLiterals;

static QString name(ThermalState state)
{
    switch (state) {
    case ThermalState::nominal:
        return u"Normal"_s;
    case ThermalState::fair:
        return u"Fair"_s;
    case ThermalState::serious:
        return u"Serious"_s;
    case ThermalState::critical:
        return u"Critical"_s;
    case ThermalState::unknown:
        break;
    }
    return u"Unknown"_s;
}

QString systemFooter(const ProcessInfo& info)
{
    const auto lowPower = info.isLowPowerModeEnabled() ? u" · Low Power Mode"_s : QString();
    const auto hours = std::chrono::duration_cast<std::chrono::hours>(info.systemUptime()).count();
    return u"Thermal: %1%2 · Up %3h"_s.arg(name(info.thermalState()), lowPower).arg(hours);
}
