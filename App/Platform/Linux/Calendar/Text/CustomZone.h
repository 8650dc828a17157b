// A zone that a calendar describes itself.
#pragma once

#include "App/Platform/Linux/Calendar/Text/CivilTime.h"
#include "App/Platform/Linux/Calendar/Text/Zone.h"

#include <string>
#include <vector>

class CustomZone final : public Zone {
public:
    // From when on the clock is so far from UTC, once or every year.
    struct Observance {
        StatedTime start;
        int offsetBefore = 0; // Seconds ahead of UTC.
        int offset = 0;
        std::string rule; // None where empty.
        std::vector<StatedTime> dates;
    };

    static constexpr std::int64_t firstUtc = 0; // Earlier changes concern no meeting.
    // No zone has had as many.
    static constexpr std::size_t mostChanges = 4'000;

    // Changes are known up to that time.
    CustomZone(const std::vector<Observance>& observances, std::int64_t lastUtc);

    std::size_t changes() const { return m_changes.size(); }

protected:
    int lookUp(std::int64_t utc) const override;

private:
    struct Change {
        std::int64_t utc = 0;
        int offset = 0;
    };

    void add(const Observance& observance, std::int64_t lastUtc);

    std::vector<Change> m_changes; // Ordered.
    int m_offsetBefore = 0;
};
