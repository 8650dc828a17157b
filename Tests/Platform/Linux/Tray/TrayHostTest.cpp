#include "App/Platform/Linux/Tray/TrayHost.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TrayHostTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hostsDiffer_data()
    {
        QTest::addColumn<QString>("process");
        QTest::addColumn<int>("picture");
        QTest::addColumn<bool>("showsLabel");
        QTest::addColumn<bool>("yieldsToXEmbed");
        using enum TrayHost::Picture;
        QTest::addRow("GNOME") << u"gnome-shell"_s << int(nothing) << true << false;
        QTest::addRow("MATE") << u"mate-panel"_s << int(nothing) << true << false;
        QTest::addRow("Ayatana") << u"ayatana-indicat"_s << int(named) << true << false;
        QTest::addRow("Plasma") << u"kded5"_s << int(square) << false << false;
        QTest::addRow("waybar") << u"waybar"_s << int(wide) << false << false;
        QTest::addRow("Xfce") << u"xfce4-panel"_s << int(square) << false << true;
        QTest::addRow("LXQt") << u"lxqt-panel"_s << int(square) << false << false;
        QTest::addRow("unknown") << u"some-new-bar"_s << int(square) << false << true;
        QTest::addRow("nameless") << QString() << int(square) << false << true;
    }

    void hostsDiffer()
    {
        QFETCH(QString, process);
        const auto host = trayHost(process);
        QTEST(int(host.picture), "picture");
        QTEST(host.showsLabel(), "showsLabel");
        QTEST(host.yieldsToXEmbed, "yieldsToXEmbed");
    }

    void onlyGnomeIsAskedForThePlace()
    {
        QVERIFY(trayHost(u"gnome-shell"_s).tellsPlace);
        QVERIFY(!trayHost(u"mate-panel"_s).tellsPlace);
    }
};

QTEST_GUILESS_MAIN(TrayHostTest)
#include "TrayHostTest.moc"
