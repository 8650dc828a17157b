// The batteries as the kernel tells of them, for where no service does.
#pragma once

#include "App/Platform/Linux/Background/BackgroundReading.h"
#include "App/Platform/PowerSources.h"

class SysfsPowerSources final : public PowerSources {
    Q_OBJECT

public:
    explicit SysfsPowerSources(const QString& folder = QStringLiteral("/sys/class/power_supply"),
        std::chrono::milliseconds interval = std::chrono::seconds(30));

    std::optional<QList<PowerSource>> sources() const override { return m_sources; }

private:
    void begin() override { m_reading.begin(); }
    void end() override { m_reading.end(); }
    void learn(const QList<PowerSource>& sources);

    std::optional<QList<PowerSource>> m_sources;
    // The controller behind a battery may take its time, and forget to answer.
    BackgroundReading<QList<PowerSource>> m_reading;
};
