// The machine's condition, as the kernel and the power profiles' service tell it.
#pragma once

#include "App/Platform/Linux/Background/BackgroundReading.h"
#include "App/Platform/Linux/Bus/RemoteProperties.h"
#include "App/Platform/ProcessInfo.h"

class LinuxProcessInfo final : public ProcessInfo {
    Q_OBJECT

public:
    explicit LinuxProcessInfo(SystemBus& bus,
        const QString& zones = QStringLiteral("/sys/class/thermal"),
        std::chrono::milliseconds interval = std::chrono::seconds(10));

    ThermalState thermalState() const override { return m_thermalState; }
    bool isLowPowerModeEnabled() const override { return m_isLowPower; }
    std::chrono::seconds systemUptime() const override;

private:
    void begin() override;
    void end() override;
    void learn(ThermalState state);
    void readProfile();

    ThermalState m_thermalState = ThermalState::unknown;
    bool m_isLowPower = false;
    BackgroundReading<ThermalState> m_zones;
    RemoteProperties m_profiles;
    RemoteProperties m_oldProfiles; // The same service under its first name.
};
