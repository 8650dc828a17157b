// Stands in for the desktop's calendar service with whatever answers it is told to give.
#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QHash>
#include <QMap>
#include <QUuid>
#include <QVariantMap>

#include <optional>
#include <utility>

class PretendedCalendars final : public QDBusVirtualObject {
public:
    using Objects = QMap<QDBusObjectPath, QMap<QString, QVariantMap>>;

    PretendedCalendars()
        : name(QUuid::createUuid().toString())
        , bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name))
    {
        qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
        qDBusRegisterMetaType<Objects>();
        bus.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        answers = honest();
    }

    ~PretendedCalendars() override { QDBusConnection::disconnectFromBus(name); }

    // Of a service with one calendar, "home", and one event in it.
    QHash<QString, QVariantList> honest() const
    {
        const auto prefix = QStringLiteral("org.gnome.evolution.dataserver.");
        const Objects sources { { QDBusObjectPath(QStringLiteral("/source")),
            { { prefix + QStringLiteral("Source"),
                { { QStringLiteral("UID"), QStringLiteral("home") },
                    { QStringLiteral("Data"),
                        QStringLiteral("[Data Source]\nEnabled=true\n[Calendar]\n") } } } } } };
        return {
            { QStringLiteral("GetManagedObjects"), { QVariant::fromValue(sources) } },
            { QStringLiteral("OpenCalendar"),
                { QStringLiteral("/calendar"), prefix + QStringLiteral("Calendar8") } },
            { QStringLiteral("Open"), { QStringList() } },
            { QStringLiteral("GetView"),
                { QVariant::fromValue(QDBusObjectPath(QStringLiteral("/view"))) } },
            { QStringLiteral("SetFlags"), {} },
            { QStringLiteral("SetFieldsOfInterest"), {} },
            { QStringLiteral("Start"), {} },
            { QStringLiteral("GetObjectList"), { QStringList { event } } },
            { QStringLiteral("GetObject"), { event } },
            { QStringLiteral("GetTimezone"), { QString() } },
        };
    }

    bool appear()
    {
        return bus.registerService(QStringLiteral("org.gnome.evolution.dataserver.Calendar8"))
            && bus.registerService(QStringLiteral("org.gnome.evolution.dataserver.Sources5"));
    }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        const auto method = message.member();
        ++asked[method];
        if (method == mute)
            unanswered.append(message);
        else if (!answers.contains(method))
            connection.send(message.createErrorReply(error, QString()));
        else
            connection.send(message.createReply(answers.value(method)));
        return true;
    }

    void signal(const QString& path, const QString& interface, const QString& member,
        const QVariantList& arguments)
    {
        auto message = QDBusMessage::createSignal(path, interface, member);
        message.setArguments(arguments);
        bus.send(message);
    }

    const QString name; // Of the connection.
    QDBusConnection bus;
    QString event = QStringLiteral("BEGIN:VEVENT\nUID:1\nSUMMARY:One\nEND:VEVENT\n");
    QHash<QString, QVariantList> answers = {}; // By method; an error for those without one.
    QString error = QDBusError::errorString(QDBusError::Failed);
    QString mute = {}; // The method that is not answered.
    QHash<QString, int> asked = {};
    QList<QDBusMessage> unanswered = {};
};
