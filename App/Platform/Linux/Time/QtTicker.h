// A ticker on the event loop of the thread that made it.
#pragma once

#include "App/Platform/Ticker.h"

#include <QTimer>

class QtTicker final : public Ticker {
public:
    QtTicker();

    void start(std::chrono::milliseconds interval, std::function<void()> fire) override;
    void stop() override;

private:
    QTimer m_timer;
    std::function<void()> m_fire;
};
