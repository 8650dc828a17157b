// A calendar over fakes, on 14 November 2023 in Berlin.
#pragma once

#include "App/Meetings/CalendarModel.h"
#include "Tests/Fakes/FakeClock.h"
#include "Tests/Fakes/FakeEventStore.h"
#include "Tests/Fakes/FakeTicker.h"

#include <QDateTime>

struct TodaySetup {
    TodaySetup() { clock.time = at(10, 0); }

    Moment at(int hour, int minute) const
    {
        const QDateTime local(QDate(2023, 11, 14), QTime(hour, minute), clock.timeZone);
        return Moment(std::chrono::milliseconds(local.toMSecsSinceEpoch()));
    }

    // Its identifier is its title.
    void add(const QString& title, Moment start, Moment end, const QString& url = {})
    {
        CalendarEvent event;
        event.identifier = title;
        event.title = title;
        event.url = url;
        event.start = start;
        event.end = end;
        store.stored.append(event);
    }

    void addAllDay(const QString& title)
    {
        add(title, at(0, 0), at(0, 0) + std::chrono::hours(24));
        store.stored.last().isAllDay = true;
    }

    void addTypicalDay()
    {
        addAllDay(QStringLiteral("Release week"));
        add(QStringLiteral("Standup"), at(9, 15), at(9, 30), meet);
        add(QStringLiteral("Design review"), at(10, 30), at(11, 15), zoom);
        add(QStringLiteral("Lunch with Ana"), at(12, 30), at(13, 30));
        add(QStringLiteral("Hiring sync"), at(14, 0), at(14, 45), teams);
    }

    static inline const QString meet = QStringLiteral("https://meet.google.com/abc");
    static inline const QString zoom = QStringLiteral("https://zoom.us/j/1?pwd=a&b=%20");
    static inline const QString teams = QStringLiteral("https://teams.microsoft.com/l/1");

    FakeEventStore store;
    FakeClock clock;
    FakeTicker minutes;
    FakeTicker midnight;
    CalendarModel model { store, clock, minutes, midnight };
};
