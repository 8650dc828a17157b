#include "App/Platform/Linux/Launch/HelperWorkspace.h"

#include <QProcess>
#include <QUrl>

#include <utility>

HelperWorkspace::HelperWorkspace(QString helper)
    : m_helper(std::move(helper))
{
}

void HelperWorkspace::open(const QUrl& url)
{
    const auto encoded = QString::fromLatin1(url.toEncoded(QUrl::FullyEncoded));
    QProcess::startDetached(m_helper, { QStringLiteral("-u"), encoded });
}
