#include "App/Platform/Linux/Calendar/Text/Places.h"

#include <QTimeZone>

#include <utility>

namespace {

constexpr std::size_t mostNames = 4096;
constexpr std::size_t longestName = 200;
constexpr std::size_t mostDescriptions = 4096;
constexpr std::size_t largestDescriptions = 4 * 1024 * 1024; // Bytes
constexpr std::size_t mostChanges = 200'000;
constexpr qsizetype mostUnknown = 100;

std::size_t sizeOf(const std::vector<CustomZone::Observance>& observances)
{
    std::size_t bytes = 0;
    for (const auto& observance : observances) {
        bytes += sizeof observance + observance.rule.capacity()
            + observance.dates.capacity() * sizeof(StatedTime);
    }
    return bytes;
}

}

const Zone* SystemZones::named(std::string_view name)
{
    if (const auto known = m_named.find(name); known != m_named.end())
        return known->second.get();
    auto zone = Zone::named(name);
    if (!zone)
        return nullptr;
    return m_named.emplace(name, std::move(zone)).first->second.get();
}

std::uint32_t Places::index(std::string_view name)
{
    if (name.empty() || name.size() > longestName)
        return StatedTime::anywhere;
    std::string key(name);
    if (const auto known = m_indices.find(key); known != m_indices.end())
        return known->second;
    if (m_names.size() >= mostNames)
        return StatedTime::anywhere;
    const auto index = static_cast<std::uint32_t>(m_names.size());
    m_names.push_back(key);
    m_indices.emplace(std::move(key), index);
    return index;
}

void Places::describe(std::string_view name, std::vector<CustomZone::Observance> observances)
{
    if (name.size() > longestName || m_described.size() >= mostDescriptions)
        return;
    auto& described = m_described[std::string(name)];
    m_describedSize -= sizeOf(std::exchange(described, {}));
    const auto size = sizeOf(observances);
    if (m_describedSize + size > largestDescriptions) {
        m_described.erase(std::string(name));
        return;
    }
    m_describedSize += size;
    described = std::move(observances);
}

std::size_t Places::size() const
{
    constexpr std::size_t perName = 2 * (sizeof(std::string) + longestName);
    constexpr std::size_t perChange = 16;
    return m_describedSize + m_names.size() * perName + m_changes * perChange;
}

const Zone& Places::zone(const StatedTime& time, SystemZones& system, std::int64_t lastUtc)
{
    if (time.kind == StatedTime::Kind::utc)
        return system.utc();
    // A whole day is one wherever the reader is.
    if (time.kind == StatedTime::Kind::date || time.place == StatedTime::anywhere)
        return system.local();
    m_found.resize(m_names.size());
    auto& found = m_found[time.place];
    if (!found)
        found = find(m_names[time.place], system, lastUtc);
    if (!found) {
        found = &system.local();
        const auto& name = m_names[time.place];
        if (m_unknown.size() < mostUnknown)
            m_unknown << QString::fromStdString(name);
    }
    return *found;
}

const Zone* Places::find(const std::string& name, SystemZones& system, std::int64_t lastUtc)
{
    if (const auto* const zone = system.named(name))
        return zone;
    // /vendor/version/Area/City
    for (auto slash = name.find('/'); name.front() == '/' && slash != std::string::npos;
         slash = name.find('/', slash + 1)) {
        if (const auto* const zone = system.named(std::string_view(name).substr(slash + 1)))
            return zone;
    }
    if (const auto described = m_described.find(name);
        described != m_described.end() && m_changes < mostChanges) {
        auto zone = std::make_unique<CustomZone>(described->second, lastUtc);
        m_changes += zone->changes();
        return m_custom.emplace_back(std::move(zone)).get();
    }
    const auto windowsName = QByteArray::fromStdString(name);
    return system.named(QTimeZone::windowsIdToDefaultIanaId(windowsName).toStdString());
}
