#pragma once

#include "App/Platform/Linux/Calendar/CalendarSource.h"

#include <utility>

struct FakeCalendarSource final : CalendarSource {
    void checkAccess(QObject*, const std::function<void(bool)>& answer) override
    {
        ++checks;
        if (isSlow)
            pendingCheck = answer;
        else
            answer(isOpen);
    }

    void look(const TimeSpan& span) override { spans.append(span); }
    QList<CalendarEvent> events() const override { return stored; }

    void change(const QList<CalendarEvent>& events)
    {
        stored = events;
        Q_EMIT changed();
    }

    bool isOpen = false;
    bool isSlow = false;
    std::function<void(bool)> pendingCheck = {};
    int checks = 0;
    QList<TimeSpan> spans = {};
    QList<CalendarEvent> stored = {};
};
