// One calendar of the desktop's calendar service (Evolution Data Server), kept open.
#pragma once

#include "App/Platform/Linux/Bus/BusQuestion.h"
#include "App/Platform/Linux/Calendar/CalendarSource.h"
#include "App/Platform/Linux/Calendar/EventExpander.h"
#include "App/Platform/Linux/Calendar/KeptEvents.h"
#include "App/Platform/Linux/Calendar/Retry.h"

#include <QElapsedTimer>
#include <QHash>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <optional>

class EdsCalendar final : public QObject {
    Q_OBJECT

public:
    EdsCalendar(const QDBusConnection& bus, EventExpander& expander, const QString& uid);
    ~EdsCalendar() override;

    // Soon, and whenever the calendar changes.
    void look(const TimeSpan& span);
    // At once if the calendar is closed, but without starting the service.
    void reopen();
    const QList<CalendarEvent>& events() const { return m_kept.events(); }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void hear(const QDBusMessage& signal);
    void changeOwner(const QDBusMessage& signal);

private:
    using Next = void (EdsCalendar::*)(const QDBusMessage& answer);

    void work();
    void ask(const QDBusMessage& request, const char* types, Next next);
    QDBusMessage request(const QString& method, const QVariantList& arguments = {}) const;
    QDBusMessage viewRequest(const QString& method, const QVariantList& arguments = {}) const;

    void open();
    void learnPlace(const QDBusMessage& answer);
    void learnOwner(const QDBusMessage& answer);
    void learnView(const QDBusMessage& answer);
    void limitView(const QDBusMessage& answer);
    void startView(const QDBusMessage& answer);
    void list(const QDBusMessage& answer);

    void learnList(const QDBusMessage& answer);
    void askForNextSeries();
    void learnSeries(const QDBusMessage& answer);
    void add(const QString& text);
    void expand();
    void take(const std::optional<EventExpander::Result>& result);
    void askForNextZone();
    void learnZone(const QDBusMessage& answer);
    void finish();
    void beStale();
    void close();
    void fail();

    void follow(bool isFollowed);

    QDBusConnection m_bus;
    EventExpander& m_expander;
    const QString m_uid;
    BusQuestion m_question;
    QTimer m_soon;
    Retry m_retry;

    QString m_service; // Empty while closed.
    QString m_path;
    QString m_view;
    QString m_owner; // The only one whose signals count.

    TimeSpan m_span {};
    TimeSpan m_asked {}; // The one that is being read.
    bool m_mayStart = true;
    bool m_isStale = false;
    bool m_isAtWork = false;
    int m_expansion = 0; // The only one whose result counts.
    QElapsedTimer m_begun;
    std::chrono::milliseconds m_taken { 0 }; // For the last reading.
    QByteArray m_text; // Of what is listed, while at work.
    QStringList m_series; // Still to be asked for, as are the zones.
    QStringList m_zones;
    QHash<QString, QByteArray> m_zoneTexts; // Empty for those that the calendar does not know.

    KeptEvents m_kept;
};
