// How long to wait for a program that may be slow, or never answer.
#pragma once

#include <chrono>
#include <poll.h>

class Patience final {
public:
    using Duration = std::chrono::milliseconds;

    // Little while nothing comes, more while something does.
    explicit Patience(Duration silence = Duration(2000), Duration whole = Duration(10'000));

    Duration silence() const { return m_silence; }
    bool isOver() const;
    // False when the descriptor has none of these events until the patience is over.
    bool await(int descriptor, short events = POLLIN) const;

    void begin(); // Before anything else.
    void renew(); // Something came.

private:
    using Clock = std::chrono::steady_clock;

    Duration remaining() const;

    Duration m_silence;
    Duration m_whole;
    Clock::time_point m_silentUntil;
    Clock::time_point m_end;
};
