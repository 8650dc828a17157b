// How long to go on reading from a program that may be slow, or never answer.
#pragma once

#include <chrono>

class ReadingPatience final {
public:
    using Duration = std::chrono::milliseconds;

    // Little while nothing comes, more while something does.
    explicit ReadingPatience(Duration silence = Duration(2000), Duration whole = Duration(10'000));

    // The time begins with the reading.
    void begin();
    void renew(); // Something came.
    bool isOver() const;
    // False when nothing is to be read from the descriptor until the patience is over.
    bool await(int descriptor) const;

private:
    using Clock = std::chrono::steady_clock;

    Duration remaining() const;

    Duration m_silence;
    Duration m_whole;
    Clock::time_point m_silentUntil;
    Clock::time_point m_end;
};
