// The user's calendars, as the desktop keeps them.
#pragma once

#include "App/Platform/Clock.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

struct CalendarEvent {
    std::optional<QString> identifier = {};
    std::optional<QString> title = {};
    std::optional<QString> location = {};
    std::optional<QString> notes = {}; // At least those words of them that hold an address.
    std::optional<QString> url = {};
    Moment start = {};
    Moment end = {};
    bool isAllDay = false;

    friend bool operator==(const CalendarEvent&, const CalendarEvent&) = default;
};

enum class AuthorizationStatus {
    notDetermined = 0,
    denied = 2,
    fullAccess = 3,
};

class EventStore : public QObject {
    Q_OBJECT

public:
    // Finds out anew, and answers at once or later, unless the context is gone by then.
    virtual void authorizationStatus(
        QObject* context, const std::function<void(AuthorizationStatus)>& answer)
        = 0;
    // Asks the user, who is asked once at most. Answers as above.
    virtual void requestFullAccess(
        QObject* context, const std::function<void(bool granted)>& answer)
        = 0;
    // Those of all calendars that overlap [start, end), as far as they are known by now. Never
    // waits; changed() follows when there is more to know. None without full access.
    virtual QList<CalendarEvent> events(Moment start, Moment end) = 0;

Q_SIGNALS:
    // Only after events were asked for.
    void changed();
};
