// Answers for objects that read their D-Bus messages themselves.
#pragma once

#include <QLatin1StringView>
#include <QVariant>

#include <functional>

class QDBusConnection;
class QDBusMessage;

namespace DBusProperties {

QLatin1StringView interface(); // org.freedesktop.DBus.Properties

// Get and GetAll, reading only what is asked for; false for everything else, and for a property
// that is not among the names.
bool answer(const QDBusMessage& message, const QDBusConnection& bus, const QStringList& names,
    const std::function<QVariant(const QString& name)>& read);

// Replies unless the caller wants none, which is no failure.
bool reply(
    const QDBusMessage& message, const QDBusConnection& bus, const QVariantList& values = {});

}
