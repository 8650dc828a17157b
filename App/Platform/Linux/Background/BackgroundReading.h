// Reads what may be slow to tell again and again, beside the thread that wants to know.
#pragma once

#include "App/Platform/Linux/Background/BackgroundWork.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <utility>

template <typename Value>
class BackgroundReading final {
public:
    // Reads on other threads, one at a time, and must own all that it touches; learns on this one.
    BackgroundReading(std::function<Value()> read, std::function<void(const Value&)> learn,
        std::chrono::milliseconds interval)
        : m_read(std::move(read))
        , m_learn(std::move(learn))
    {
        m_timer.setInterval(interval);
        QObject::connect(&m_timer, &QTimer::timeout, &m_work, [this] { start(); });
    }

    // At once, and then whenever the interval is over.
    void begin()
    {
        m_timer.start();
        start();
    }

    // A reading that is under way is not heard of any more, unless there is another begin before.
    void end() { m_timer.stop(); }

private:
    void start()
    {
        m_work.start([this, read = m_read]() -> BackgroundWork::Finish {
            return [this, value = read()] {
                if (m_timer.isActive())
                    m_learn(value);
            };
        });
    }

    std::function<Value()> m_read;
    std::function<void(const Value&)> m_learn;
    QTimer m_timer;
    BackgroundWork m_work;
};
