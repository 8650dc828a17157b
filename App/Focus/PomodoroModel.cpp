#include "App/Focus/PomodoroModel.h"

#include "App/Platform/Notifier.h"
#include "App/Platform/SoundPlayer.h"
#include "App/Platform/Ticker.h"
#include "App/Platform/UserDefaults.h"

#include <algorithm>
#include <chrono>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto focusMinutesKey = u"focusMinutes"_s;
const auto shortMinutesKey = u"shortMinutes"_s;
const auto longMinutesKey = u"longMinutes"_s;
const auto taskNameKey = u"taskName"_s;

qint64 secondsOf(qint64 minutes)
{
    qint64 seconds = 0;
    if (__builtin_mul_overflow(minutes, qint64 { 60 }, &seconds))
        qFatal("A phase of that many minutes has more seconds than can be counted");
    return seconds;
}

qint64 wholeSecondsUntil(Moment end, Moment now)
{
    const double left = std::ceil((end - now).count());
    // 2^63 is the first double above every qint64; NaN fails the comparison too.
    if (!(std::abs(left) < 0x1p63))
        qFatal("The end of the phase is out of reach of the clock");
    return static_cast<qint64>(left);
}

}

PomodoroModel::PomodoroModel(
    UserDefaults& defaults, Clock& clock, Ticker& ticker, SoundPlayer& sounds, Notifier& notifier)
    : m_defaults(defaults)
    , m_clock(clock)
    , m_ticker(ticker)
    , m_sounds(sounds)
    , m_notifier(notifier)
    , m_focusMinutes(defaults.integer(focusMinutesKey).value_or(25))
    , m_shortMinutes(defaults.integer(shortMinutesKey).value_or(5))
    , m_longMinutes(defaults.integer(longMinutesKey).value_or(15))
    , m_taskName(defaults.text(taskNameKey).value_or(QString()))
    , m_remaining(secondsOf(m_focusMinutes))
{
    connect(&m_clock, &Clock::jumped, this, &PomodoroModel::tick);
}

qint64 PomodoroModel::total() const
{
    switch (m_phase) {
    case Phase::focus:
        return secondsOf(m_focusMinutes);
    case Phase::shortBreak:
        return secondsOf(m_shortMinutes);
    case Phase::longBreak:
        return secondsOf(m_longMinutes);
    }
    Q_UNREACHABLE();
}

double PomodoroModel::progress() const
{
    const auto whole = total();
    return whole == 0 ? 0 : 1 - static_cast<double>(m_remaining) / static_cast<double>(whole);
}

QString PomodoroModel::timeString() const
{
    return QString::asprintf("%02lld:%02lld", m_remaining / 60, m_remaining % 60);
}

void PomodoroModel::setFocusMinutes(qint64 minutes)
{
    storeLength(m_focusMinutes, focusMinutesKey, minutes);
}

void PomodoroModel::setShortMinutes(qint64 minutes)
{
    storeLength(m_shortMinutes, shortMinutesKey, minutes);
}

void PomodoroModel::setLongMinutes(qint64 minutes)
{
    storeLength(m_longMinutes, longMinutesKey, minutes);
}

void PomodoroModel::storeLength(qint64& length, const QString& key, qint64 minutes)
{
    publish(length, minutes);
    m_defaults.setInteger(key, minutes);
    // Whichever length changed: a phase that stands is armed afresh.
    if (!m_running)
        publish(m_remaining, total());
}

void PomodoroModel::setTaskName(const QString& name)
{
    publish(m_taskName, name);
    m_defaults.setText(taskNameKey, name);
}

void PomodoroModel::start()
{
    if (m_running)
        return;
    if (m_remaining <= 0)
        publish(m_remaining, total());
    m_endDate = m_clock.now() + std::chrono::duration<double>(m_remaining);
    publish(m_running, true);
    m_ticker.start(500ms, [this] { tick(); });
}

void PomodoroModel::pause()
{
    publish(m_running, false);
    m_ticker.stop();
    m_endDate.reset();
}

void PomodoroModel::reset()
{
    pause();
    publish(m_remaining, total());
}

void PomodoroModel::skip()
{
    pause();
    advance(false);
}

void PomodoroModel::tick()
{
    if (!m_endDate)
        return;
    const auto left = wholeSecondsUntil(*m_endDate, m_clock.now());
    // Assigned only when it differs, so that readers hear of it once a second.
    if (const auto shown = std::max<qint64>(left, 0); shown != m_remaining)
        publish(m_remaining, shown);
    if (left >= 1)
        return;
    const auto finished = m_phase;
    pause();
    m_sounds.play(u"Glass"_s);
    notify(finished);
    advance(true);
}

void PomodoroModel::advance(bool completed)
{
    if (m_phase != Phase::focus) {
        publish(m_phase, Phase::focus);
    } else {
        if (completed)
            publish(m_sessions, m_sessions + 1);
        const bool isLong = m_sessions >= 1 && m_sessions % 4 == 0;
        publish(m_phase, isLong ? Phase::longBreak : Phase::shortBreak);
    }
    publish(m_remaining, total());
}

void PomodoroModel::notify(Phase finished)
{
    if (finished != Phase::focus) {
        m_notifier.notify(u"Break over"_s, u"Ready for the next focus session?"_s);
        return;
    }
    const auto praise
        = m_taskName.isEmpty() ? QString() : u"Nice work on “"_s + m_taskName + u"”. "_s;
    m_notifier.notify(u"Focus session complete"_s, praise + u"Time for a break."_s);
}
