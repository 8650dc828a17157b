// The colours and fonts in force. Whoever joins us to the desktop applies its choice; Qt then tells
// every widget through PaletteChange and FontChange.
#pragma once

#include "App/Ui/Colors.h"
#include "App/Ui/TextRole.h"

#include <QFont>
#include <QString>

struct ThemeChoice {
    bool dark = false;
    QColor accent = {}; // Invalid: our own blue.
    QString fontFamily = {}; // Empty: Inter where it is installed, else the system's.
    QString iconTheme = {}; // Empty: the one that all desktops have.

    bool operator==(const ThemeChoice&) const = default;
};

class Theme final {
public:
    static const Theme& current();
    // Also sets the application's palette and font. An equal choice changes nothing.
    static void apply(const ThemeChoice& choice);

    explicit Theme(const ThemeChoice& choice);

    bool isDark() const { return m_choice.dark; }
    QString fontFamily() const { return m_family; }
    QString iconTheme() const { return m_choice.iconTheme; }
    QFont font(TextRole role) const;
    // Without a family, for setFont(): a widget follows the application in what it does not set.
    static QFont familylessFont(TextRole role);
    // The height of a line of this role, in points.
    static int lineHeight(TextRole role);

    const Colors colors;

private:
    ThemeChoice m_choice;
    QString m_family;
};
