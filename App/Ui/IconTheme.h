// Finds the files of icons in the desktop's icon theme and in those it falls back to.
#pragma once

#include <QStringList>

#include <vector>

class IconTheme final {
public:
    // The name of a theme, as the desktop tells it; one that is nowhere leaves the themes that all
    // desktops fall back to.
    explicit IconTheme(const QString& name);

    // Whether it can be the name of a theme or an icon: not a way to somewhere else, nor endless.
    static bool isName(const QString& text);

    // The regular file, SVG or PNG, nearest to this side in pixels; empty where there is none.
    QString find(const QString& icon, int side) const;

private:
    struct Folder {
        QString path;
        // Sides in pixels.
        int least;
        int most;
    };

    void add(const QString& theme);
    // Returns the themes to look in after this one.
    QStringList read(const QString& theme);

    QStringList m_known;
    std::vector<std::vector<Folder>> m_themes; // In the order to look in them.
};
