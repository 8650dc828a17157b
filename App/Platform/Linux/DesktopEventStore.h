// The calendars of the desktop and of folders, once the user agreed to their being read.
#pragma once

#include "App/Platform/Linux/CalendarSource.h"

#include <QTimeZone>

#include <optional>

class UserDefaults;

class DesktopEventStore final : public EventStore {
    Q_OBJECT

public:
    // Events with equal starts are in the order of their sources.
    DesktopEventStore(
        const QList<CalendarSource*>& sources, UserDefaults& defaults, const Clock& clock);

    void authorizationStatus(
        QObject* context, const std::function<void(AuthorizationStatus)>& answer) override;
    // There is nobody to ask on Linux: asking for access is the user's consent.
    void requestFullAccess(
        QObject* context, const std::function<void(bool granted)>& answer) override;
    QList<CalendarEvent> events(Moment start, Moment end) override;

private:
    void look();

    const QList<CalendarSource*> m_sources;
    UserDefaults& m_defaults;
    const Clock& m_clock;

    bool m_isRefused = false; // When last checked.
    std::optional<TimeSpan> m_span; // Absent before anything was asked for.
    QTimeZone m_zone;
};
