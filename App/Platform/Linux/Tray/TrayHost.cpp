#include "App/Platform/Linux/Tray/TrayHost.h"

#include <QHash>

using namespace Qt::StringLiterals;

TrayHost trayHost(const QString& process)
{
    using Picture = TrayHost::Picture;
    static const TrayHost gnome { Picture::nothing, false, true };
    static const TrayHost mate { Picture::nothing, false, false };
    static const TrayHost ayatana { Picture::named, false, false };
    // Their trays for old programs make a square icon out of a docked window, too.
    static const TrayHost square { Picture::square, false, false };
    static const TrayHost waybar { Picture::wide, false, false };
    static const QHash<QString, TrayHost> known {
        { u"gnome-shell"_s, gnome },
        { u"mate-panel"_s, mate },
        { u"notification-ar"_s, mate },
        { u"ayatana-indicat"_s, ayatana },
        { u"indicator-appli"_s, ayatana },
        { u"mate-indicator-"_s, ayatana },
        { u"kded5"_s, square },
        { u"kded6"_s, square },
        { u"plasmashell"_s, square },
        { u"lxqt-panel"_s, square },
        { u"waybar"_s, waybar },
    };
    return known.value(process);
}
