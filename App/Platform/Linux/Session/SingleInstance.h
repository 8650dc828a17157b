// Keeps the program to one process a session: a second start asks the first one to come forward.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

class SingleInstance final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit SingleInstance(QDBusConnection bus = QDBusConnection::sessionBus());

    // True when this process is the first, or there is no bus to tell. Otherwise the first one
    // has been asked to come forward; waits about a second for one that hangs.
    bool claim();

    // The interface that desktops start programs by; the names are theirs.
    Q_SCRIPTABLE Q_INVOKABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE Q_INVOKABLE void Open(
        const QStringList& locations, const QVariantMap& platformData);
    Q_SCRIPTABLE Q_INVOKABLE void ActivateAction(
        const QString& action, const QVariantList& parameter, const QVariantMap& platformData);

Q_SIGNALS:
    // Another start, or the desktop, asks this process to come forward.
    void activated();

private:
    enum class Claim { first, second, undecided };

    Claim tryClaim();

    QDBusConnection m_bus;
};
