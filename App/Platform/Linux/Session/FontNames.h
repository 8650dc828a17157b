// The family in the ways desktops write a font.
#pragma once

#include <QString>

namespace FontNames {

// GNOME's way: family, style words and size, as in "Noto Sans Bold 11"; empty without a family.
QString pangoFamily(const QString& description);

// KDE's way: a comma-separated list that starts with the family.
QString kdeFamily(const QString& description);

}
