// Makes a zone of a VTIMEZONE's lines.
#pragma once

#include "App/Platform/Linux/Calendar/Text/CalendarWindow.h"
#include "App/Platform/Linux/Calendar/Text/ContentLine.h"
#include "App/Platform/Linux/Calendar/Text/Places.h"

class ZoneBuilder final {
public:
    static constexpr std::size_t largestZone = 64 * 1024; // Bytes
    static constexpr std::size_t mostObservances = 512;

    explicit ZoneBuilder(const CalendarWindow& window);

    void begin();
    void end();
    void take(const ContentLine& line, bool isCut);
    // A zone that is refused is not described.
    void finish(Places& places);

private:
    void setInObservance(const ContentLine& line);
    void addDates(const ContentLine& line);
    void addRule(const ContentLine& line);

    const CalendarWindow& m_window;
    std::string m_name;
    std::vector<CustomZone::Observance> m_observances;
    CustomZone::Observance m_observance;
    bool m_isInObservance = false;
    bool m_hasStart = false;
    bool m_hasOffset = false;
    bool m_isRefused = false;
    std::size_t m_size = 0;
};
