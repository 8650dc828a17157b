#include "App/Meetings/Day.h"

#include <QDateTime>

namespace {

QDateTime firstMoment(QDate date, const QTimeZone& zone)
{
    auto start = date.startOfDay(zone);
    // A place that moves over the date line to the west skips a day.
    if (!start.isValid())
        start = date.addDays(1).startOfDay(zone);
    const auto before = start.addMSecs(-1);
    // Clocks that are turned back to midnight strike it twice, and Qt tells the second.
    if (before.date() == date)
        start = QDateTime(date, QTime(0, 0), Qt::OffsetFromUTC, before.offsetFromUtc());
    return start;
}

Moment startOfDay(QDate date, const QTimeZone& zone)
{
    return Moment(std::chrono::milliseconds(firstMoment(date, zone).toMSecsSinceEpoch()));
}

}

Day dayOf(Moment moment, const QTimeZone& zone)
{
    const auto place = zone.isValid() ? zone : QTimeZone::utc();
    const auto time = std::chrono::floor<std::chrono::milliseconds>(moment.time_since_epoch());
    const auto date = QDateTime::fromMSecsSinceEpoch(time.count(), place).date();
    return { startOfDay(date, place), startOfDay(date.addDays(1), place) };
}
