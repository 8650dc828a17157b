#pragma once

#include "App/Platform/EventStore.h"

#include <utility>

struct FakeEventStore final : EventStore {
    void authorizationStatus(
        QObject*, const std::function<void(AuthorizationStatus)>& answer) override
    {
        ++checks;
        answer(status);
    }

    void requestFullAccess(QObject*, const std::function<void(bool)>& answer) override
    {
        pendingRequest = answer;
    }

    QList<CalendarEvent> events(Moment start, Moment end) override
    {
        queries.append({ start, end });
        return stored;
    }

    AuthorizationStatus status = AuthorizationStatus::notDetermined;
    QList<CalendarEvent> stored = {};
    int checks = 0;
    std::function<void(bool granted)> pendingRequest = {};
    QList<std::pair<Moment, Moment>> queries = {};
};
