#include "App/Platform/Linux/Calendar/Text/CustomZone.h"

#include "App/Platform/Linux/Calendar/Text/RecurrenceRule.h"

#include <algorithm>

CustomZone::CustomZone(const std::vector<Observance>& observances, std::int64_t lastUtc)
{
    for (const auto& observance : observances)
        add(observance, lastUtc);
    std::ranges::stable_sort(m_changes, {}, &Change::utc);
    const auto first = std::ranges::min_element(
        observances, {}, [](const Observance& observance) { return observance.start.seconds; });
    if (first != observances.end())
        m_offsetBefore = first->offsetBefore;
}

int CustomZone::lookUp(std::int64_t utc) const
{
    const auto next = std::ranges::upper_bound(m_changes, utc, {}, &Change::utc);
    return next == m_changes.begin() ? m_offsetBefore : std::prev(next)->offset;
}

void CustomZone::add(const Observance& observance, std::int64_t lastUtc)
{
    const auto addStart = [&](std::int64_t local) {
        if (m_changes.size() < mostChanges)
            m_changes.push_back({ local - observance.offsetBefore, observance.offset });
    };
    addStart(observance.start.seconds);
    for (const auto& date : observance.dates) {
        const bool isUtc = date.kind == StatedTime::Kind::utc;
        addStart(date.seconds + (isUtc ? observance.offsetBefore : 0));
    }
    if (m_changes.size() >= mostChanges)
        return;
    const auto rule = RecurrenceRule::parse(observance.rule, observance.start.seconds);
    if (!rule)
        return;
    const auto until = rule->until();
    const bool isUtc = until && until->kind == StatedTime::Kind::utc;
    for (const auto local : rule->starts({ firstUtc, lastUtc })) {
        const auto compared = isUtc ? local - observance.offsetBefore : local;
        if (!until || compared <= until->seconds)
            addStart(local);
    }
}
