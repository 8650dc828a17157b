#include "App/Platform/Linux/Tray/TrayStatusItem.h"

#include "App/Platform/Linux/Screen/X11Connection.h"
#include "App/Platform/Linux/Tray/TrayHostMonitor.h"
#include "Tests/Support/Daemon.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

StatusPainter painter()
{
    const auto fill = [](int width, int height) {
        QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::red);
        return image;
    };
    return { [fill](const StatusTitle&, int side) { return fill(side, side); },
        [fill](const StatusTitle& title, int height, qreal) {
            return fill(static_cast<int>(title.text.size()) * 10, height);
        } };
}

QStringList atTheRight()
{
    return { u"--edge"_s, u"top"_s, u"--align"_s, u"right"_s, u"--widthtype"_s, u"request"_s,
        u"--height"_s, u"28"_s };
}

QColor pixel(const QPoint& point)
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().pixelColor(point);
}

}

// A bar that shows StatusNotifierItems, as a panel without an XEmbed tray does.
class Bar final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")

public:
    Bar()
    {
        m_bus.registerObject(u"/StatusNotifierWatcher"_s, this, QDBusConnection::ExportAllSlots);
        m_bus.registerService(TrayHostMonitor::service());
        connect(&m_owners, &QDBusServiceWatcher::serviceUnregistered, this,
            [this](const QString& name) { items.removeAll(name); });
    }
    ~Bar() override
    {
        m_bus.unregisterService(TrayHostMonitor::service());
        m_bus.unregisterObject(u"/StatusNotifierWatcher"_s);
    }

    QStringList items;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service)
    {
        m_owners.addWatchedService(service);
        items << service;
    }

private:
    QDBusConnection m_bus = QDBusConnection::sessionBus();
    QDBusServiceWatcher m_owners { u""_s, m_bus, QDBusServiceWatcher::WatchForUnregistration };
};

// A tray that gives its item one place and size, however large.
class GenerousTray final : public QAbstractNativeEventFilter {
public:
    explicit GenerousTray(const QRect& place)
        : m_place(place)
    {
        auto* const x = X11Connection::connection();
        const auto root = X11Connection::root();
        const uint32_t whiteAndUnmanaged[] = { 0xffffff, 1 };
        xcb_create_window(x, XCB_COPY_FROM_PARENT, m_window, root, 0, 0, 1280, 720, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
            XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, whiteAndUnmanaged);
        xcb_map_window(x, m_window);
        qApp->installNativeEventFilter(this);
        const auto selection = X11Connection::atom("_NET_SYSTEM_TRAY_S0");
        xcb_set_selection_owner(x, m_window, selection, XCB_CURRENT_TIME);
        xcb_client_message_event_t news {};
        news.response_type = XCB_CLIENT_MESSAGE;
        news.format = 32;
        news.window = root;
        news.type = X11Connection::atom("MANAGER");
        news.data.data32[1] = selection;
        news.data.data32[2] = m_window;
        xcb_send_event(
            x, 0, root, XCB_EVENT_MASK_STRUCTURE_NOTIFY, reinterpret_cast<const char*>(&news));
        xcb_flush(x);
    }
    ~GenerousTray() override { xcb_destroy_window(X11Connection::connection(), m_window); }

    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override
    {
        const auto* request = static_cast<const xcb_client_message_event_t*>(message);
        if ((request->response_type & 0x7f) == XCB_CLIENT_MESSAGE
            && request->type == X11Connection::atom("_NET_SYSTEM_TRAY_OPCODE"))
            take(request->data.data32[2]);
        return false;
    }

private:
    void take(xcb_window_t item) const
    {
        auto* const x = X11Connection::connection();
        const uint32_t size[] = { uint32_t(m_place.width()), uint32_t(m_place.height()) };
        xcb_reparent_window(x, item, m_window, int16_t(m_place.x()), int16_t(m_place.y()));
        xcb_configure_window(x, item, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
        xcb_map_window(x, item);
        xcb_flush(x);
    }

    xcb_window_t m_window = xcb_generate_id(X11Connection::connection());
    QRect m_place;
};

class TrayStatusItemTest final : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<Daemon> startTray()
    {
        return std::make_unique<Daemon>(u"trayer"_s, atTheRight());
    }

    // In a tray, and painted there.
    static bool isSeen(const TrayStatusItem& item)
    {
        const auto place = item.geometry();
        return !place.isNull() && pixel(place.center()) == QColor(Qt::red);
    }

