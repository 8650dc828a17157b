#include "App/Platform/Linux/Session/AutostartLoginItem.h"

#include "App/Platform/Linux/Files/WholeFile.h"
#include "App/Platform/Linux/Session/AutostartEntry.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const auto fileName = u"/autostart/org.corvella.Corvella.desktop"_s;
constexpr qint64 largest = 64 << 10; // Bytes: an entry has a dozen lines.

QString ownPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + fileName;
}

// The user's own takes the place of one for all users.
QStringList paths()
{
    QStringList all;
    for (const auto& folder :
        QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation))
        all << folder + fileName;
    return all;
}

std::optional<QString> write(const QByteArray& text)
{
    errno = 0;
    // Not through a link: what that leads to may be another's, or /dev/null.
    const bool isDone
        = QDir().mkpath(QFileInfo(ownPath()).path()) && WholeFile::replace(ownPath(), text);
    return isDone ? std::nullopt : std::optional(qt_error_string(errno));
}

}

AutostartLoginItem::AutostartLoginItem(QString program)
    : m_program(std::move(program))
{
}

LoginItem::Status AutostartLoginItem::status() const
{
    for (const auto& path : paths()) {
        if (!QFileInfo::exists(path))
            continue;
        const AutostartEntry entry(WholeFile::read(path, largest).bytes);
        const auto started = QStandardPaths::findExecutable(entry.program());
        const bool isOurs
            = QFileInfo(started).canonicalFilePath() == QFileInfo(m_program).canonicalFilePath();
        if (entry.isEnabled() && isOurs)
            return Status::enabled;
        return Status::requiresApproval;
    }
    return Status::notRegistered;
}

std::optional<QString> AutostartLoginItem::registerItem()
{
    if (m_program.contains(u'%'))
        return u"No login can start a program whose path has a % in it"_s;
    return write(AutostartEntry::starting(m_program));
}

std::optional<QString> AutostartLoginItem::unregisterItem()
{
    const auto isForAll
        = [](const QString& path) { return path != ownPath() && QFileInfo::exists(path); };
    if (std::ranges::any_of(paths(), isForAll))
        return write(AutostartEntry::hidden());
    QFile file(ownPath());
    if (!QFileInfo(ownPath()).isSymLink() && !file.exists())
        return std::nullopt;
    return file.remove() ? std::nullopt : std::optional(file.errorString());
}
