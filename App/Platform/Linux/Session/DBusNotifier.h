// Notifications through the desktop's notification service.
#pragma once

#include "App/Platform/Notifier.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>

#include <optional>

class QDBusError;
class QDBusMessage;

class DBusNotifier final : public QObject, public Notifier {
    Q_OBJECT

public:
    // What cannot reach the service goes to fallback.
    explicit DBusNotifier(
        Notifier& fallback, const QDBusConnection& bus = QDBusConnection::sessionBus());

    void notify(const QString& title, const QString& body) override;

private:
    struct Notification {
        QString title;
        QString body;
    };

    void askForCapabilities();
    void learnCapabilities(const QDBusMessage& answer);
    void sendWaiting(bool bodyMarkup);
    void send(const Notification& notification, bool bodyMarkup);
    void giveUpWaiting();

    Notifier& m_fallback;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    std::optional<bool> m_bodyMarkup; // Empty until the present server has told.
    QList<Notification> m_waiting; // For the capabilities; they are asked for while it is filled.
    bool m_askedTwice = false;
};
