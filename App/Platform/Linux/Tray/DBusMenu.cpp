#include "App/Platform/Linux/Tray/DBusMenu.h"

#include "App/Platform/Linux/Bus/DBusProperties.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr auto menuInterface = "com.canonical.dbusmenu"_L1;
constexpr uint revision = 1; // The entries never change.

struct MenuNode {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;
};

struct MenuEntryProperties {
    int id = 0;
    QVariantMap properties;
};

struct MenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint time = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const MenuNode& node)
{
    argument.beginStructure();
    argument << node.id << node.properties << node.children;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuNode& node)
{
    argument.beginStructure();
    argument >> node.id >> node.properties >> node.children;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuEntryProperties& entry)
{
    argument.beginStructure();
    argument << entry.id << entry.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEntryProperties& entry)
{
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuEvent& event)
{
    argument.beginStructure();
    argument << event.id << event.name << event.data << event.time;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEvent& event)
{
    argument.beginStructure();
    argument >> event.id >> event.name >> event.data >> event.time;
    argument.endStructure();
    return argument;
}

// Nothing where the caller sent anything else: reading a value as what it is not ends the program.
template <typename T>
QList<T> listOf(const QVariant& value, QLatin1StringView signature)
{
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return {};
    const auto argument = value.value<QDBusArgument>();
    return argument.currentSignature() == signature ? qdbus_cast<QList<T>>(argument) : QList<T>();
}

}

Q_DECLARE_METATYPE(MenuNode)
Q_DECLARE_METATYPE(MenuEntryProperties)
Q_DECLARE_METATYPE(MenuEvent)

DBusMenu::DBusMenu(const QStringList& entries)
    : m_entries(entries)
{
    qDBusRegisterMetaType<MenuNode>();
    qDBusRegisterMetaType<MenuEntryProperties>();
    qDBusRegisterMetaType<QList<MenuEntryProperties>>();
    qDBusRegisterMetaType<MenuEvent>();
    qDBusRegisterMetaType<QList<MenuEvent>>();
    qDBusRegisterMetaType<QList<int>>();
}

QString DBusMenu::introspect(const QString&) const
{
    return uR"xml(<interface name="com.canonical.dbusmenu">
<property name="Version" type="u" access="read"/>
<property name="TextDirection" type="s" access="read"/>
<property name="Status" type="s" access="read"/>
<property name="IconThemePath" type="as" access="read"/>
<method name="GetLayout"><arg type="i" direction="in"/><arg type="i" direction="in"/>
<arg type="as" direction="in"/><arg type="u" direction="out"/>
<arg type="(ia{sv}av)" direction="out"/></method>
<method name="GetGroupProperties"><arg type="ai" direction="in"/><arg type="as" direction="in"/>
<arg type="a(ia{sv})" direction="out"/></method>
<method name="GetProperty"><arg type="i" direction="in"/><arg type="s" direction="in"/>
<arg type="v" direction="out"/></method>
<method name="Event"><arg type="i" direction="in"/><arg type="s" direction="in"/>
<arg type="v" direction="in"/><arg type="u" direction="in"/></method>
<method name="EventGroup"><arg type="a(isvu)" direction="in"/>
<arg type="ai" direction="out"/></method>
<method name="AboutToShow"><arg type="i" direction="in"/><arg type="b" direction="out"/></method>
<method name="AboutToShowGroup"><arg type="ai" direction="in"/><arg type="ai" direction="out"/>
<arg type="ai" direction="out"/></method>
<signal name="LayoutUpdated"><arg type="u"/><arg type="i"/></signal>
<signal name="ItemsPropertiesUpdated"><arg type="a(ia{sv})"/><arg type="a(ias)"/></signal>
<signal name="ItemActivationRequested"><arg type="i"/><arg type="u"/></signal>
</interface>)xml"_s;
}

bool DBusMenu::handleMessage(const QDBusMessage& message, const QDBusConnection& bus)
{
    if (message.interface() == DBusProperties::interface()) {
        const QVariantMap own {
            { u"Version"_s, 3U },
            { u"TextDirection"_s, u"ltr"_s },
            { u"Status"_s, u"normal"_s },
            { u"IconThemePath"_s, QStringList() },
        };
        return DBusProperties::answer(
            message, bus, own.keys(), [&own](const QString& name) { return own.value(name); });
    }
    if (!message.interface().isEmpty() && message.interface() != menuInterface)
        return false;
    const auto values = reply(message);
    if (values.isEmpty() && message.member() != "Event"_L1)
        return false;
    return DBusProperties::reply(message, bus, values);
}

QVariantList DBusMenu::reply(const QDBusMessage& message)
{
    const auto arguments = message.arguments();
    const auto member = message.member();
    const auto first = arguments.value(0);
    if (member == "GetLayout"_L1 && knows(first.toInt()))
        return { revision, layout(first.toInt()) };
    if (member == "GetGroupProperties"_L1)
        return { groupProperties(listOf<int>(first, "ai"_L1)) };
    if (member == "GetProperty"_L1) {
        const auto value = properties(first.toInt()).value(arguments.value(1).toString());
        return { QVariant::fromValue(QDBusVariant(value.isValid() ? value : QString())) };
    }
    if (member == "Event"_L1)
        receive(first.toInt(), arguments.value(1).toString());
    if (member == "EventGroup"_L1) {
        for (const auto& event : listOf<MenuEvent>(first, "a(isvu)"_L1))
            receive(event.id, event.name);
        return { QVariant::fromValue(QList<int>()) };
    }
    if (member == "AboutToShow"_L1)
        return { false };
    if (member == "AboutToShowGroup"_L1)
        return { QVariant::fromValue(QList<int>()), QVariant::fromValue(QList<int>()) };
    return {};
}

QVariantMap DBusMenu::properties(int id) const
{
    if (id == 0)
        return { { u"children-display"_s, u"submenu"_s } };
    return { { u"label"_s, m_entries.value(id - 1) } };
}

QVariant DBusMenu::layout(int id) const
{
    MenuNode node { id, properties(id), {} };
    if (id == 0) {
        for (int child = 1; child <= m_entries.size(); ++child)
            node.children.append(QDBusVariant(layout(child)));
    }
    return QVariant::fromValue(node);
}

QVariant DBusMenu::groupProperties(const QList<int>& ids) const
{
    QList<MenuEntryProperties> result;
    for (int id = 0; id <= m_entries.size(); ++id) {
        if (ids.isEmpty() || ids.contains(id))
            result.append({ id, properties(id) });
    }
    return QVariant::fromValue(result);
}

void DBusMenu::receive(int id, const QString& event)
{
    if (event == "clicked"_L1 && id > 0 && knows(id))
        Q_EMIT chosen(id - 1);
}
