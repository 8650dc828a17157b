// What the user's settings file for GTK says; on desktops without a service for settings, where
// they are set.
#pragma once

#include <QString>

namespace GtkSettings {

// Empty where the file names none.
QString iconTheme();

}
