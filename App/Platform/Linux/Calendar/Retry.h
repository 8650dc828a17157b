// Tries again what failed, less and less often, and in the end not at all.
#pragma once

#include <QTimer>

#include <algorithm>
#include <chrono>

class Retry final : public QTimer {
public:
    Retry() { setSingleShot(true); }

    // The time-out follows after one second, twice as long each time; after some minutes without
    // success no more, so that what never works costs nothing. False then.
    bool later()
    {
        constexpr int mostTries = 9;
        if (m_tries < mostTries && !isActive())
            start(std::chrono::seconds(1 << m_tries++));
        return isActive();
    }

    void succeeded()
    {
        stop();
        m_tries = 0;
    }

private:
    int m_tries = 0;
};
