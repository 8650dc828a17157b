// The desktop's calendar service of tools/with-calendars, as another program uses it.
#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QMap>
#include <QUuid>

#include <csignal>
#include <utility>

class CalendarService final {
public:
    using Names = QList<std::pair<QString, QString>>; // UID and, for one of a series, which.

    CalendarService()
        : m_name(QUuid::createUuid().toString())
        , m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_name))
    {
        qDBusRegisterMetaType<Names::value_type>();
        qDBusRegisterMetaType<Names>();
        qDBusRegisterMetaType<QMap<QString, QString>>();
    }

    ~CalendarService() { QDBusConnection::disconnectFromBus(m_name); }

    // Each into or out of the calendar with that identifier; false when the service refuses.
    bool add(const QString& calendar, const QStringList& components)
    {
        return tell(calendar, QStringLiteral("CreateObjects"), { components, 0U });
    }

    bool change(const QString& calendar, const QString& component)
    {
        return tell(calendar, QStringLiteral("ModifyObjects"),
            { QStringList { component }, QStringLiteral("all"), 0U });
    }

    // Of a series.
    bool changeOne(const QString& calendar, const QString& component)
    {
        return tell(calendar, QStringLiteral("ModifyObjects"),
            { QStringList { component }, QStringLiteral("this"), 0U });
    }

    bool remove(const QString& calendar, const QStringList& uids)
    {
        Names names;
        for (const auto& uid : uids)
            names.append({ uid, QString() });
        return tell(calendar, QStringLiteral("RemoveObjects"),
            { QVariant::fromValue(names), QStringLiteral("all"), 0U });
    }

    bool addTimezone(const QString& calendar, const QString& component)
    {
        return tell(calendar, QStringLiteral("AddTimezone"), { component });
    }

    // A new calendar in a file.
    bool addCalendar(const QString& uid)
    {
        const QMap<QString, QString> sources { { uid,
            QStringLiteral("[Data Source]\nDisplayName=%1\nEnabled=true\nParent=local-stub\n"
                           "[Calendar]\nBackendName=local\n")
                .arg(uid) } };
        return isReply(
            call(serviceOf("Sources5"), pathOf("SourceManager"), interfaceOf("SourceManager"),
                QStringLiteral("CreateSources"), { QVariant::fromValue(sources) }));
    }

    // What the service keeps of the calendar, as a whole.
    bool describeCalendar(const QString& uid, const QString& text)
    {
        return isReply(call(serviceOf("Sources5"), objectOf(uid), interfaceOf("Source.Writable"),
            QStringLiteral("Write"), { text }));
    }

    bool removeCalendar(const QString& uid)
    {
        return isReply(call(serviceOf("Sources5"), objectOf(uid), interfaceOf("Source.Removable"),
            QStringLiteral("Remove"), {}));
    }

    // Of the process that serves calendars; 0 where none runs.
    pid_t calendarProcess() { return processOf(serviceOf("Calendar8")); }
    pid_t sourceProcess() { return processOf(serviceOf("Sources5")); }

private:
    using Objects = QMap<QDBusObjectPath, QMap<QString, QVariantMap>>;

    static QString serviceOf(const char* name) { return interfaceOf(name); }

    static QString interfaceOf(const char* name)
    {
        return QStringLiteral("org.gnome.evolution.dataserver.") + QLatin1String(name);
    }

    static QString pathOf(const char* name)
    {
        return QStringLiteral("/org/gnome/evolution/dataserver/") + QLatin1String(name);
    }

    static bool isReply(const QDBusMessage& answer)
    {
        return answer.type() == QDBusMessage::ReplyMessage;
    }

    QDBusMessage call(const QString& service, const QString& path, const QString& interface,
        const QString& method, const QVariantList& arguments)
    {
        auto message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        return m_bus.call(message, QDBus::Block, 20'000);
    }

    bool tell(const QString& calendar, const QString& method, const QVariantList& arguments)
    {
        const auto place = call(serviceOf("Calendar8"), pathOf("CalendarFactory"),
            interfaceOf("CalendarFactory"), QStringLiteral("OpenCalendar"), { calendar });
        const auto path = place.arguments().value(0).toString();
        const auto service = place.arguments().value(1).toString();
        call(service, path, interfaceOf("Calendar"), QStringLiteral("Open"), {});
        return isReply(call(service, path, interfaceOf("Calendar"), method, arguments));
    }

    QString objectOf(const QString& source)
    {
        const auto answer = call(serviceOf("Sources5"), pathOf("SourceManager"),
            QStringLiteral("org.freedesktop.DBus.ObjectManager"),
            QStringLiteral("GetManagedObjects"), {});
        const auto objects = qdbus_cast<Objects>(answer.arguments().value(0));
        for (auto object = objects.cbegin(); object != objects.cend(); ++object) {
            const auto properties = object->value(interfaceOf("Source"));
            if (properties.value(QStringLiteral("UID")) == source)
                return object.key().path();
        }
        return {};
    }

    pid_t processOf(const QString& service)
    {
        const QDBusReply<uint> process = m_bus.interface()->servicePid(service);
        return process.isValid() ? static_cast<pid_t>(process.value()) : 0;
    }

    const QString m_name;
    QDBusConnection m_bus;
};
