// The batteries as UPower tells of them; as somebody else does for as long as it says nothing.
#pragma once

#include "App/Platform/Linux/Bus/RemoteProperties.h"
#include "App/Platform/PowerSources.h"

class UPowerSources final : public PowerSources {
    Q_OBJECT

public:
    UPowerSources(SystemBus& bus, PowerSources& fallback);

    std::optional<QList<PowerSource>> sources() const override { return m_sources; }

private:
    void begin() override;
    void end() override;
    void update();
    bool isSilent() const;
    std::optional<QList<PowerSource>> told() const;
    void fallBack(bool fallsBack);

    PowerSources& m_fallback;
    bool m_fallsBack = false;
    RemoteProperties m_daemon;
    RemoteProperties m_battery; // All of them, as UPower would show them.
    bool m_isFollowed = false;
    std::optional<QList<PowerSource>> m_sources;
};
