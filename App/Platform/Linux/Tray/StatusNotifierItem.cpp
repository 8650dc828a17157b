#include "App/Platform/Linux/Tray/StatusNotifierItem.h"

#include "App/Platform/Linux/Bus/DBusProperties.h"
#include "App/Platform/Linux/Tray/TrayHostMonitor.h"

#include <QDBusMessage>
#include <QDBusObjectPath>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto connectionName = "corvella-status-item"_L1;
constexpr auto itemInterface = "org.kde.StatusNotifierItem"_L1;
constexpr auto itemPath = "/StatusNotifierItem"_L1;
constexpr auto menuPath = "/MenuBar"_L1;

// What panels ask for at 1, 1.5 and 2 device pixels a point; they scale what they do not find.
constexpr int sides[] = { 16, 22, 24, 32, 33, 36, 44, 48, 64 };

QStringList propertyNames()
{
    return { u"Category"_s, u"Id"_s, u"Title"_s, u"Status"_s, u"WindowId"_s, u"IconName"_s,
        u"IconPixmap"_s, u"IconThemePath"_s, u"IconAccessibleDesc"_s, u"ToolTip"_s, u"ItemIsMenu"_s,
        u"Menu"_s, u"XAyatanaLabel"_s, u"XAyatanaLabelGuide"_s };
}

// A square picture shows this much of the title only, and need not change with the rest.
QString withoutSeconds(const QString& text)
{
    return text.section(u':', 0, 0);
}

// Of the same width as the label whatever the time is, so that the panel keeps still.
QString labelGuide(QString text)
{
    std::ranges::replace_if(
        text, [](QChar each) { return each.isDigit(); }, u'0');
    return text;
}

}

StatusNotifierItem::StatusNotifierItem(const StatusPainter& painter, const QStringList& menuEntries)
    : m_painter(painter)
    , m_menu(menuEntries)
{
    registerStatusNotifierTypes();
    connect(&m_menu, &DBusMenu::chosen, this, &StatusNotifierItem::menuEntryChosen);
}

StatusNotifierItem::~StatusNotifierItem()
{
    withdraw();
}

void StatusNotifierItem::setTitle(const StatusTitle& title)
{
    if (title == m_title)
        return;
    const auto old = std::exchange(m_title, title);
    if (!m_host)
        return;
    const bool minutesChanged = withoutSeconds(old.text) != withoutSeconds(title.text);
    if (m_host->showsLabel())
        announce(u"XAyatanaNewLabel"_s, { title.text, labelGuide(title.text) });
    if (m_host->picture == TrayHost::Picture::wide
        || (m_host->picture == TrayHost::Picture::square && minutesChanged)) {
        m_pixmaps.clear();
        announce(u"NewIcon"_s);
    }
    if (minutesChanged)
        announce(u"NewToolTip"_s);
}

void StatusNotifierItem::publish(const TrayHost& host)
{
    if (m_host != host)
        m_pixmaps.clear();
    m_host = host;
    if (!connectToBus())
        return;
    auto call = QDBusMessage::createMethodCall(TrayHostMonitor::service(),
        u"/StatusNotifierWatcher"_s, TrayHostMonitor::service(), u"RegisterStatusNotifierItem"_s);
    call << m_bus.baseService();
    m_bus.send(call);
}

bool StatusNotifierItem::connectToBus()
{
    if (m_bus.isConnected())
        return true;
    m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
    return m_bus.isConnected() && m_bus.registerVirtualObject(itemPath, this)
        && m_bus.registerVirtualObject(menuPath, &m_menu);
}

void StatusNotifierItem::withdraw()
{
    m_host.reset();
    m_pixmaps.clear();
    if (m_bus.name() != connectionName)
        return;
    m_bus.unregisterObject(itemPath);
    m_bus.unregisterObject(menuPath);
    m_bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(connectionName);
}

