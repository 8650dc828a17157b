#include "App/Ui/IconTheme.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestName = 200;
constexpr qsizetype mostThemes = 16;
constexpr int largestSide = 1 << 15; // Pixels
constexpr qint64 largestIndex = qint64 { 1 } << 20; // Bytes

// A group of an index: a folder of icons, or what is said of the theme itself. Its texts are in the
// index.
struct Group {
    QByteArrayView name;
    QByteArrayView type = "Threshold";
    QByteArrayView parents = {};
    int size = 0;
    int minimum = 0;
    int maximum = 0;
    int threshold = 2;
    int scale = 1;

    int least() const
    {
        if (type == "Scalable")
            return (minimum ? minimum : size) * scale;
        return (type == "Fixed" ? size : size - threshold) * scale;
    }

    int most() const
    {
        if (type == "Scalable")
            return (maximum ? maximum : size) * scale;
        return (type == "Fixed" ? size : size + threshold) * scale;
    }
};

bool isInside(QByteArrayView folder)
{
    return !folder.startsWith('/') && !folder.contains("..");
}

QStringList dataFolders()
{
    return QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
}

QStringList iconFolders()
{
    QStringList folders { QDir::homePath() + u"/.icons/"_s };
    for (const QString& data : dataFolders())
        folders << data + u"/icons/"_s;
    return folders;
}

int sideIn(QByteArrayView value)
{
    return std::clamp(value.toInt(), 0, largestSide);
}

void learn(Group& group, QByteArrayView key, QByteArrayView value)
{
    if (key == "Size")
        group.size = sideIn(value);
    else if (key == "MinSize")
        group.minimum = sideIn(value);
    else if (key == "MaxSize")
        group.maximum = sideIn(value);
    else if (key == "Threshold")
        group.threshold = sideIn(value);
    else if (key == "Scale")
        group.scale = std::clamp(value.toInt(), 1, 8);
    else if (key == "Type")
        group.type = value;
    else if (key == "Inherits")
        group.parents = value;
}

std::vector<Group> groupsIn(QByteArrayView index)
{
    std::vector<Group> groups;
    while (!index.isEmpty()) {
        const qsizetype end = index.indexOf('\n');
        const QByteArrayView line = index.first(end < 0 ? index.size() : end).trimmed();
        index = end < 0 ? QByteArrayView() : index.sliced(end + 1);
        const qsizetype equals = line.indexOf('=');
        if (line.size() > 2 && line.startsWith('[') && line.endsWith(']'))
            groups.push_back({ .name = line.sliced(1).chopped(1) });
        else if (!groups.empty() && equals > 0)
            learn(groups.back(), line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
    }
    return groups;
}

QByteArray indexOf(const QString& theme)
{
    for (const QString& folder : iconFolders()) {
        QFile file(folder + theme + u"/index.theme"_s);
        // Opening what is no regular file may wait for somebody else.
        if (QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly))
            return file.read(largestIndex);
    }
    return {};
}

// Any picture that is too small loses more than one that is too large.
int distance(int least, int most, int side)
{
    if (side > most)
        return side - most + largestSide;
    return std::max(least - side, 0);
}

QString fileOf(const QString& folder, const QString& icon)
{
    for (const auto& ending : { u".svg"_s, u".png"_s }) {
        QString path = folder + icon + ending;
        if (QFileInfo(path).isFile())
            return path;
    }
    return {};
}

}

IconTheme::IconTheme(const QString& name)
{
    add(name);
    add(u"Adwaita"_s);
    // Where applications put their own; of all themes the last, whoever inherits it.
    read(u"hicolor"_s);
    constexpr int any = std::numeric_limits<int>::max();
    auto& unthemed = m_themes.emplace_back();
    for (const QString& data : dataFolders())
        unthemed.push_back({ data + u"/pixmaps/"_s, 0, any });
}

bool IconTheme::isName(const QString& text)
{
    return !text.isEmpty() && text.size() <= longestName && !text.startsWith(u'.')
        && !text.contains(u'/') && !text.contains(QChar::Null) && !text.contains(".."_L1);
}

void IconTheme::add(const QString& theme)
{
    if (!isName(theme) || theme == "hicolor"_L1 || m_known.contains(theme)
        || m_known.size() == mostThemes)
        return;
    m_known << theme;
    for (const QString& parent : read(theme))
        add(parent.trimmed());
}

QStringList IconTheme::read(const QString& theme)
{
    const QByteArray index = indexOf(theme);
    const std::vector<Group> groups = groupsIn(index);
    auto& folders = m_themes.emplace_back();
    for (const QString& icons : iconFolders()) {
        const QString root = icons + theme + u'/';
        if (groups.empty() || !QFileInfo::exists(root))
            continue;
        for (const Group& group : groups) {
            const QString path = root + QString::fromUtf8(group.name) + u'/';
            if (group.size > 0 && isInside(group.name) && QFileInfo::exists(path))
                folders.push_back({ path, group.least(), group.most() });
        }
    }
    QStringList parents;
    for (const Group& group : groups)
        parents << QString::fromUtf8(group.parents).split(u',', Qt::SkipEmptyParts);
    return parents;
}

QString IconTheme::find(const QString& icon, int side) const
{
    if (!isName(icon))
        return {};
    for (const auto& folders : m_themes) {
        QString nearest;
        int least = std::numeric_limits<int>::max();
        for (const Folder& folder : folders) {
            const int away = distance(folder.least, folder.most, side);
            if (away >= least)
                continue;
            if (const QString path = fileOf(folder.path, icon); !path.isEmpty()) {
                nearest = path;
                least = away;
            }
        }
        if (!nearest.isEmpty())
            return nearest;
    }
    return {};
}
