#include "App/Platform/Linux/Session/PortalAppearance.h"
#include "Tests/Support/Daemon.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

static const auto colours = u"org.freedesktop.appearance"_s;
static const auto gnome = u"org.gnome.desktop.interface"_s;
static const auto kde = u"org.kde.kdeglobals.General"_s;

static bool isServed()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(
        u"org.freedesktop.portal.Desktop"_s);
}

struct Setup {
    PortalAppearance appearance;
    QSignalSpy changes { &appearance, &Appearance::changed };
};

class PortalAppearanceTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_config.isValid());
        qputenv("XDG_CONFIG_HOME", m_config.path().toLocal8Bit());
        qunsetenv("XDG_CURRENT_DESKTOP");
    }

    void cleanup()
    {
        QFile::remove(m_config.filePath(u"gtk-3.0/settings.ini"_s));
        m_portal.reset();
        QTRY_VERIFY(!isServed());
    }

    // First, since what another test makes known to the type system would hide what is missing.
    void followsChanges()
    {
        startPortal(u"{}"_s);
        Setup s;
        change(colours, u"color-scheme"_s, u"u(1)"_s);
        QTRY_VERIFY(s.appearance.isDark());
        change(colours, u"color-scheme"_s, u"u(2)"_s);
        QTRY_VERIFY(!s.appearance.isDark());
        change(colours, u"accent-color"_s, u"rgb(0, 0, 1)"_s);
        QTRY_COMPARE(s.appearance.accent().rgb(), qRgb(0, 0, 255));
        change(gnome, u"font-name"_s, u"s('Inter 10')"_s);
        QTRY_COMPARE(s.appearance.fontFamily(), u"Inter"_s);
        QCOMPARE(s.changes.count(), 4);
    }

    void isLightAndPlainWithoutAPortal()
    {
        Setup s;
        answered();
        QVERIFY(!s.appearance.isDark());
        QVERIFY(!s.appearance.accent().isValid());
        QVERIFY(s.appearance.fontFamily().isEmpty());
        QCOMPARE(s.changes.count(), 0);
    }

    void ignoresAChangeOfAnotherShape()
    {
        const auto name = u"a portal that mumbles"_s;
        auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
        bus.registerService(u"org.freedesktop.portal.Desktop"_s);
        Setup s;
        const auto tell = [&bus](const QVariant& value) {
            auto signal = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
            signal << colours << u"color-scheme"_s << value;
            bus.send(signal);
        };
        tell(QVariant::fromValue(QList<int> { 2 }));
        tell(QVariant::fromValue(QDBusVariant(1U)));
        QTRY_VERIFY(s.appearance.isDark());
        QDBusConnection::disconnectFromBus(name);
    }

    void isLightAndPlainWithoutABus()
    {
        const PortalAppearance appearance(QDBusConnection(u"nowhere"_s));
        QVERIFY(!appearance.isDark());
    }

    void readsWhatThePortalTells()
    {
        startPortal(u"{'org.freedesktop.appearance': {'color-scheme': u(1),"
                    "'accent-color': rgb(1, 0.5, 0)},"
                    "'org.gnome.desktop.interface': {'font-name': s('Cantarell Bold 11')}}"_s);
        Setup s;
        QTRY_COMPARE(s.changes.count(), 1);
        QVERIFY(s.appearance.isDark());
        QCOMPARE(s.appearance.accent().rgb(), qRgb(255, 128, 0));
        QCOMPARE(s.appearance.fontFamily(), u"Cantarell"_s);
    }

    void takesKdesFontWhereGnomeNamesNone()
    {
        startPortal(u"{'org.kde.kdeglobals.General': {'font': s('Noto Sans,10,-1,5,50,0')}}"_s);
        Setup s;
        QTRY_COMPARE(s.appearance.fontFamily(), u"Noto Sans"_s);
    }

    void followsTheIconTheme()
    {
        startPortal(u"{'org.gnome.desktop.interface': {'icon-theme': s('Yaru')}}"_s);
        Setup s;
        QTRY_COMPARE(s.appearance.iconTheme(), u"Yaru"_s);
        change(gnome, u"icon-theme"_s, u"s('Papirus')"_s);
        QTRY_COMPARE(s.appearance.iconTheme(), u"Papirus"_s);
        QCOMPARE(s.changes.count(), 2);
    }

    void takesTheIconThemeOfTheDesktopThatRuns_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QString>("theme");
        QTest::newRow("GNOME") << QByteArray("ubuntu:GNOME") << u"Adwaita"_s;
        QTest::newRow("KDE") << QByteArray("KDE") << u"breeze"_s;
        QTest::newRow("none") << QByteArray() << u"Adwaita"_s;
    }

    void takesTheIconThemeOfTheDesktopThatRuns()
    {
        QFETCH(QByteArray, desktop);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        startPortal(u"{'org.gnome.desktop.interface': {'icon-theme': s('Adwaita')},"
                    "'org.kde.kdeglobals.Icons': {'Theme': s('breeze')}}"_s);
        Setup s;
        QTRY_COMPARE(s.changes.count(), 1);
        QTEST(s.appearance.iconTheme(), "theme");
    }

    void takesKdesIconThemeWhereGnomeNamesNone()
    {
        startPortal(u"{'org.kde.kdeglobals.Icons': {'Theme': s('breeze')}}"_s);
        Setup s;
        QTRY_COMPARE(s.appearance.iconTheme(), u"breeze"_s);
    }

    void readsTheIconThemeFromTheFileWhereThePortalNamesNone()
    {
        QVERIFY(QDir(m_config.path()).mkpath(u"gtk-3.0"_s));
        QFile file(m_config.filePath(u"gtk-3.0/settings.ini"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[Settings]\ngtk-theme-name=Nordic\n gtk-icon-theme-name = Papirus \n");
        file.close();
        Setup s;
        QCOMPARE(s.appearance.iconTheme(), u"Papirus"_s);
        startPortal(u"{'org.freedesktop.appearance': {'color-scheme': u(1)}}"_s);
        QTRY_VERIFY(s.appearance.isDark());
        QCOMPARE(s.appearance.iconTheme(), u"Papirus"_s);
        change(gnome, u"icon-theme"_s, u"s('Yaru')"_s);
        QTRY_COMPARE(s.appearance.iconTheme(), u"Yaru"_s);
    }

    void isSilentAboutChangesThatShowNowhere()
    {
        startPortal(u"{}"_s);
        Setup s;
        change(colours, u"color-scheme"_s, u"u(2)"_s);
        change(colours, u"contrast"_s, u"u(1)"_s);
        change(gnome, u"cursor-size"_s, u"u(24)"_s);
        change(u"org.example"_s, u"color-scheme"_s, u"u(1)"_s);
        change(gnome, u"font-name"_s, u"s('Inter 10')"_s);
        change(gnome, u"font-name"_s, u"s('Inter Bold 12')"_s);
        change(kde, u"font"_s, u"s('Noto Sans,10')"_s);
        QTRY_COMPARE(s.appearance.fontFamily(), u"Inter"_s);
        QCoreApplication::processEvents();
        QCOMPARE(s.changes.count(), 1);
    }

    void takesNoAccentOutOfRangeOrOfAnotherType_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("above") << u"rgb(0, 0, 1.1)"_s;
        QTest::newRow("below") << u"rgb(-1, -1, -1)"_s;
        QTest::newRow("no number") << u"rgb(float('nan'), 0, 0)"_s;
        QTest::newRow("text") << u"s('red')"_s;
        QTest::newRow("list") << u"[s('red')]"_s;
    }

    void takesNoAccentOutOfRangeOrOfAnotherType()
    {
        QFETCH(QString, value);
        startPortal(u"{'org.freedesktop.appearance': {'accent-color': rgb(1, 0, 0)}}"_s);
        Setup s;
        QTRY_VERIFY(s.appearance.accent().isValid());
        change(colours, u"accent-color"_s, value);
        QTRY_VERIFY(!s.appearance.accent().isValid());
    }

    void readsAgainWhenThePortalReturns()
    {
        startPortal(u"{'org.freedesktop.appearance': {'color-scheme': u(1)}}"_s);
        Setup s;
        QTRY_VERIFY(s.appearance.isDark());
        m_portal.reset();
        QTRY_VERIFY(!isServed());
        QCoreApplication::processEvents();
        QVERIFY(s.appearance.isDark());
        QCOMPARE(s.changes.count(), 1);
        startPortal(u"{'org.freedesktop.appearance': {'color-scheme': u(0)}}"_s);
        QTRY_VERIFY(!s.appearance.isDark());
        QCOMPARE(s.changes.count(), 2);
    }

    void readsAPortalThatComesLate()
    {
        Setup s;
        answered();
        startPortal(u"{'org.freedesktop.appearance': {'color-scheme': u(1)}}"_s);
        QTRY_VERIFY(s.appearance.isDark());
    }

    void doesNotWaitForAHungPortal()
    {
        startPortal(u"{'org.freedesktop.appearance': {'color-scheme': u(1)}}"_s);
        QVERIFY(m_portal->hang());
        QElapsedTimer elapsed;
        elapsed.start();
        Setup s;
        QVERIFY2(elapsed.elapsed() < 150, QByteArray::number(elapsed.elapsed()));
        QVERIFY(!s.appearance.isDark());
        m_portal->resume();
        QTRY_VERIFY(s.appearance.isDark());
    }

private:
    void startPortal(const QString& settings)
    {
        m_portal = std::make_unique<Daemon>(u"/usr/bin/python3"_s,
            QStringList { QStringLiteral(CORVELLA_SETTINGS_PORTAL), settings });
        QTRY_VERIFY_WITH_TIMEOUT(isServed(), 20'000);
    }

    static void change(const QString& space, const QString& key, const QString& value)
    {
        auto call = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
            u"/org/freedesktop/portal/desktop"_s, u"org.corvella.Test"_s, u"Change"_s);
        call << space << key << value;
        QCOMPARE(QDBusConnection::sessionBus().call(call).errorMessage(), QString());
    }

    // Returns when the bus has dealt with everything that was sent before.
    static void answered()
    {
        QDBusConnection::sessionBus().interface()->registeredServiceNames();
        QCoreApplication::processEvents();
    }

    QTemporaryDir m_config;
    std::unique_ptr<Daemon> m_portal;
};

QTEST_GUILESS_MAIN(PortalAppearanceTest)
#include "PortalAppearanceTest.moc"
