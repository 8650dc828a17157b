// The calendars of the desktop's calendar service (Evolution Data Server).
#pragma once

#include "App/Platform/Linux/Calendar/CalendarSource.h"
#include "App/Platform/Linux/Calendar/EdsSources.h"

#include <QDBusConnection>
#include <QString>

#include <map>
#include <memory>
#include <optional>

class EdsCalendar;
class EventExpander;

class EdsCalendars final : public CalendarSource {
    Q_OBJECT

public:
    explicit EdsCalendars(
        EventExpander& expander, const QDBusConnection& bus = QDBusConnection::sessionBus());
    ~EdsCalendars() override;

    // Whether the bus lets the service be seen, which a sandbox hides; it need not run.
    void checkAccess(QObject* context, const std::function<void(bool)>& answer) override;
    void look(const TimeSpan& span) override;
    QList<CalendarEvent> events() const override;

private Q_SLOTS:
    void changeOwner(const QDBusMessage& signal);

private:
    void follow();
    void learnSources();

    EventExpander& m_expander;
    QDBusConnection m_bus;
    EdsSources m_sources;
    bool m_isFollowed = false;
    std::optional<TimeSpan> m_span;
    std::map<QString, std::unique_ptr<EdsCalendar>> m_calendars; // By identifier.
};
