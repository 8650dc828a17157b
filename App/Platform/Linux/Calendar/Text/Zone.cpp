#include "App/Platform/Linux/Calendar/Text/Zone.h"

#include "App/Platform/Linux/Calendar/Text/CivilTime.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHash>
#include <QTimeZone>

#include <algorithm>
#include <ctime>

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t mostDays = 4096;
constexpr std::size_t longestName = 100;

// As the C library sees it, which needs no name for it.
struct LocalZone final : Zone {
    LocalZone() { tzset(); }

    int lookUp(std::int64_t utc) const override
    {
        const auto time = static_cast<std::time_t>(utc);
        std::tm parts {};
        return localtime_r(&time, &parts) ? static_cast<int>(parts.tm_gmtoff) : 0;
    }
};

struct UtcZone final : Zone {
    int lookUp(std::int64_t) const override { return 0; }
};

struct SystemZone final : Zone {
    explicit SystemZone(const QByteArray& name)
        : zone(name)
    {
    }

    int lookUp(std::int64_t utc) const override
    {
        return zone.offsetFromUtc(QDateTime::fromSecsSinceEpoch(utc, Qt::UTC));
    }

    QTimeZone zone;
};

bool isInstalled(const QByteArray& name)
{
    return QFileInfo(u"/usr/share/zoneinfo/"_s + QString::fromLatin1(name)).isFile();
}

// Empty where no zone is called so in any case.
QByteArray inItsCase(const QByteArray& name)
{
    static const auto known = [] {
        QHash<QByteArray, QByteArray> names;
        for (const auto& id : QTimeZone::availableTimeZoneIds())
            names.insert(id.toLower(), id);
        return names;
    }();
    return known.value(name.toLower());
}

bool isPlain(char letter)
{
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z')
        || (letter >= '0' && letter <= '9') || letter == '/' || letter == '_' || letter == '+'
        || letter == '-';
}

}

std::unique_ptr<Zone> Zone::ofThisProcess()
{
    return std::make_unique<LocalZone>();
}

std::unique_ptr<Zone> Zone::utc()
{
    return std::make_unique<UtcZone>();
}

std::unique_ptr<Zone> Zone::named(std::string_view name)
{
    const bool isFit = !name.empty() && name.size() <= longestName && name.front() != '/'
        && std::ranges::all_of(name, isPlain);
    if (!isFit)
        return {};
    // QTimeZone makes a zone of much that is the name of none.
    QByteArray file(name.data(), static_cast<qsizetype>(name.size()));
    if (!isInstalled(file))
        file = inItsCase(file);
    if (file.isEmpty() || !isInstalled(file))
        return {};
    auto zone = std::make_unique<SystemZone>(file);
    return zone->zone.isValid() ? std::unique_ptr<Zone>(std::move(zone)) : nullptr;
}

int Zone::offset(std::int64_t utc) const
{
    const auto day = CivilTime::day(utc);
    if (const auto found = m_ofDays.find(day); found != m_ofDays.end())
        return found->second;
    const auto start = day * CivilTime::secondsPerDay;
    const int offset = lookUp(start);
    if (lookUp(start + CivilTime::secondsPerDay) != offset)
        return lookUp(utc);
    if (m_ofDays.size() >= mostDays)
        m_ofDays.clear();
    m_ofDays.emplace(day, offset);
    return offset;
}

std::int64_t Zone::toUtc(std::int64_t local) const
{
    // No clock is a day from UTC.
    const int before = offset(local - CivilTime::secondsPerDay);
    const int after = offset(local + CivilTime::secondsPerDay);
    const bool isPastChange
        = before != after && offset(local - before) != before && offset(local - after) == after;
    return local - (isPastChange ? after : before);
}
