#include "App/Platform/Linux/Machine/ThermalZones.h"

#include "App/Platform/Linux/Machine/SysfsAttribute.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Far more than any machine has; a folder of something else may hold more.
constexpr qsizetype mostZones = 64;
constexpr int mostTrips = 64;

// Thousandths of a degree Celsius; sensors that are broken or asleep tell of more, or of less.
constexpr qint64 coldest = -100'000;
constexpr qint64 hottest = 200'000;

// What it means to have reached the trip point.
ThermalState severity(const QByteArray& type)
{
    if (type == "critical" || type == "hot")
        return ThermalState::critical;
    if (type == "passive")
        return ThermalState::serious;
    return type == "active" ? ThermalState::fair : ThermalState::unknown;
}

ThermalState readTrip(const QString& trip, qint64 temperature)
{
    const auto reached = severity(SysfsAttribute::text(trip + u"_type"_s).value_or(QByteArray()));
    const auto limit = SysfsAttribute::number(trip + u"_temp"_s).value_or(0);
    if (reached == ThermalState::unknown || limit <= 0 || limit > hottest)
        return ThermalState::unknown;
    return temperature >= limit ? reached : ThermalState::nominal;
}

ThermalState readZone(const QString& zone)
{
    auto worst = ThermalState::unknown;
    const auto temperature = SysfsAttribute::number(zone + u"/temp"_s);
    if (!temperature || *temperature < coldest || *temperature > hottest)
        return worst;
    for (int number = 0; number < mostTrips; ++number) {
        const auto trip = zone + u"/trip_point_%1"_s.arg(number);
        if (!QFile::exists(trip + u"_type"_s))
            break;
        worst = std::max(worst, readTrip(trip, *temperature));
    }
    return worst;
}

}

ThermalState ThermalZones::read(const QString& folder)
{
    auto worst = ThermalState::unknown;
    const auto names
        = QDir(folder).entryList({ u"thermal_zone*"_s }, QDir::Dirs | QDir::NoDotAndDotDot);
    for (const auto& name : names.first(std::min(names.size(), mostZones)))
        worst = std::max(worst, readZone(folder + u'/' + name));
    return worst;
}
