#include "App/QuickActions/Text/WordTable.h"

#include <QHashFunctions>

#include <utility>

// From a start that nobody knows: else texts could be made that all have one place.
static std::uint32_t hashOf(QStringView text)
{
    constexpr std::uint64_t factor = 0x9E37'79B9'7F4A'7C15;
    std::uint64_t hash = QHashSeed::globalSeed();
    for (const auto unit : text)
        hash = (hash ^ unit.unicode()) * factor;
    return static_cast<std::uint32_t>(hash >> 32);
}

WordTable::Entry& WordTable::operator[](QStringView text)
{
    if (2 * m_used >= m_entries.size())
        grow();
    const auto hash = hashOf(text);
    auto& entry = placeOf(text, hash);
    if (entry.text.isNull()) {
        entry.text = text;
        entry.hash = hash;
        ++m_used;
    }
    return entry;
}

WordTable::Entry& WordTable::placeOf(QStringView text, std::uint32_t hash)
{
    const auto last = m_entries.size() - 1;
    const auto isAnother = [&](const Entry& entry) {
        return !entry.text.isNull() && (entry.hash != hash || entry.text != text);
    };
    auto index = hash & last;
    while (isAnother(m_entries[index]))
        index = (index + 1) & last;
    return m_entries[index];
}

void WordTable::grow()
{
    const auto entries = std::exchange(m_entries, std::vector<Entry>(2 * m_entries.size()));
    for (const auto& entry : entries) {
        if (!entry.text.isNull())
            placeOf(entry.text, entry.hash) = entry;
    }
}
