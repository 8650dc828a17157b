#include "App/Meetings/MeetingTimes.h"

#include "App/Meetings/MeetingEvent.h"

#include <QDateTime>

#include <utility>

using namespace Qt::StringLiterals;

// Without a language the format is one for machines, with seconds.
static QString withoutSeconds(QString format)
{
    for (const auto& seconds : { u":ss"_s, u".ss"_s, u":s"_s, u".s"_s })
        format.remove(seconds);
    return format;
}

MeetingTimes::MeetingTimes(QTimeZone zone, QLocale locale)
    : m_zone(std::move(zone))
    , m_locale(std::move(locale))
    , m_format(withoutSeconds(m_locale.timeFormat(QLocale::ShortFormat)))
{
}

QString MeetingTimes::shortTime(Moment moment) const
{
    const auto whole = std::chrono::floor<std::chrono::milliseconds>(moment.time_since_epoch());
    const auto local = QDateTime::fromMSecsSinceEpoch(whole.count(), m_zone);
    return m_locale.toString(local.time(), m_format);
}

QString MeetingTimes::label(const MeetingEvent& event) const
{
    return event.allDay ? u"All day"_s : shortTime(event.start);
}

QString MeetingTimes::span(const MeetingEvent& event) const
{
    return shortTime(event.start) + u" – "_s + shortTime(event.end);
}
