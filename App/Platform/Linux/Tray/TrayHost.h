// What the programs that show status items can do, as found by trying them.
#pragma once

#include <QString>

struct TrayHost {
    enum class Picture {
        square, // Squeezes whatever it gets into a square.
        wide, // Shows a picture as wide as it is.
        nothing, // Shows the label; a picture would repeat it.
        named, // Shows the label beside an icon of the theme.
    };

    Picture picture = Picture::square;
    // An XEmbed tray beside the host shows the title better than the host does.
    bool yieldsToXEmbed = true;
    // Says where it was clicked; elsewhere the pointer does.
    bool tellsPlace = false;

    bool showsLabel() const { return picture == Picture::nothing || picture == Picture::named; }
    bool operator==(const TrayHost&) const = default;
};

// By the process that owns the watcher's name, as in /proc/PID/comm: at most 15 characters.
TrayHost trayHost(const QString& process);
