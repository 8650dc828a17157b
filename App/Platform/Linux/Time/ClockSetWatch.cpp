#include "App/Platform/Linux/Time/ClockSetWatch.h"

#include <cerrno>
#include <cstdint>
#include <sys/timerfd.h>
#include <unistd.h>

// Centuries away: the timer exists to be cancelled by a change of the clock, not to expire.
static constexpr time_t farFuture = 32'503'680'000;

int ClockSetWatch::openTimer()
{
    return timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC);
}

ClockSetWatch::ClockSetWatch(int timer)
    : m_timer(timer)
{
    if (m_timer < 0)
        return;
    arm();
    connect(&m_notifier, &QSocketNotifier::activated, this, &ClockSetWatch::wake);
    m_notifier.setSocket(m_timer);
    m_notifier.setEnabled(true);
}

ClockSetWatch::~ClockSetWatch()
{
    m_notifier.setEnabled(false);
    if (m_timer >= 0)
        close(m_timer);
}

void ClockSetWatch::arm()
{
    itimerspec when {};
    when.it_value.tv_sec = farFuture;
    timerfd_settime(m_timer, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &when, nullptr);
}

void ClockSetWatch::wake()
{
    std::uint64_t expirations = 0;
    const auto taken = read(m_timer, &expirations, sizeof expirations);
    if (taken < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    // A cancelled timer reports ECANCELED. One that expired was overtaken by a clock set to the
    // far future, which is a change as well.
    arm();
    Q_EMIT clockSet();
}
