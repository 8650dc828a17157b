// Prints the machine's counters as one line of JSON, and with --again anew for each line of input.
#include "App/Platform/Linux/Machine/LinuxCounters.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <iostream>
#include <string>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

QJsonValue json(std::uint64_t count)
{
    return static_cast<qint64>(count);
}

QJsonValue json(const ProcessorTicks& ticks)
{
    return QJsonObject {
        { u"user"_s, json(ticks.user) },
        { u"system"_s, json(ticks.system) },
        { u"idle"_s, json(ticks.idle) },
        { u"nice"_s, json(ticks.nice) },
    };
}

QJsonValue json(const MemoryUse& memory)
{
    return QJsonObject {
        { u"used"_s, json(memory.usedBytes) },
        { u"physical"_s, json(memory.physicalBytes) },
    };
}

QJsonValue json(const VolumeSpace& space)
{
    return QJsonObject {
        { u"available"_s, json(space.availableBytes) },
        { u"total"_s, json(space.totalBytes) },
    };
}

QJsonValue json(const NetworkBytes& network)
{
    QJsonObject interfaces;
    for (auto each = network.begin(); each != network.end(); ++each) {
        interfaces.insert(each.key(),
            QJsonObject {
                { u"received"_s, json(each->received) }, { u"sent"_s, json(each->sent) } });
    }
    return interfaces;
}

template <typename Reading>
QJsonValue json(const std::optional<Reading>& reading)
{
    return reading ? json(*reading) : QJsonValue();
}

void print(MachineCounters& counters)
{
    const QJsonObject readings {
        { u"processor"_s, json(counters.processorTicks()) },
        { u"memory"_s, json(counters.memoryUse()) },
        { u"volume"_s, json(counters.startupVolume()) },
        { u"network"_s, json(counters.networkBytes()) },
    };
    const auto line = QJsonDocument(readings).toJson(QJsonDocument::Compact);
    std::cout << line.constData() << std::endl;
}

}

int main(int count, char** arguments)
{
    LinuxCounters counters;
    print(counters);
    if (count < 2 || std::string_view(arguments[1]) != "--again")
        return 0;
    for (std::string line; std::getline(std::cin, line);)
        print(counters);
    return 0;
}
