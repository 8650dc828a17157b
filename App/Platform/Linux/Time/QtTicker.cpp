#include "App/Platform/Linux/Time/QtTicker.h"

#include <utility>

QtTicker::QtTicker()
{
    // Coarse timers fire together with others that are nearly due, so that several tickers
    // share one wakeup.
    m_timer.setTimerType(Qt::CoarseTimer);
    m_timer.callOnTimeout([this] {
        // A copy, because the call may stop or restart this very ticker.
        const auto fire = m_fire;
        fire();
    });
}

void QtTicker::start(std::chrono::milliseconds interval, std::function<void()> fire)
{
    m_fire = std::move(fire);
    m_timer.start(interval);
}

void QtTicker::stop()
{
    m_timer.stop();
    m_fire = nullptr;
}
