#include "App/Platform/Linux/Session/GtkSettings.h"

#include "App/Platform/Linux/Files/WholeFile.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

static constexpr qint64 largest = 64 << 10; // Bytes: it holds a few dozen lines.

QString GtkSettings::iconTheme()
{
    const auto folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const auto file = WholeFile::read(folder + u"/gtk-3.0/settings.ini"_s, largest);
    for (const QByteArray& line : file.bytes.split('\n')) {
        const qsizetype equals = line.indexOf('=');
        if (equals >= 0 && line.first(equals).trimmed() == "gtk-icon-theme-name")
            return QString::fromUtf8(line.mid(equals + 1).trimmed());
    }
    return {};
}
