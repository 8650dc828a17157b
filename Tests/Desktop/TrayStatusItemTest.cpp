#include "App/Platform/Linux/TrayStatusItem.h"

#include "App/Platform/Linux/TrayHostMonitor.h"
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
