// How far a place's clock is from UTC.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>

class Zone {
public:
    virtual ~Zone() = default;

    static std::unique_ptr<Zone> ofThisProcess();
    static std::unique_ptr<Zone> utc();
    // Of the system's time zones; null where it has none of that name, whatever the name.
    static std::unique_ptr<Zone> named(std::string_view name);

    // Seconds ahead of UTC.
    int offset(std::int64_t utc) const;
    // The earlier of two, and as far past a gap as the clock had been before it.
    std::int64_t toUtc(std::int64_t local) const;
    std::int64_t toLocal(std::int64_t utc) const { return utc + offset(utc); }

protected:
    virtual int lookUp(std::int64_t utc) const = 0;

private:
    // Of days on which the clock is not changed.
    mutable std::unordered_map<std::int64_t, int> m_ofDays;
};
