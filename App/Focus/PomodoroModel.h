// The focus timer: a cycle of focus sessions and breaks that runs by the wall clock.
#pragma once

#include "App/Core/Model.h"
#include "App/Focus/Phase.h"
#include "App/Platform/Clock.h"

#include <QString>

#include <optional>

class Notifier;
class SoundPlayer;
class Ticker;
class UserDefaults;

class PomodoroModel final : public Model {
    Q_OBJECT

public:
    PomodoroModel(UserDefaults& defaults, Clock& clock, Ticker& ticker, SoundPlayer& sounds,
        Notifier& notifier);
    static PomodoroModel& shared(); // Defined in App/Wiring.cpp.

    Phase phase() const { return m_phase; }
    qint64 remaining() const { return m_remaining; } // Seconds left, 0 when the phase is over.
    bool running() const { return m_running; }
    qint64 sessions() const { return m_sessions; } // Focus sessions completed in this run.
    QString taskName() const { return m_taskName; }
    qint64 focusMinutes() const { return m_focusMinutes; }
    qint64 shortMinutes() const { return m_shortMinutes; }
    qint64 longMinutes() const { return m_longMinutes; }

    qint64 total() const; // Seconds of the whole phase.
    bool isActive() const { return m_running || m_remaining != total(); }
    double progress() const; // 0 at the start of the phase, 1 at its end.
    QString timeString() const; // Minutes and seconds left, "05:00"; minutes are not capped.

    // A length is stored at once and applies to the phase in hand only while the timer stands.
    void setFocusMinutes(qint64 minutes);
    void setShortMinutes(qint64 minutes);
    void setLongMinutes(qint64 minutes);
    void setTaskName(const QString& name);

    void start(); // Begins or resumes the phase; one that has run out begins again.
    void pause();
    void reset(); // The same phase, whole and stopped.
    void skip(); // The next phase, whole and stopped; no session is counted.

private:
    void storeLength(qint64& length, const QString& key, qint64 minutes);
    void tick();
    void advance(bool completed);
    void notify(Phase finished);

    UserDefaults& m_defaults;
    Clock& m_clock;
    Ticker& m_ticker;
    SoundPlayer& m_sounds;
    Notifier& m_notifier;
    Phase m_phase = Phase::focus;
    bool m_running = false;
    std::optional<Moment> m_endDate; // Only while running.
    qint64 m_focusMinutes;
    qint64 m_shortMinutes;
    qint64 m_longMinutes;
    QString m_taskName;
    qint64 m_sessions = 0;
    qint64 m_remaining;
};
