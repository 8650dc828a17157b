// Finds the events and zones in iCalendar text that comes in pieces. Whatever else stands there, or
// is nested in them, is passed over; of a text cut off, every complete event is found.
#pragma once

#include "App/Platform/Linux/Calendar/Text/EventBuilder.h"
#include "App/Platform/Linux/Calendar/Text/LineReader.h"
#include "App/Platform/Linux/Calendar/Text/ZoneBuilder.h"

#include <deque>

// What was found; of one file, since its zones are known in no other.
struct CalendarContent {
    std::deque<EventRecord> events; // Grows without ever holding them twice.
    Places places;
    std::size_t size = 0; // Bytes of the events, about.
    bool isComplete = true; // False where there was more than memory should hold.
};

class CalendarScanner final {
public:
    CalendarScanner(const CalendarWindow& window, CalendarContent& content);

    void feed(std::string_view bytes) { m_reader.feed(bytes); }
    void finish() { m_reader.finish(); }

private:
    void take(std::string_view text, bool isCut);
    void begin(std::string_view component);
    void end(std::string_view component);
    void keep(EventRecord event);

    CalendarWindow m_window;
    CalendarContent& m_content;
    LineReader m_reader;
    std::optional<EventBuilder> m_event;
    std::optional<ZoneBuilder> m_zone;
    std::size_t m_depth = 0; // Of components in the event.
    std::size_t m_text = 0; // Bytes that are kept, as these.
    std::size_t m_single = 0;
    std::size_t m_repeated = 0;
};
