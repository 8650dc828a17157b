#include "App/Platform/Linux/Launch/HelperAddressOpener.h"

#include <QProcess>

#include <utility>

HelperAddressOpener::HelperAddressOpener(QString helper)
    : m_helper(std::move(helper))
{
}

void HelperAddressOpener::open(const QString& address)
{
    QProcess::startDetached(m_helper, { address });
}
