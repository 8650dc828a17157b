#include "App/Helpers/SettingsPrograms.h"

#include <algorithm>

namespace SettingsPrograms {

struct Program {
    std::string_view desktop;
    std::string_view entry;
};

// Accounts before settings, where a desktop has a page for them.
static constexpr Program programs[] = {
    { "GNOME", "gnome-online-accounts-panel.desktop" },
    { "GNOME", "org.gnome.Settings.desktop" },
    { "GNOME", "gnome-control-center.desktop" },
    { "KDE", "kcm_kaccounts.desktop" },
    { "KDE", "systemsettings.desktop" },
    { "KDE", "kdesystemsettings.desktop" },
    { "XFCE", "xfce-settings-manager.desktop" },
    { "MATE", "matecc.desktop" },
    { "X-Cinnamon", "cinnamon-online-accounts-panel.desktop" },
    { "X-Cinnamon", "cinnamon-settings.desktop" },
    { "LXQt", "lxqt-config.desktop" },
    { "Budgie", "budgie-online-accounts-panel.desktop" },
    { "Budgie", "budgie-control-center.desktop" },
    { "Unity", "unity-control-center.desktop" },
    { "Pantheon", "io.elementary.settings.desktop" },
    { "Pantheon", "io.elementary.switchboard.desktop" },
    { "Deepin", "dde-control-center.desktop" },
    { "COSMIC", "com.system76.CosmicSettings.desktop" },
    // A calendar with accounts of its own, for those who have put their desktop together.
    { "", "org.gnome.Evolution.desktop" },
};

std::vector<std::string> candidates(std::string_view desktops)
{
    std::vector<std::string> entries;
    const auto add = [&](std::string_view entry) {
        if (std::ranges::find(entries, entry) == entries.end())
            entries.emplace_back(entry);
    };
    while (!desktops.empty()) {
        const auto desktop = desktops.substr(0, desktops.find(':'));
        for (const auto& program : programs) {
            if (!desktop.empty() && program.desktop == desktop)
                add(program.entry);
        }
        desktops.remove_prefix(std::min(desktops.size(), desktop.size() + 1));
    }
    for (const auto& program : programs)
        add(program.entry);
    return entries;
}

}
