// One day of Berlin, and what a calendar has on it.
#pragma once

#include "App/Platform/Linux/Calendar/Text/CalendarExpander.h"

#include <QDate>
#include <QStringList>
#include <QTimeZone>

struct CalendarSetup {
    explicit CalendarSetup(QDate date = QDate(2026, 3, 29))
    {
        request.start = moment(date);
        request.end = moment(date.addDays(1));
        request.source = QStringLiteral("source");
    }

    static void useBerlin()
    {
        qputenv("TZ", "Europe/Berlin");
        tzset();
    }

    static Moment moment(QDate date)
    {
        const auto start = date.startOfDay(QTimeZone("Europe/Berlin")).toSecsSinceEpoch();
        return Moment(std::chrono::duration<double>(static_cast<double>(start)));
    }

    // Lines of an event, whose UID is "event" unless they say another.
    static QByteArray event(const QByteArray& lines)
    {
        return "BEGIN:VEVENT\r\n" + (lines.contains("UID:") ? QByteArray() : "UID:event\r\n")
            + lines + "\r\nEND:VEVENT\r\n";
    }

    EventExpander::Result expand(const QByteArray& text)
    {
        constexpr TimeBudget enough { TimeBudget::Seconds(1e9), TimeBudget::Seconds(1e9) };
        CalendarExpander expander(request, { enough, enough });
        expander.addText({ text.constData(), static_cast<std::size_t>(text.size()) });
        return expander.finish();
    }

    static QString clock(Moment moment)
    {
        const auto seconds = static_cast<qint64>(moment.time_since_epoch().count());
        return QDateTime::fromSecsSinceEpoch(seconds, QTimeZone("Europe/Berlin"))
            .toString(QStringLiteral("dd.HH:mm"));
    }

    // "uid 29.10:00-29.11:00", one after the other.
    static QString agenda(const EventExpander::Result& result)
    {
        QStringList events;
        for (const auto& event : result.events) {
            events << QStringLiteral("%1 %2-%3")
                          .arg(event.identifier.value_or(QString()).section(u'\n', 1, 1),
                              clock(event.start), clock(event.end));
        }
        return events.join(QStringLiteral(", "));
    }

    QString agenda(const QByteArray& text) { return agenda(expand(text)); }

    EventExpander::Request request;
};
