#include "App/System/SystemMonitor.h"

#include "App/Core/Fixed.h"
#include "App/Platform/PowerSources.h"
#include "App/Platform/Ticker.h"
#include "App/System/PowerSourceText.h"

#include <QPointer>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto interval = std::chrono::seconds(2);
constexpr double shortestSpan = 0.1; // Seconds; keeps rates finite.

constexpr double binaryGigabyte = 1024.0 * 1024 * 1024; // Memory is told in these,
constexpr double decimalGigabyte = 1e9; // disks are sold in those.

double busyPercent(const ProcessorTicks& before, const ProcessorTicks& now)
{
    // Unsigned, so that a counter that began again still gives the small step it made.
    const double user = now.user - before.user;
    const double system = now.system - before.system;
    const double idle = now.idle - before.idle;
    const double nice = now.nice - before.nice;
    const double busy = user + system + nice;
    const double total = user + system + idle + nice;
    return total > 0 ? busy / total * 100 : 0;
}

}

SystemMonitor::SystemMonitor(
    MachineCounters& counters, PowerSources& powerSources, const Clock& clock, Ticker& ticker)
    : m_counters(counters)
    , m_powerSources(powerSources)
    , m_clock(clock)
    , m_ticker(ticker)
    , m_lastTime(clock.now())
{
    connect(&m_powerSources, &PowerSources::changed, this, &SystemMonitor::readBattery);
}

void SystemMonitor::attach()
{
    ++m_users;
    if (m_isSampling)
        return;
    m_isSampling = true;
    m_powerSources.follow();
    sample();
    m_ticker.start(interval, [self = QPointer(this)] {
        if (self)
            self->sample();
    });
}

void SystemMonitor::detach()
{
    m_users = std::max(m_users - 1, 0);
    if (m_users > 0 || !m_isSampling)
        return;
    m_isSampling = false;
    m_ticker.stop();
    m_powerSources.unfollow();
    m_lastTicks.reset();
    m_lastNet.clear();
}

void SystemMonitor::sample()
{
    const Moment now = m_clock.now();
    const double elapsed = (now - m_lastTime).count();
    m_lastTime = now;
    if (const auto load = readCPU())
        push(m_cpu, *load);
    readMemory();
    readDisk();
    readBattery();
    const auto [down, up] = readNet(std::max(elapsed, shortestSpan));
    push(m_down, down);
    push(m_up, up);
}

std::optional<double> SystemMonitor::readCPU()
{
    const auto ticks = m_counters.processorTicks();
    if (!ticks)
        return {};
    // An idle machine instead of an average over the time that nobody looked.
    const double load = m_lastTicks ? busyPercent(*m_lastTicks, *ticks) : 0;
    m_lastTicks = ticks;
    return load;
}

void SystemMonitor::readMemory()
{
    const auto memory = m_counters.memoryUse();
    if (!memory)
        return;
    const auto used = double(memory->usedBytes);
    const auto physical = double(memory->physicalBytes);
    push(m_mem, used / physical * 100);
    publish(m_memText,
        u"%1 of %2 GB"_s.arg(fixed(used / binaryGigabyte, 1), fixed(physical / binaryGigabyte, 1)));
}

void SystemMonitor::readDisk()
{
    const auto space = m_counters.startupVolume();
    if (!space || space->totalBytes < 1)
        return;
    const auto available = double(space->availableBytes);
    const auto total = double(space->totalBytes);
    publish(m_diskUsed, (1 - available / total) * 100);
    publish(m_diskFreeText,
        u"%1 GB free of %2 GB"_s.arg(
            fixed(available / decimalGigabyte, 0), fixed(total / decimalGigabyte, 0)));
}

void SystemMonitor::readBattery()
{
    const auto sources = m_powerSources.sources();
    if (!sources)
        return;
    const auto usable = std::ranges::find_if(*sources, powerSourceIsUsable);
    if (usable == sources->end()) {
        publish(m_batteryLevel, std::nullopt);
        publish(m_batteryText, u"No battery"_s);
        return;
    }
    publish(m_batteryLevel, powerSourceLevel(*usable));
    publish(m_batteryText, powerSourceText(*usable));
}

SystemMonitor::Rates SystemMonitor::readNet(double seconds)
{
    auto counted = m_counters.networkBytes();
    if (!counted)
        return {};
    const auto before = std::exchange(m_lastNet, std::move(*counted));
    Rates bytes;
    for (auto now = m_lastNet.cbegin(); now != m_lastNet.cend(); ++now) {
        const auto then = before.constFind(now.key());
        if (then == before.cend())
            continue;
        // Unsigned, as with the processor's ticks.
        bytes.down += now->received - then->received;
        bytes.up += now->sent - then->sent;
    }
    return { bytes.down / seconds, bytes.up / seconds };
}

void SystemMonitor::push(QList<double>& history, double value)
{
    auto longer = history;
    longer.append(value);
    if (longer.size() > historyLength)
        longer.remove(0, longer.size() - historyLength);
    publish(history, std::move(longer));
}

QString SystemMonitor::rate(double bytesPerSecond)
{
    constexpr double step = 1024;
    if (bytesPerSecond < step)
        return u"%1 B/s"_s.arg(fixed(bytesPerSecond, 0));
    constexpr std::array units { "KB/s"_L1, "MB/s"_L1, "GB/s"_L1 };
    double value = bytesPerSecond / step;
    auto unit = units.begin();
    for (; value >= step && unit + 1 != units.end(); ++unit)
        value /= step;
    return u"%1 %2"_s.arg(fixed(value, 1), *unit);
}
