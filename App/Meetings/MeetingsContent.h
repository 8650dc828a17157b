// What the Meetings tab shows of the calendar.
#pragma once

#include <QList>
#include <QString>

#include <optional>

class CalendarModel;
class MeetingTimes;

enum class MeetingsBody {
    denied,
    noEvents,
    events,
    notAsked,
};

MeetingsBody meetingsBody(const CalendarModel& model);

// So that the signs in a title written from right to left stay with it, and what follows is never
// turned around, not even by a title that closes more or less than it opens.
QString isolated(const QString& title);

// Without line breaks and other control characters, which a title from elsewhere may hold.
QString oneLine(QString title);

struct MeetingLine {
    QString id;
    QString title;
    QString time;
    std::optional<QString> link;
    QString service; // Of the button that opens the link.
    bool isOver = false;
    bool isNext = false;

    friend bool operator==(const MeetingLine&, const MeetingLine&) = default;
};

// All of today, in the model's order.
QList<MeetingLine> meetingLines(const CalendarModel& model, const MeetingTimes& times);

struct MeetingCard {
    QString title;
    QString time;
    std::optional<QString> link;
    QString join; // The title of the button that opens the link.

    friend bool operator==(const MeetingCard&, const MeetingCard&) = default;
};

// Absent when no meeting is next.
std::optional<MeetingCard> nextMeeting(const CalendarModel& model, const MeetingTimes& times);
