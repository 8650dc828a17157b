#include "App/Platform/Linux/Machine/UPowerSources.h"

#include <chrono>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

static const auto service = u"org.freedesktop.UPower"_s;

// Values of UPower's own.
static constexpr uint batteryType = 2;
static constexpr uint upsType = 3;
static constexpr uint chargingState = 1;

// Thousandths of a percent: what shows as 20 % may well be less.
static constexpr int parts = 1000;

// A machine that was unplugged just now hardly draws anything yet.
static constexpr auto longestTime = std::chrono::minutes(240h);

static std::optional<qint64> capacity(const QVariant& percentage)
{
    bool isNumber = false;
    const double value = percentage.toDouble(&isNumber);
    if (!isNumber || !(value >= 0 && value <= 100))
        return {};
    return std::llround(value * parts);
}

static std::optional<int> minutes(const QVariant& seconds)
{
    const qint64 value = seconds.toLongLong() / 60;
    if (value <= 0 || value > longestTime.count())
        return {};
    return static_cast<int>(value);
}

UPowerSources::UPowerSources(SystemBus& bus, PowerSources& fallback)
    : m_fallback(fallback)
    , m_daemon(bus,
          {
              .service = service,
              .path = u"/org/freedesktop/UPower"_s,
              .interface = service,
              .names = { u"OnBattery"_s },
              .startsService = true,
          })
    , m_battery(bus,
          {
              .service = service,
              .path = u"/org/freedesktop/UPower/devices/DisplayDevice"_s,
              .interface = service + u".Device"_s,
              .names = { u"Type"_s, u"IsPresent"_s, u"Percentage"_s, u"State"_s, u"TimeToEmpty"_s },
              .startsService = true,
          })
{
    for (auto* part : std::initializer_list<Followed*> { &m_daemon, &m_battery, &m_fallback })
        connect(part, &Followed::changed, this, &UPowerSources::update);
}

void UPowerSources::begin()
{
    m_isFollowed = true;
    m_daemon.follow();
    m_battery.follow();
    update();
}

void UPowerSources::end()
{
    m_isFollowed = false;
    m_daemon.unfollow();
    m_battery.unfollow();
    fallBack(false);
}

void UPowerSources::update()
{
    // The fallback may have other followers.
    if (!m_isFollowed)
        return;
    fallBack(isSilent());
    const auto now = m_fallsBack ? m_fallback.sources() : told();
    if (!now || m_sources == now)
        return;
    m_sources = now;
    Q_EMIT changed();
}

bool UPowerSources::isSilent() const
{
    constexpr auto absent = RemoteProperties::State::absent;
    return m_daemon.state() == absent || m_battery.state() == absent;
}

std::optional<QList<PowerSource>> UPowerSources::told() const
{
    constexpr auto unknown = RemoteProperties::State::unknown;
    if (m_daemon.state() == unknown || m_battery.state() == unknown)
        return {};
    const auto battery = m_battery.values();
    const uint type = battery[u"Type"_s].toUInt();
    if ((type != batteryType && type != upsType) || !battery[u"IsPresent"_s].toBool())
        return QList<PowerSource>();
    return QList<PowerSource> { {
        .currentCapacity = capacity(battery[u"Percentage"_s]),
        .maxCapacity = qint64 { 100 } * parts,
        .isCharging = battery[u"State"_s].toUInt() == chargingState,
        .isOnMains = !m_daemon.values()[u"OnBattery"_s].toBool(),
        .minutesToEmpty = minutes(battery[u"TimeToEmpty"_s]),
    } };
}

void UPowerSources::fallBack(bool fallsBack)
{
    if (m_fallsBack == fallsBack)
        return;
    m_fallsBack = fallsBack;
    if (fallsBack)
        m_fallback.follow();
    else
        m_fallback.unfollow();
}
