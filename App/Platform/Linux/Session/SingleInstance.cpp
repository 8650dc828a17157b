#include "App/Platform/Linux/Session/SingleInstance.h"

#include <QDBusError>
#include <QDBusMessage>

using namespace Qt::StringLiterals;

static const auto name = u"org.corvella.Corvella"_s;
static const auto path = u"/org/corvella/Corvella"_s;

static constexpr int longestWait = 1000; // Milliseconds.

SingleInstance::SingleInstance(QDBusConnection bus)
    : m_bus(bus)
{
}

bool SingleInstance::claim()
{
    if (!m_bus.isConnected())
        return true;
    // Before the name is taken, so that whoever finds the name finds the object as well.
    m_bus.registerObject(path, this, QDBusConnection::ExportScriptableInvokables);
    auto outcome = tryClaim();
    // The first one may have quit between the two calls; nobody loses that race many times.
    for (int again = 0; outcome == Claim::undecided && again < 3; ++again)
        outcome = tryClaim();
    if (outcome == Claim::second)
        m_bus.unregisterObject(path);
    return outcome != Claim::second;
}

SingleInstance::Claim SingleInstance::tryClaim()
{
    constexpr uint doNotQueue = 4;
    constexpr uint nameIsTaken = 3;
    auto request = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
        u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"RequestName"_s);
    request << name << doNotQueue;
    const auto owned = m_bus.call(request, QDBus::Block, longestWait);
    if (owned.type() != QDBusMessage::ReplyMessage || owned.arguments().value(0) != nameIsTaken)
        return Claim::first;

    auto activate = QDBusMessage::createMethodCall(
        name, path, u"org.freedesktop.Application"_s, u"Activate"_s);
    activate << QVariantMap();
    activate.setAutoStartService(false);
    const auto answer = m_bus.call(activate, QDBus::Block, longestWait);
    const bool isGone = QDBusError(answer).type() == QDBusError::ServiceUnknown
        || answer.errorName() == u"org.freedesktop.DBus.Error.NameHasNoOwner"_s;
    return isGone ? Claim::undecided : Claim::second;
}

// Queued, so that the caller has its answer before a window is built.
void SingleInstance::Activate(const QVariantMap&)
{
    QMetaObject::invokeMethod(this, &SingleInstance::activated, Qt::QueuedConnection);
}

void SingleInstance::Open(const QStringList&, const QVariantMap& platformData)
{
    Activate(platformData);
}

// No action is offered, and the standard has unknown ones ignored.
void SingleInstance::ActivateAction(const QString&, const QVariantList&, const QVariantMap&) { }
