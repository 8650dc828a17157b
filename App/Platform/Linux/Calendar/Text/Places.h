// The TZIDs of one calendar, and what clock each of them means.
#pragma once

#include "App/Platform/Linux/Calendar/Text/CustomZone.h"

#include <QString>
#include <QStringList>

#include <map>
#include <string>
#include <unordered_map>

// Zones of the system, each read once however many calendars name it.
class SystemZones final {
public:
    const Zone& local() const { return *m_local; }
    const Zone& utc() const { return *m_utc; }
    // Null where the system has none of that name.
    const Zone* named(std::string_view name);

private:
    std::unique_ptr<Zone> m_local = Zone::ofThisProcess();
    std::unique_ptr<Zone> m_utc = Zone::utc();
    std::map<std::string, std::unique_ptr<Zone>, std::less<>> m_named;
};

class Places final {
public:
    // StatedTime::anywhere for no name, one that is too long, and once there are too many of them.
    std::uint32_t index(std::string_view name);
    // A zone is left out where the memory for them is full.
    void describe(std::string_view name, std::vector<CustomZone::Observance> observances);

    bool isDescribed(const StatedTime& time) const
    {
        return m_described.contains(m_names[time.place]);
    }

    // The clock of that time. Changes of zones that the calendar describes are known up to lastUtc.
    const Zone& zone(const StatedTime& time, SystemZones& system, std::int64_t lastUtc);
    std::int64_t toUtc(const StatedTime& time, SystemZones& system, std::int64_t lastUtc)
    {
        return zone(time, system, lastUtc).toUtc(time.seconds);
    }
    // That were asked for and mean nothing.
    const QStringList& unknown() const { return m_unknown; }
    std::size_t size() const; // Bytes, about.

private:
    const Zone* find(const std::string& name, SystemZones& system, std::int64_t lastUtc);

    std::vector<std::string> m_names { std::string() };
    std::unordered_map<std::string, std::uint32_t> m_indices;
    std::unordered_map<std::string, std::vector<CustomZone::Observance>> m_described;
    std::size_t m_describedSize = 0; // Bytes
    std::vector<std::unique_ptr<Zone>> m_custom;
    std::size_t m_changes = 0; // Of all of them.
    std::vector<const Zone*> m_found;
    QStringList m_unknown;
};
