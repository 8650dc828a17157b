// Tells how long the event loop of the test ever stood still.
#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

class LoopWatch final {
public:
    LoopWatch()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { turn(); });
        m_since.start();
        m_timer.start(10);
    }

    qint64 longestStandstill() // Milliseconds
    {
        turn();
        return m_longest;
    }

private:
    void turn() { m_longest = std::max(m_longest, m_since.restart()); }

    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};
