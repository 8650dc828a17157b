#include "App/Platform/Linux/Machine/PowerSupplies.h"

#include "App/Platform/Linux/Machine/SysfsAttribute.h"

#include <QDir>

#include <algorithm>
#include <chrono>
#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// No machine has more; a folder of something else may.
constexpr qsizetype mostSupplies = 64;

// In millionths of watt or ampere, with hours or not: enough for a million watt hours, and its sums
// stay far from overflowing.
constexpr qint64 mostUnits = 1'000'000'000'000;

// A machine that was unplugged just now hardly draws anything yet.
constexpr auto longestTime = std::chrono::minutes(240h);

struct Charge {
    qint64 now = 0;
    qint64 full = 0;
    qint64 anHour = 0; // 0 if not known.
};

struct Battery {
    QByteArray status;
    std::optional<Charge> energy;
    std::optional<Charge> charge;
    std::optional<Charge> percent; // Missing only where nothing usable is told.
    std::optional<qint64> secondsLeft;
};

struct Supplies {
    QList<Battery> batteries;
    bool tellsOfMains = false;
    bool isOnMains = false;
};

std::optional<Charge> amount(
    std::optional<qint64> now, std::optional<qint64> full, std::optional<qint64> anHour)
{
    if (!now || !full || *now < 0 || *full <= 0 || *full > mostUnits)
        return {};
    // Some drivers count what flows out as negative.
    const qint64 rate = std::clamp(anHour.value_or(0), -mostUnits, mostUnits);
    return Charge { std::min(*now, *full), *full, std::abs(rate) };
}

class Supply final {
public:
    explicit Supply(const QString& folder)
        : m_folder(folder)
    {
    }

    QByteArray text(const QString& name) const
    {
        return SysfsAttribute::text(m_folder + u'/' + name).value_or(QByteArray());
    }

    std::optional<qint64> number(const QString& name) const
    {
        return SysfsAttribute::number(m_folder + u'/' + name);
    }

    // A mouse tells of its battery in the same place.
    bool isOfTheMachine() const { return text(u"scope"_s) != "Device"; }

    Battery battery() const
    {
        Battery battery {
            .status = text(u"status"_s),
            .energy
            = amount(number(u"energy_now"_s), number(u"energy_full"_s), number(u"power_now"_s)),
            .charge
            = amount(number(u"charge_now"_s), number(u"charge_full"_s), number(u"current_now"_s)),
            .percent = amount(number(u"capacity"_s), 100, 0),
            .secondsLeft = number(u"time_to_empty_now"_s),
        };
        for (const auto& unit : { battery.energy, battery.charge }) {
            if (!battery.percent && unit)
                battery.percent = Charge { unit->now * 100 / unit->full, 100, 0 };
        }
        return battery;
    }

private:
    QString m_folder;
};

Supplies readAll(const QString& folder)
{
    Supplies supplies;
    const auto names = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const auto& name : names.first(std::min(names.size(), mostSupplies))) {
        const Supply supply(folder + u'/' + name);
        const auto type = supply.text(u"type"_s);
        if (type.isEmpty() || !supply.isOfTheMachine())
            continue;
        if (type == "Battery") {
            const auto battery = supply.battery();
            if (battery.percent && supply.number(u"present"_s) != 0)
                supplies.batteries.append(battery);
        } else if (type == "Mains" || type == "Wireless" || type.startsWith("USB")) {
            supplies.tellsOfMains = true;
            supplies.isOnMains |= supply.number(u"online"_s).value_or(0) > 0;
        }
    }
    return supplies;
}

// None unless every battery tells it: units do not add up.
std::optional<Charge> sum(const QList<Battery>& batteries, std::optional<Charge> Battery::*unit)
{
    Charge total;
    for (const auto& battery : batteries) {
        const auto& part = battery.*unit;
        if (!part)
            return {};
        total.now += part->now;
        total.full += part->full;
        total.anHour += part->anHour;
    }
    return total;
}

Charge sum(const QList<Battery>& batteries)
{
    for (const auto unit : { &Battery::energy, &Battery::charge }) {
        if (const auto total = sum(batteries, unit))
            return *total;
    }
    return sum(batteries, &Battery::percent).value_or(Charge());
}

bool isAny(const QList<Battery>& batteries, const char* status)
{
    return std::ranges::any_of(
        batteries, [status](const Battery& battery) { return battery.status == status; });
}

// Where no supply tells of the mains, the batteries show it by what they do.
bool isOnMains(const Supplies& supplies)
{
    if (supplies.tellsOfMains)
        return supplies.isOnMains;
    return !isAny(supplies.batteries, "Discharging")
        && std::ranges::any_of(supplies.batteries, [](const Battery& battery) {
               return battery.status == "Charging" || battery.status == "Full"
                   || battery.status == "Not charging";
           });
}

std::optional<int> minutesToEmpty(const QList<Battery>& batteries, const Charge& total)
{
    std::optional<qint64> minutes;
    if (total.anHour > 0)
        minutes = total.now * 60 / total.anHour;
    else if (batteries.size() == 1 && batteries.first().secondsLeft)
        minutes = *batteries.first().secondsLeft / 60;
    if (!minutes || *minutes < 0 || *minutes > longestTime.count())
        return {};
    return static_cast<int>(*minutes);
}

}

QList<PowerSource> PowerSupplies::read(const QString& folder)
{
    const auto supplies = readAll(folder);
    if (supplies.batteries.isEmpty())
        return {};
    const auto total = sum(supplies.batteries);
    const bool isEmptying = isAny(supplies.batteries, "Discharging");
    PowerSource source {
        .currentCapacity = total.now,
        .maxCapacity = total.full,
        .isCharging = !isEmptying && isAny(supplies.batteries, "Charging"),
        .isOnMains = isOnMains(supplies),
    };
    if (isEmptying && !source.isOnMains)
        source.minutesToEmpty = minutesToEmpty(supplies.batteries, total);
    return { source };
}
