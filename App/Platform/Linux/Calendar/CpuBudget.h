// How much of a processor this program may still use.
#pragma once

#include <chrono>
#include <ctime>

class CpuBudget final {
public:
    using Seconds = std::chrono::duration<double>;

    // From the start of the process, in all its threads.
    explicit CpuBudget(Seconds all)
        : m_all(all)
    {
    }

    bool isSpent() const { return used() >= m_all; }

private:
    static Seconds used()
    {
        timespec time {};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }

    Seconds m_all;
};
