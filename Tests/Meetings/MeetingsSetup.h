// Today's meetings over fakes. The first moment is 10:30 in Berlin.
#pragma once

#include "App/Meetings/CalendarModel.h"
#include "Tests/Fakes/FakeClock.h"
#include "Tests/Fakes/FakeEventStore.h"
#include "Tests/Fakes/FakeTicker.h"

#include <QStringList>

struct MeetingsSetup {
    // By the clock of the first day; more than 24 hours are of the next.
    static Moment at(double hours)
    {
        static constexpr std::chrono::duration<double> midnight(1'699'916'400); // In Berlin.
        return Moment(midnight + std::chrono::duration<double>(hours * 3600));
    }

    static CalendarEvent event(const QString& title, double from, double to)
    {
        return { .identifier = title, .title = title, .start = at(from), .end = at(to) };
    }

    QStringList titles() const
    {
        QStringList all;
        for (const auto& event : model.events())
            all << event.title;
        return all;
    }

    QString next() const { return model.next() ? model.next()->title : QString(); }

    MeetingsSetup() { clock.time = at(10.5); }

    FakeEventStore store;
    FakeClock clock;
    FakeTicker timer;
    FakeTicker midnight;
    CalendarModel model { store, clock, timer, midnight };
};
