// Makes a record of an event's lines, as far as they bear on the window and harm nobody.
#pragma once

#include "App/Platform/Linux/Calendar/Text/CalendarWindow.h"
#include "App/Platform/Linux/Calendar/Text/ContentLine.h"
#include "App/Platform/Linux/Calendar/Text/EventRecord.h"
#include "App/Platform/Linux/Calendar/Text/Places.h"

class EventBuilder final {
public:
    static constexpr std::size_t largestEvent = 256 * 1024; // Bytes of lines that matter.
    static constexpr std::size_t mostRules = 4;

    EventBuilder(const CalendarWindow& window, Places& places);

    // isCut: the line was longer than any may be.
    void take(const ContentLine& line, bool isCut);
    // Absent for an event that is refused, has no start or is far from the window.
    std::optional<EventRecord> finish();

private:
    enum class Property {
        uid,
        summary,
        location,
        description,
        url,
        conference,
        googleConference,
        skypeConference,
        start,
        end,
        duration,
        rule,
        exceptionRule,
        extraStarts,
        exceptions,
        recurrenceId,
        sequence,
        other,
    };

    static Property property(const ContentLine& line);
    static bool isText(Property property);

    void set(Property property, const ContentLine& line);
    void addRule(std::vector<std::string>& rules, const ContentLine& line);
    void addExtraStarts(const ContentLine& line);
    void addExceptions(const ContentLine& line);
    std::optional<StatedTime> time(const ContentLine& line, std::string_view value);
    bool isNear() const;

    const CalendarWindow& m_window;
    Places& m_places;
    EventRecord m_event;
    bool m_hasStart = false;
    bool m_isRefused = false;
    std::size_t m_size = 0;
    std::string m_conference;
    std::string m_googleConference;
    std::string m_skypeConference;
};
