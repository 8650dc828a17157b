#include "App/Meetings/MeetingEvent.h"

#include "App/Meetings/MeetingLink.h"
#include "App/Platform/EventStore.h"

#include <QUuid>

using namespace Qt::StringLiterals;

MeetingEvent::MeetingEvent(const CalendarEvent& event)
    : id(event.identifier ? *event.identifier : QUuid::createUuid().toString(QUuid::WithoutBraces))
    , title(event.title.value_or(u"Untitled"_s))
    , start(event.start)
    , end(event.end)
    , allDay(event.isAllDay)
{
    if (auto found = findMeetingLink({ event.location, event.notes, event.url })) {
        link = std::move(found->address);
        service = std::move(found->service);
    }
}
