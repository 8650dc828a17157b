#include "App/Platform/Linux/Bus/DBusProperties.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

QLatin1StringView DBusProperties::interface()
{
    return "org.freedesktop.DBus.Properties"_L1;
}

bool DBusProperties::answer(const QDBusMessage& message, const QDBusConnection& bus,
    const QStringList& names, const std::function<QVariant(const QString& name)>& read)
{
    if (message.member() == "GetAll"_L1) {
        QVariantMap values;
        for (const auto& name : names)
            values[name] = read(name);
        return reply(message, bus, { values });
    }
    const auto name = message.arguments().value(1).toString();
    if (message.member() != "Get"_L1 || !names.contains(name))
        return false;
    return reply(message, bus, { QVariant::fromValue(QDBusVariant(read(name))) });
}

bool DBusProperties::reply(
    const QDBusMessage& message, const QDBusConnection& bus, const QVariantList& values)
{
    return !message.isReplyRequired() || bus.send(message.createReply(values));
}
