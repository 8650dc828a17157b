// Answers one request in this process, as far as the processor time lasts.
#pragma once

#include "App/Platform/Linux/Calendar/EventExpander.h"
#include "App/Platform/Linux/Calendar/Text/CalendarScanner.h"
#include "App/Platform/Linux/Calendar/Text/EventSeries.h"
#include "App/Platform/Linux/Calendar/Text/TimeBudget.h"

#include <memory>
#include <vector>

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

    // What comes first is not kept from its place by what may take long, or fill the answer.
    enum class Turn { single, cheap, dear };

    struct Calendar {
        QByteArray file; // None where empty.
        std::unique_ptr<CalendarContent> content = {}; // Read anew where there was no room for it.
        std::size_t size = 0; // Bytes of the content that is kept.
        qsizetype events = 0; // In the result, as the text.
        qsizetype text = 0; // Bytes
        bool hasMore = true; // For the next turn.
    };

    void findCalendars();
    std::unique_ptr<CalendarContent> read(const QByteArray& file, const TimeBudget& budget);
    void take(Turn turn, Calendar& calendar);
    void keepOrForget(Calendar& calendar);
    void expand(Turn turn, Calendar& calendar, const TimeBudget& budget);
    void noteUnknownZones(const CalendarContent& content);
    static Turn turn(Group group, const CalendarContent& content);
    static std::vector<const EventRecord*> sorted(const CalendarContent& content);
    static std::vector<Group> groups(const std::vector<const EventRecord*>& events);
    // Of what is left, to each the half.
    qsizetype share(qsizetype most, qsizetype all, qsizetype own) const;
    void add(Calendar& calendar, const Occurrence& occurrence);

    const EventExpander::Request& m_request;
    Budgets m_budgets;
    CalendarWindow m_window;
    SystemZones m_zones;
    Calendar m_text;
    CalendarScanner m_textScanner;
    std::vector<Calendar> m_calendars;
    bool m_isShared = false; // By several calendars.
    std::size_t m_kept = 0; // Bytes of contents.
    EventExpander::Result m_result;
    qsizetype m_size = 0; // Of the result, in bytes.
};
