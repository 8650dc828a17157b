// Answers one request in this process, as far as the processor time lasts.
#pragma once

#include "App/Platform/Linux/Calendar/CalendarScanner.h"
#include "App/Platform/Linux/Calendar/EventSeries.h"
#include "App/Platform/Linux/Calendar/TimeBudget.h"
#include "App/Platform/Linux/EventExpander.h"

class CalendarExpander final {
public:
    // What is found by the end of the first budget is expanded until that of the second.
    struct Budgets {
        TimeBudget reading;
        TimeBudget expanding;
    };

    CalendarExpander(const EventExpander::Request& request, const Budgets& budgets);

    // The request's text, which may come in pieces of any size.
    void addText(std::string_view bytes);
    // With the files that the request names.
    EventExpander::Result finish();

private:
    using Group = std::span<const EventRecord* const>;

    void readFiles(const QStringList& paths);
    void expand(CalendarContent& content);
    static std::vector<const EventRecord*> sorted(const CalendarContent& content);
    static std::vector<Group> groups(
        const std::vector<const EventRecord*>& events, const CalendarContent& content);
    void add(const Occurrence& occurrence);

    const EventExpander::Request& m_request;
    Budgets m_budgets;
    CalendarWindow m_window;
    SystemZones m_zones;
    CalendarContent m_textContent;
    CalendarScanner m_textScanner;
    EventExpander::Result m_result;
    qsizetype m_size = 0; // Of the result, in bytes.
};
