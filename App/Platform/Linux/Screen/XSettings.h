// The texts among the settings that a desktop keeps on an X11 screen.
#pragma once

#include <QByteArray>
#include <QString>

namespace XSettings {

// Empty where the settings have no such text, or end too early.
QString text(const QByteArray& settings, QByteArrayView name);

}
