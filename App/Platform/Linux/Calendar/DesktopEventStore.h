// The calendars of the desktop and of folders, once the user agreed to their being read.
#pragma once

#include "App/Platform/Linux/Calendar/CalendarSource.h"

#include <QTimeZone>

#include <optional>

class UserDefaults;

class DesktopEventStore final : public EventStore {
    Q_OBJECT

public:
    // Events with equal starts are in the order of their sources.
    DesktopEventStore(
        const QList<CalendarSource*>& sources, UserDefaults& defaults, const Clock& clock);

    // Of checks at a time, one that a later one overtook is not answered.
    void authorizationStatus(
        QObject* context, const std::function<void(AuthorizationStatus)>& answer) override;
    // There is nobody to ask on Linux: asking for access is the user's consent.
    void requestFullAccess(
        QObject* context, const std::function<void(bool granted)>& answer) override;
    QList<CalendarEvent> events(Moment start, Moment end) override;

private:
    void forget();

    const QList<CalendarSource*> m_sources;
    UserDefaults& m_defaults;
    const Clock& m_clock;

    std::optional<bool> m_isGranted; // What was told last.
    int m_checks = 0;
    int m_lastTold = 0; // The number of the check.
    std::optional<TimeSpan> m_span; // Absent before anything was asked for, or once out of date.
    QTimeZone m_zone;
};
