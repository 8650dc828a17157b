#include "App/Platform/Linux/Background/Patience.h"

#include <algorithm>
#include <cerrno>

Patience::Patience(Duration silence, Duration whole)
    : m_silence(silence)
    , m_whole(whole)
{
}

bool Patience::isOver() const
{
    return remaining() <= Duration::zero();
}

bool Patience::await(int descriptor, short events) const
{
    pollfd waited { descriptor, events, 0 };
    int found = 0;
    do {
        const auto time = std::max(remaining(), Duration::zero());
        found = ::poll(&waited, 1, static_cast<int>(time.count()));
    } while (found < 0 && errno == EINTR);
    return found > 0;
}

void Patience::begin()
{
    m_end = Clock::now() + m_whole;
    renew();
}

void Patience::renew()
{
    m_silentUntil = Clock::now() + m_silence;
}

Patience::Duration Patience::remaining() const
{
    return std::chrono::ceil<Duration>(std::min(m_silentUntil, m_end) - Clock::now());
}
