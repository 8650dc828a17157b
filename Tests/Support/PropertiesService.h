// A service whose only object answers for its properties as it is told to, or does not answer.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QUuid>
#include <QVariantMap>

#include <utility>

class PropertiesService final : public QDBusVirtualObject {
public:
    PropertiesService(const QByteArray& address, const QString& path, const QString& interface)
        : name(QUuid::createUuid().toString())
        , bus(QDBusConnection::connectToBus(QString::fromLocal8Bit(address), name))
        , m_path(path)
        , m_interface(interface)
    {
        bus.registerVirtualObject(path, this);
    }

    // On the connection of another service.
    PropertiesService(const PropertiesService& other, const QString& path, const QString& interface)
        : bus(other.bus)
        , m_path(path)
        , m_interface(interface)
    {
        bus.registerVirtualObject(path, this);
    }

    ~PropertiesService() override
    {
        bus.unregisterObject(m_path);
        if (!name.isEmpty())
            QDBusConnection::disconnectFromBus(name);
    }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        ++asked;
        if (isMute)
            unanswered.append(message);
        else
            connection.send(answer(message));
        return true;
    }

    // Returns when the bus has it.
    void change(const QVariantMap& changed, const QStringList& invalidated = {})
    {
        signal({ m_interface, changed, invalidated });
    }

    void signal(const QVariantList& arguments)
    {
        auto message = QDBusMessage::createSignal(m_path,
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"));
        message.setArguments(arguments);
        bus.send(message);
        bus.call(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
            QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus.Peer"),
            QStringLiteral("Ping")));
    }

    void answerLate()
    {
        for (const auto& message : std::exchange(unanswered, {}))
            bus.send(answer(message));
    }

    const QString name = {}; // Of the connection, if it is this service's own.
    QDBusConnection bus;
    QVariant values = QVariantMap(); // Or something else that is no answer.
    bool isMute = false;
    int asked = 0;
    QList<QDBusMessage> unanswered;

private:
    QDBusMessage answer(const QDBusMessage& message) const
    {
        return values.isValid() ? message.createReply(values)
                                : message.createErrorReply(QDBusError::UnknownObject, QString());
    }

    QString m_path;
    QString m_interface;
};
