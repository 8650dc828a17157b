#include "App/Platform/Linux/Machine/SysfsPowerSources.h"

#include "App/Platform/Linux/Machine/PowerSupplies.h"

SysfsPowerSources::SysfsPowerSources(const QString& folder, std::chrono::milliseconds interval)
    : m_reading([folder] { return PowerSupplies::read(folder); },
        [this](const QList<PowerSource>& sources) { learn(sources); }, interval)
{
}

void SysfsPowerSources::learn(const QList<PowerSource>& sources)
{
    if (m_sources == sources)
        return;
    m_sources = sources;
    Q_EMIT changed();
}
