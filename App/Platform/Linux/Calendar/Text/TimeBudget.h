// How long this program may still work.
#pragma once

#include <chrono>
#include <ctime>

class TimeBudget final {
public:
    using Seconds = std::chrono::duration<double>;

    // Of a processor, in all threads, and of all that passes; both from the start of the process,
    // which is taken for the time of the first question.
    constexpr TimeBudget(Seconds processor, Seconds all)
        : m_processor(processor)
        , m_all(all)
    {
    }

    bool isSpent() const
    {
        static const auto start = now(CLOCK_MONOTONIC);
        return now(CLOCK_PROCESS_CPUTIME_ID) >= m_processor
            || now(CLOCK_MONOTONIC) - start >= m_all;
    }

    // What ends halfway to its end, so that one user leaves time for the next.
    TimeBudget half() const
    {
        const auto worked = now(CLOCK_PROCESS_CPUTIME_ID);
        return { worked + (m_processor - worked) / 2, m_all };
    }

private:
    static Seconds now(clockid_t clock)
    {
        timespec time {};
        clock_gettime(clock, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }

    Seconds m_processor;
    Seconds m_all;
};