QString StatusNotifierItem::introspect(const QString&) const
{
    return uR"xml(<interface name="org.kde.StatusNotifierItem">
<property name="Category" type="s" access="read"/>
<property name="Id" type="s" access="read"/>
<property name="Title" type="s" access="read"/>
<property name="Status" type="s" access="read"/>
<property name="WindowId" type="i" access="read"/>
<property name="IconName" type="s" access="read"/>
<property name="IconPixmap" type="a(iiay)" access="read"/>
<property name="IconThemePath" type="s" access="read"/>
<property name="IconAccessibleDesc" type="s" access="read"/>
<property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
<property name="ItemIsMenu" type="b" access="read"/>
<property name="Menu" type="o" access="read"/>
<property name="XAyatanaLabel" type="s" access="read"/>
<property name="XAyatanaLabelGuide" type="s" access="read"/>
<method name="Activate"><arg type="i" direction="in"/><arg type="i" direction="in"/></method>
<method name="SecondaryActivate"><arg type="i" direction="in"/><arg type="i" direction="in"/>
</method>
<method name="ContextMenu"><arg type="i" direction="in"/><arg type="i" direction="in"/></method>
<method name="Scroll"><arg type="i" direction="in"/><arg type="s" direction="in"/></method>
<signal name="NewTitle"/><signal name="NewIcon"/><signal name="NewToolTip"/>
<signal name="NewStatus"><arg type="s"/></signal>
<signal name="XAyatanaNewLabel"><arg type="s"/><arg type="s"/></signal>
</interface>)xml"_s;
}

bool StatusNotifierItem::handleMessage(const QDBusMessage& message, const QDBusConnection& bus)
{
    if (message.interface() == DBusProperties::interface()) {
        return DBusProperties::answer(
            message, bus, propertyNames(), [this](const QString& name) { return property(name); });
    }
    if (!message.interface().isEmpty() && message.interface() != itemInterface)
        return false;
    const auto member = message.member();
    const auto arguments = message.arguments();
    if (member == "Activate"_L1 || member == "SecondaryActivate"_L1)
        Q_EMIT activated({ arguments.value(0).toInt(), arguments.value(1).toInt() });
    else if (member == "ContextMenu"_L1)
        Q_EMIT menuRequested();
    else if (member != "Scroll"_L1)
        return false;
    return DBusProperties::reply(message, bus);
}

QVariant StatusNotifierItem::property(const QString& name)
{
    if (name == "IconPixmap"_L1) {
        if (m_pixmaps.isEmpty())
            m_pixmaps = pixmaps();
        return QVariant::fromValue(m_pixmaps);
    }
    const bool named = m_host && m_host->picture == TrayHost::Picture::named;
    const QVariantMap values {
        { u"Category"_s, u"ApplicationStatus"_s },
        { u"Id"_s, u"corvella"_s },
        { u"Title"_s, u"Corvella"_s },
        { u"Status"_s, u"Active"_s },
        { u"WindowId"_s, 0 },
        { u"IconName"_s, named ? u"org.corvella.Corvella"_s : QString() },
        { u"IconThemePath"_s, QString() },
        { u"IconAccessibleDesc"_s, QString(u"Corvella "_s + toolTipText()).trimmed() },
        { u"ToolTip"_s,
            QVariant::fromValue(StatusNotifierToolTip { {}, {}, u"Corvella"_s, toolTipText() }) },
        { u"ItemIsMenu"_s, false },
        { u"Menu"_s, QVariant::fromValue(QDBusObjectPath(QString(menuPath))) },
        { u"XAyatanaLabel"_s, m_title.text },
        { u"XAyatanaLabelGuide"_s, labelGuide(m_title.text) },
    };
    return values.value(name);
}

QList<StatusNotifierPixmap> StatusNotifierItem::pixmaps() const
{
    const auto picture = m_host ? m_host->picture : TrayHost::Picture::square;
    QList<StatusNotifierPixmap> result;
    switch (picture) {
    case TrayHost::Picture::nothing: {
        QImage thin(1, 22, QImage::Format_ARGB32);
        thin.fill(Qt::transparent);
        result.append(StatusNotifierPixmap::of(thin));
        break;
    }
    case TrayHost::Picture::wide:
        for (const int scale : { 1, 2 })
            result.append(StatusNotifierPixmap::of(m_painter.pill(m_title, 26 * scale, scale)));
        break;
    case TrayHost::Picture::square:
        for (const int side : sides)
            result.append(StatusNotifierPixmap::of(m_painter.square(m_title, side)));
        break;
    case TrayHost::Picture::named:
        break;
    }
    return result;
}

QString StatusNotifierItem::toolTipText() const
{
    const bool counts = m_title.text.contains(u':');
    return counts ? withoutSeconds(m_title.text) + u" min"_s : QString();
}

void StatusNotifierItem::announce(const QString& signal, const QVariantList& values)
{
    auto message = QDBusMessage::createSignal(itemPath, itemInterface, signal);
    message.setArguments(values);
    m_bus.send(message);
}
