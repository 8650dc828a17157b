#include "App/Helpers/SettingsPrograms.h"

#include <QTest>

#include <algorithm>

class SettingsProgramsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theDesktopsOwnProgramComesFirst_data()
    {
        QTest::addColumn<std::string>("desktops");
        QTest::addColumn<std::string>("first");
        const auto row = [](const char* desktops, const char* first) {
            QTest::newRow(desktops) << std::string(desktops) << std::string(first);
        };
        row("GNOME", "gnome-online-accounts-panel.desktop");
        row("ubuntu:GNOME", "gnome-online-accounts-panel.desktop");
        row("KDE", "kcm_kaccounts.desktop");
        row("XFCE", "xfce-settings-manager.desktop");
        row("MATE", "matecc.desktop");
        row("X-Cinnamon", "cinnamon-online-accounts-panel.desktop");
        row("LXQt", "lxqt-config.desktop");
        row("Budgie:GNOME", "budgie-online-accounts-panel.desktop");
    }

    void theDesktopsOwnProgramComesFirst()
    {
        QFETCH(std::string, desktops);
        QFETCH(std::string, first);
        QCOMPARE(SettingsPrograms::candidates(desktops).front(), first);
    }

    void theSecondDesktopComesBeforeAllOthers()
    {
        const auto entries = SettingsPrograms::candidates("Budgie:GNOME");
        QCOMPARE(entries.at(2), std::string("gnome-online-accounts-panel.desktop"));
    }

    void everyDesktopLeadsToAllProgramsOnce_data()
    {
        QTest::addColumn<std::string>("desktops");
        for (const char* desktops : { "", ":", "::XFCE:", "sway", "KDE:KDE", "GNOME:Unity" })
            QTest::newRow(desktops) << std::string(desktops);
    }

    void everyDesktopLeadsToAllProgramsOnce()
    {
        QFETCH(std::string, desktops);
        auto entries = SettingsPrograms::candidates(desktops);
        auto all = SettingsPrograms::candidates("LXQt");
        std::ranges::sort(entries);
        std::ranges::sort(all);
        QCOMPARE(entries, all);
        QVERIFY(std::ranges::adjacent_find(entries) == entries.end());
    }
};

QTEST_GUILESS_MAIN(SettingsProgramsTest)
#include "SettingsProgramsTest.moc"
