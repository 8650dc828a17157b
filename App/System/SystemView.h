// The System tab: the machine's load as rows with small charts and bars. What it shows is sampled
// only while it is on screen.
#pragma once

#include <QWidget>

class Bar;
class Label;
class ProcessInfo;
class Sparkline;
class StatRow;
class SystemMonitor;

class SystemView final : public QWidget {
    Q_OBJECT

public:
    SystemView(SystemMonitor& monitor, ProcessInfo& info);
    ~SystemView() override;

private:
    void build();
    QWidget* makeColumn();
    void appear();
    void disappear();
    void refresh();
    void refreshBattery();
    void refreshNetwork();
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    SystemMonitor& m_monitor;
    ProcessInfo& m_info;
    bool m_isOnScreen = false;

    Sparkline* m_cpuChart;
    Sparkline* m_memChart;
    Bar* m_diskBar;
    Bar* m_batteryBar;
    Sparkline* m_downChart;
    Sparkline* m_upChart;
    StatRow* m_cpu;
    StatRow* m_mem;
    StatRow* m_disk;
    StatRow* m_battery;
    StatRow* m_down;
    StatRow* m_up;
    Label* m_footer;
};
