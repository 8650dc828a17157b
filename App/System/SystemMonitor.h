// Samples the machine every two seconds while somebody looks: processor, memory, disk, battery and
// network, with the last two minutes of those that are drawn as charts.
#pragma once

#include "App/Core/Model.h"
#include "App/Platform/Clock.h"
#include "App/Platform/MachineCounters.h"

#include <QList>
#include <QString>

#include <optional>

class PowerSources;
class Ticker;

class SystemMonitor final : public Model {
    Q_OBJECT

public:
    static constexpr int historyLength = 60; // Samples.

    // The clock is asked for spans only: one that nobody can set measures best.
    SystemMonitor(
        MachineCounters& counters, PowerSources& powerSources, const Clock& clock, Ticker& ticker);
    static SystemMonitor& shared(); // Defined in App/Wiring.cpp.

    // Histories, oldest first, at most historyLength long.
    QList<double> cpu() const { return m_cpu; } // Percent.
    QList<double> mem() const { return m_mem; } // Percent of the physical memory.
    QList<double> down() const { return m_down; } // Bytes a second.
    QList<double> up() const { return m_up; } // Bytes a second.

    double diskUsed() const { return m_diskUsed; } // Percent.
    QString diskFreeText() const { return m_diskFreeText; }
    QString batteryText() const { return m_batteryText; }
    std::optional<double> batteryLevel() const { return m_batteryLevel; } // Percent; none without.
    QString memText() const { return m_memText; }

    // In pairs, by each view that comes on screen and leaves it: sampling goes on in between.
    void attach();
    void detach();

    // Bytes a second in the largest unit that leaves at least 1; units step by 1024.
    static QString rate(double bytesPerSecond);

private:
    struct Rates {
        double down = 0;
        double up = 0;
    };

    void sample();
    std::optional<double> readCPU();
    void readMemory();
    void readDisk();
    void readBattery();
    Rates readNet(double seconds);
    void push(QList<double>& history, double value);

    MachineCounters& m_counters;
    PowerSources& m_powerSources;
    const Clock& m_clock;
    Ticker& m_ticker;

    QList<double> m_cpu;
    QList<double> m_mem;
    QList<double> m_down;
    QList<double> m_up;
    double m_diskUsed = 0;
    QString m_diskFreeText;
    QString m_batteryText = QStringLiteral("No battery");
    std::optional<double> m_batteryLevel;
    QString m_memText;

    int m_users = 0;
    bool m_isSampling = false;
    std::optional<ProcessorTicks> m_lastTicks;
    NetworkBytes m_lastNet;
    Moment m_lastTime;
};
