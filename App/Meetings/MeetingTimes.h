// Clock times of meetings, short and as the user's locale writes them: «10:30» or «10:30 AM».
#pragma once

#include "App/Platform/Clock.h"

#include <QLocale>

struct MeetingEvent;

class MeetingTimes final {
public:
    explicit MeetingTimes(QTimeZone zone, QLocale locale = QLocale::system());

    QString shortTime(Moment moment) const;
    QString label(const MeetingEvent& event) const; // "All day", or when it starts.
    QString span(const MeetingEvent& event) const; // «10:30 – 11:15»

private:
    QTimeZone m_zone;
    QLocale m_locale;
    QString m_format;
};
