#include "App/Platform/Linux/Tray/StatusNotifierItem.h"

#include "App/Platform/Linux/Tray/TrayHostMonitor.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QPoint>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const auto itemInterface = u"org.kde.StatusNotifierItem"_s;
const auto menuInterface = u"com.canonical.dbusmenu"_s;

StatusTitle title(const QString& text)
{
    return { text, {} };
}

QImage plain(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(QColor(0x11, 0x22, 0x33, 0x44));
    return image;
}

}

// The far side: a watcher that notes who registers, and hears what the item announces.
class Watcher final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) { items << service; }
    void labelChanged(const QString& label, const QString& guide) { labels << label << guide; }
    void iconChanged() { ++icons; }
    void toolTipChanged() { ++toolTips; }

public:
    QStringList items;
    QStringList labels;
    int icons = 0;
    int toolTips = 0;
};

struct Setup {
    Setup()
    {
        bus.registerObject(u"/StatusNotifierWatcher"_s, &watcher, QDBusConnection::ExportAllSlots);
        bus.registerService(TrayHostMonitor::service());
    }
    ~Setup()
    {
        bus.unregisterService(TrayHostMonitor::service());
        bus.unregisterObject(u"/StatusNotifierWatcher"_s);
    }

    bool publish(const TrayHost& host)
    {
        watcher.items.clear();
        item.publish(host);
        if (!QTest::qWaitFor([this] { return !watcher.items.isEmpty(); }))
            return false;
        hear(u"XAyatanaNewLabel"_s, SLOT(labelChanged(QString, QString)));
        hear(u"NewIcon"_s, SLOT(iconChanged()));
        hear(u"NewToolTip"_s, SLOT(toolTipChanged()));
        return true;
    }

    void hear(const QString& signal, const char* slot)
    {
        bus.connect(
            watcher.items.first(), u"/StatusNotifierItem"_s, itemInterface, signal, &watcher, slot);
    }

    QDBusMessage ask(const QString& path, const QString& interface, const QString& method,
        const QVariantList& arguments)
    {
        auto call = QDBusMessage::createMethodCall(watcher.items.value(0), path, interface, method);
        call.setArguments(arguments);
        // Blocking would keep the item from answering: it lives in this process.
        const auto pending = bus.asyncCall(call);
        if (!QTest::qWaitFor([&pending] { return pending.isFinished(); }))
            return {};
        return pending.reply();
    }

    QVariant property(const QString& name)
    {
        const auto reply = ask(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s,
            u"Get"_s, { itemInterface, name });
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }

    QList<QSize> pixmapSizes()
    {
        QList<QSize> sizes;
        const auto value = property(u"IconPixmap"_s);
        for (const auto& pixmap : qdbus_cast<QList<StatusNotifierPixmap>>(value))
            sizes << QSize(pixmap.width, pixmap.height);
        return sizes;
    }

    QDBusConnection bus = QDBusConnection::sessionBus();
    Watcher watcher;
    int rendered = 0;
    StatusNotifierItem item {
        { [this](const StatusTitle&, int side) {
             ++rendered;
             return plain(side, side);
         },
            [](const StatusTitle&, int height, qreal) { return plain(height * 2, height); } },
        { u"Corvella"_s, u"Quit Corvella"_s }
    };
};

class StatusNotifierItemTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void registersItsUniqueName()
    {
        Setup s;
        QVERIFY(s.publish({}));
        QVERIFY(s.watcher.items.first().startsWith(u':'));
        QVERIFY(s.watcher.items.first() != s.bus.baseService());
    }

    void tellsAHostWhatItIs()
    {
        Setup s;
        s.item.setTitle(title(u"24:59"_s));
        QVERIFY(s.publish({}));
        QCOMPARE(s.property(u"Id"_s).toString(), u"corvella"_s);
        QCOMPARE(s.property(u"Title"_s).toString(), u"Corvella"_s);
        QCOMPARE(s.property(u"Category"_s).toString(), u"ApplicationStatus"_s);
        QCOMPARE(s.property(u"Status"_s).toString(), u"Active"_s);
        QCOMPARE(s.property(u"ItemIsMenu"_s), QVariant(false));
        QCOMPARE(s.property(u"Menu"_s).value<QDBusObjectPath>().path(), u"/MenuBar"_s);
        QCOMPARE(s.property(u"IconAccessibleDesc"_s).toString(), u"Corvella 24 min"_s);
        QCOMPARE(s.property(u"XAyatanaLabel"_s).toString(), u"24:59"_s);
        const auto toolTip = qdbus_cast<StatusNotifierToolTip>(s.property(u"ToolTip"_s));
        QCOMPARE(toolTip.title, u"Corvella"_s);
        QCOMPARE(toolTip.text, u"24 min"_s);
    }

    void readsAsAWhole()
    {
        Setup s;
        QVERIFY(s.publish({}));
        const auto reply = s.ask(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s,
            u"GetAll"_s, { itemInterface });
        const auto all = qdbus_cast<QVariantMap>(reply.arguments().value(0));
        QCOMPARE(all.size(), 14);
        QCOMPARE(all.value(u"Id"_s).toString(), u"corvella"_s);
    }

    void aPixelIsSentMostSignificantByteFirst()
    {
        Setup s;
        QVERIFY(s.publish({}));
        const auto value = s.property(u"IconPixmap"_s);
        const auto pixmaps = qdbus_cast<QList<StatusNotifierPixmap>>(value);
        QCOMPARE(pixmaps.first().bytes.first(4), QByteArray("\x44\x11\x22\x33"));
        QCOMPARE(pixmaps.first().bytes.size(), 16 * 16 * 4);
    }

    void eachHostGetsThePictureItCanShow()
    {
        Setup s;
        s.item.setTitle(title(u"24:59"_s));
        QVERIFY(s.publish(trayHost(u"plasmashell"_s)));
        QVERIFY(s.pixmapSizes().contains(QSize(22, 22)));
        QVERIFY(s.pixmapSizes().contains(QSize(33, 33)));
        QVERIFY(s.pixmapSizes().contains(QSize(44, 44)));
        QVERIFY(s.publish(trayHost(u"gnome-shell"_s)));
        QCOMPARE(s.pixmapSizes(), { QSize(1, 22) });
        QVERIFY(s.publish(trayHost(u"waybar"_s)));
        QCOMPARE(s.pixmapSizes(), QList<QSize>({ { 52, 26 }, { 104, 52 } }));
        QVERIFY(s.publish(trayHost(u"ayatana-indicat"_s)));
        QCOMPARE(s.property(u"IconName"_s).toString(), u"org.corvella.Corvella"_s);
    }

    void aSquareChangesWithTheMinuteOnly()
    {
        Setup s;
        s.item.setTitle(title(u"24:59"_s));
        QVERIFY(s.publish({}));
        s.pixmapSizes();
        const int rendered = s.rendered;
        s.item.setTitle(title(u"24:58"_s));
        s.pixmapSizes();
        QCOMPARE(s.watcher.icons, 0);
        QCOMPARE(s.rendered, rendered);
        s.item.setTitle(title(u"23:59"_s));
        QTRY_COMPARE(s.watcher.icons, 1);
        QTRY_COMPARE(s.watcher.toolTips, 1);
        QVERIFY(s.watcher.labels.isEmpty());
        QCOMPARE(s.rendered, rendered); // Not before it is asked for.
        s.pixmapSizes();
        QCOMPARE(s.rendered, 2 * rendered);
    }

    void aLabelChangesWithTheSecond()
    {
        Setup s;
        s.item.setTitle(title(u"24:59"_s));
        QVERIFY(s.publish(trayHost(u"mate-panel"_s)));
        s.item.setTitle(title(u"24:58"_s));
        QTRY_COMPARE(s.watcher.labels, QStringList({ u"24:58"_s, u"00:00"_s }));
        QCOMPARE(s.watcher.icons, 0);
    }

    void aClickActivates()
    {
        Setup s;
        QVERIFY(s.publish({}));
        QSignalSpy activated(&s.item, &StatusNotifierItem::activated);
        const auto reply
            = s.ask(u"/StatusNotifierItem"_s, itemInterface, u"Activate"_s, { 40, 12 });
        QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        QCOMPARE(activated.size(), 1);
        QCOMPARE(activated.first().first().toPoint(), QPoint(40, 12));
        s.ask(u"/StatusNotifierItem"_s, itemInterface, u"Scroll"_s, { 3, u"vertical"_s });
        QCOMPARE(activated.size(), 1);
    }

    void theMenuHasTwoEntries()
    {
        Setup s;
        QVERIFY(s.publish({}));
        const auto reply
            = s.ask(u"/MenuBar"_s, menuInterface, u"GetLayout"_s, { 0, -1, QStringList() });
        QCOMPARE(reply.signature(), u"u(ia{sv}av)"_s);
        const auto root = reply.arguments().value(1).value<QDBusArgument>();
        int id = -1;
        QVariantMap properties;
        QVariantList children;
        root.beginStructure();
        root >> id >> properties >> children;
        root.endStructure();
        QStringList labels;
        for (const auto& child : children) {
            const auto node = child.value<QDBusArgument>();
            node.beginStructure();
            node >> id >> properties;
            labels << properties.value(u"label"_s).toString();
        }
        QCOMPARE(labels, QStringList({ u"Corvella"_s, u"Quit Corvella"_s }));
    }

    void anEntryIsChosenByAClickOnly()
    {
        Setup s;
        QVERIFY(s.publish({}));
        QSignalSpy chosen(&s.item, &StatusNotifierItem::menuEntryChosen);
        const auto event = [&s](int id, const QString& name) {
            const auto none = QVariant::fromValue(QDBusVariant(0));
            return s.ask(u"/MenuBar"_s, menuInterface, u"Event"_s, { id, name, none, 0U });
        };
        QCOMPARE(event(2, u"hovered"_s).type(), QDBusMessage::ReplyMessage);
        event(7, u"clicked"_s);
        QCOMPARE(chosen.size(), 0);
        event(2, u"clicked"_s);
        QCOMPARE(chosen.size(), 1);
        QCOMPARE(chosen.first().first().toInt(), 1);
    }

    void aListOfTheWrongKindHoldsNothing_data()
    {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QVariant>("list");
        qDBusRegisterMetaType<QList<QPoint>>();
        const auto pairs = QVariant::fromValue(QList<QPoint> { { 2, 2 } });
        const auto numbers = QVariant::fromValue(QList<int> { 2 });
        QTest::newRow("pairs for entries") << u"GetGroupProperties"_s << pairs;
        QTest::newRow("pairs for events") << u"EventGroup"_s << pairs;
        QTest::newRow("numbers for events") << u"EventGroup"_s << numbers;
        QTest::newRow("a number for events") << u"EventGroup"_s << QVariant(2);
    }

    void aListOfTheWrongKindHoldsNothing()
    {
        QFETCH(QString, method);
        QFETCH(QVariant, list);
        Setup s;
        QVERIFY(s.publish({}));
        QSignalSpy chosen(&s.item, &StatusNotifierItem::menuEntryChosen);
        const auto reply = s.ask(u"/MenuBar"_s, menuInterface, method, { list });
        QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        QCOMPARE(chosen.size(), 0);
    }

    void anUnknownCallIsAnError()
    {
        Setup s;
        QVERIFY(s.publish({}));
        const auto reply = s.ask(u"/StatusNotifierItem"_s, itemInterface, u"Dance"_s, {});
        QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
    }

    void withdrawingLeavesTheBus()
    {
        Setup s;
        QVERIFY(s.publish({}));
        QDBusServiceWatcher owner(
            s.watcher.items.first(), s.bus, QDBusServiceWatcher::WatchForUnregistration);
        QSignalSpy gone(&owner, &QDBusServiceWatcher::serviceUnregistered);
        s.item.withdraw();
        QTRY_COMPARE(gone.size(), 1);
        QVERIFY(s.publish({}));
        QCOMPARE(s.property(u"Id"_s).toString(), u"corvella"_s);
    }
};

QTEST_MAIN(StatusNotifierItemTest)
#include "StatusNotifierItemTest.moc"
