#include "App/Platform/Linux/ReadingPatience.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>

ReadingPatience::ReadingPatience(Duration silence, Duration whole)
    : m_silence(silence)
    , m_whole(whole)
{
}

void ReadingPatience::begin()
{
    m_end = Clock::now() + m_whole;
    renew();
}

void ReadingPatience::renew()
{
    m_silentUntil = Clock::now() + m_silence;
}

bool ReadingPatience::isOver() const
{
    return remaining() <= Duration::zero();
}

bool ReadingPatience::await(int descriptor) const
{
    pollfd waited { descriptor, POLLIN, 0 };
    int found = 0;
    do {
        const auto time = std::max(remaining(), Duration::zero());
        found = ::poll(&waited, 1, static_cast<int>(time.count()));
    } while (found < 0 && errno == EINTR);
    return found > 0;
}

ReadingPatience::Duration ReadingPatience::remaining() const
{
    return std::chrono::ceil<Duration>(std::min(m_silentUntil, m_end) - Clock::now());
}
