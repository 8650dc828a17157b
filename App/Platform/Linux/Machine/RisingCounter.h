// A counter that stands still where the one it follows steps back: to whoever takes differences of
// 32 bits, a step back is a giant leap ahead.
#pragma once

#include <cstdint>

class RisingCounter final {
public:
    std::uint32_t follow(std::uint64_t count)
    {
        if (count > m_last)
            m_risen += count - m_last;
        m_last = count;
        return static_cast<std::uint32_t>(m_risen);
    }

private:
    std::uint64_t m_last = 0;
    std::uint64_t m_risen = 0;
};
