#include "App/Platform/Linux/Machine/LinuxProcessInfo.h"

#include "App/Platform/Linux/Machine/ThermalZones.h"

#include <ctime>

using namespace Qt::StringLiterals;

static const auto activeProfile = u"ActiveProfile"_s;

static RemoteProperties::Source profiles(const QString& service, const QString& path)
{
    return { .service = service, .path = path, .interface = service, .names = { activeProfile } };
}

LinuxProcessInfo::LinuxProcessInfo(
    SystemBus& bus, const QString& zones, std::chrono::milliseconds interval)
    : m_zones([zones] { return ThermalZones::read(zones); },
        [this](ThermalState state) { learn(state); }, interval)
    , m_profiles(bus,
          profiles(u"org.freedesktop.UPower.PowerProfiles"_s,
              u"/org/freedesktop/UPower/PowerProfiles"_s))
    , m_oldProfiles(bus, profiles(u"net.hadess.PowerProfiles"_s, u"/net/hadess/PowerProfiles"_s))
{
    for (auto* part : { &m_profiles, &m_oldProfiles })
        connect(part, &Followed::changed, this, &LinuxProcessInfo::readProfile);
}

std::chrono::seconds LinuxProcessInfo::systemUptime() const
{
    timespec now {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::chrono::seconds(now.tv_sec);
}

void LinuxProcessInfo::begin()
{
    m_zones.begin();
    m_profiles.follow();
    m_oldProfiles.follow();
}

void LinuxProcessInfo::end()
{
    m_zones.end();
    m_profiles.unfollow();
    m_oldProfiles.unfollow();
}

void LinuxProcessInfo::learn(ThermalState state)
{
    if (m_thermalState == state)
        return;
    m_thermalState = state;
    Q_EMIT changed();
}

void LinuxProcessInfo::readProfile()
{
    const auto& service
        = m_profiles.state() == RemoteProperties::State::known ? m_profiles : m_oldProfiles;
    const bool isLowPower = service.values()[activeProfile].toString() == u"power-saver"_s;
    if (m_isLowPower == isLowPower)
        return;
    m_isLowPower = isLowPower;
    Q_EMIT changed();
}