    static void click(const TrayStatusItem& item)
    {
        const auto centre = item.geometry().center();
        QProcess::startDetached(u"xdotool"_s,
            { u"mousemove"_s, QString::number(centre.x()), QString::number(centre.y()), u"click"_s,
                u"1"_s });
    }

private Q_SLOTS:
    void docksIntoATrayThatComesLate()
    {
        TrayStatusItem item(painter());
        item.setTitle({ u"24:59"_s, {} });
        item.show();
        QVERIFY(item.geometry().isNull());
        const auto tray = startTray();
        QTRY_VERIFY(isSeen(item));
        QTRY_COMPARE(item.geometry().width(), 50);
        item.setTitle({ u"120:00"_s, {} });
        QTRY_COMPARE(item.geometry().width(), 60);
    }

    void showsTheTrayWhereThePillIsNotQuiteInTheMiddle()
    {
        const GenerousTray tray({ 100, 20, 51, 30 }); // One more than the pill is wide.
        TrayStatusItem item(painter());
        item.setTitle({ u"24:59"_s, {} });
        item.show();
        QTRY_VERIFY(isSeen(item));
        const auto place = item.geometry();
        QTRY_COMPARE(pixel({ place.right() - 1, place.center().y() }), QColor(Qt::red));
        QTRY_COMPARE(pixel({ place.right(), place.center().y() }), QColor(Qt::white));
    }

    void returnsWithARestartedTray()
    {
        TrayStatusItem item(painter());
        item.setTitle({ u"24:59"_s, {} });
        item.show();
        auto tray = startTray();
        QTRY_VERIFY(isSeen(item));
        tray.reset();
        QTRY_VERIFY(item.geometry().isNull());
        tray = startTray();
        QTRY_VERIFY(isSeen(item));
    }

    void aClickActivatesWithItsPlace()
    {
        TrayStatusItem item(painter());
        item.setTitle({ u"24:59"_s, {} });
        item.show();
        const auto tray = startTray();
        QTRY_VERIFY(isSeen(item));
        QSignalSpy activated(&item, &StatusItem::activated);
        click(item);
        QTRY_COMPARE(activated.size(), 1);
        QVERIFY(item.geometry().contains(QCursor::pos()));
    }

    void aClickCountsOnceWhateverItBringsIntoBeing()
    {
        struct Newcomer final : QAbstractNativeEventFilter {
            bool nativeEventFilter(const QByteArray&, void*, qintptr*) override { return false; }
        };
        TrayStatusItem item(painter());
        item.setTitle({ u"24:59"_s, {} });
        item.show();
        const auto tray = startTray();
        QTRY_VERIFY(isSeen(item));
        std::unique_ptr<Newcomer> newcomer;
        connect(&item, &StatusItem::activated, this, [&newcomer] {
            if (!newcomer) {
                newcomer = std::make_unique<Newcomer>();
                qApp->installNativeEventFilter(newcomer.get());
            }
        });
        QSignalSpy activated(&item, &StatusItem::activated);
        click(item);
        QTRY_VERIFY(!activated.isEmpty());
        QCOMPARE(activated.size(), 1);
    }

    void waitsForABarThatComesLate()
    {
        TrayStatusItem item(painter());
        item.show();
        auto bar = std::make_unique<Bar>();
        QTRY_COMPARE(bar->items.size(), 1);
        bar = nullptr;
        bar = std::make_unique<Bar>();
        QTRY_COMPARE(bar->items.size(), 1);
    }

    void isSeenHoweverMuchRoomTheTrayGives()
    {
        TrayStatusItem item(painter());
        item.setTitle({ u"24:59"_s, {} });
        item.show();
        const GenerousTray tray({ 0, -3200, 1200, 7000 });
        QTRY_COMPARE(item.geometry(), QRect(0, -3200, 1200, 7000));
        QTRY_VERIFY(isSeen(item));
    }

    void isNeverInTwoPlaces()
    {
        TrayStatusItem item(painter());
        item.setTitle({ u"24:59"_s, {} });
        item.show();
        const Bar bar;
        QTRY_COMPARE(bar.items.size(), 1);
        auto tray = startTray();
        QTRY_VERIFY(isSeen(item));
        QTRY_VERIFY(bar.items.isEmpty());
        tray.reset();
        QTRY_COMPARE(bar.items.size(), 1);
        QVERIFY(item.geometry().isNull());
    }
};

// The display has to be there before the application is.
int main(int argc, char** argv)
{
    QProcess display;
    display.setStandardErrorFile(QProcess::nullDevice());
    display.start(u"Xvfb"_s,
        { u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x720x24"_s, u"-nolisten"_s,
            u"tcp"_s });
    if (!display.waitForReadyRead(10000))
        return 1;
    qputenv("DISPLAY", ":" + display.readLine().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
    int status = 1;
    {
        QGuiApplication::setDesktopSettingsAware(false);
        QApplication app(argc, argv);
        TrayStatusItemTest test;
        status = QTest::qExec(&test, argc, argv);
    }
    display.terminate();
    display.waitForFinished(2000);
    return status;
}

#include "TrayStatusItemTest.moc"
