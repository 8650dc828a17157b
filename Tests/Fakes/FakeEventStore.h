#pragma once

#include "App/Platform/EventStore.h"

#include <QPointer>

#include <utility>

struct FakeEventStore final : EventStore {
    void authorizationStatus(
        QObject* context, const std::function<void(AuthorizationStatus)>& answer) override
    {
        ++checks;
        pendingCheck = whileThere<AuthorizationStatus>(context, answer);
        if (!answersLater)
            pendingCheck(status);
    }

    void requestFullAccess(QObject* context, const std::function<void(bool)>& answer) override
    {
        pendingRequest = whileThere<bool>(context, answer);
    }

    QList<CalendarEvent> events(Moment start, Moment end) override
    {
        queries.append({ start, end });
        return stored;
    }

    template <typename Answer>
    static std::function<void(Answer)> whileThere(
        const QPointer<QObject>& context, const std::function<void(Answer)>& answer)
    {
        return [context, answer](Answer given) {
            if (context)
                answer(given);
        };
    }

    AuthorizationStatus status = AuthorizationStatus::notDetermined;
    QList<CalendarEvent> stored = {};
    int checks = 0;
    bool answersLater = false; // By the test's calling pendingCheck.
    std::function<void(AuthorizationStatus)> pendingCheck = {};
    std::function<void(bool granted)> pendingRequest = {};
    QList<std::pair<Moment, Moment>> queries = {};
};
