// The wall clock, and what local time makes of it.
#pragma once

#include <QObject>
#include <QTimeZone>

#include <chrono>

// A point of wall-clock time; whole microseconds are exact for some hundred years around 1970.
using Moment = std::chrono::time_point<std::chrono::system_clock, std::chrono::duration<double>>;

class Clock : public QObject {
    Q_OBJECT

public:
    virtual Moment now() const = 0;
    virtual QTimeZone zone() const { return QTimeZone::systemTimeZone(); }

Q_SIGNALS:
    // The clock no longer runs on from where it was: somebody set it, or its zone, or the machine
    // slept.
    void jumped();
};
