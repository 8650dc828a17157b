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

// A group of an index: a folder of icons, or what is said of the theme itself.
struct Group {
    QString name;
    QString type = u"Threshold"_s;
    int size = 0;
    int minimum = 0;
    int maximum = 0;
    int threshold = 2;
    int scale = 1;
    QString parents = {};

    int least() const
    {
        if (type == "Scalable"_L1)
            return (minimum ? minimum : size) * scale;
        return (type == "Fixed"_L1 ? size : size - threshold) * scale;
    }

    int most() const
    {
        if (type == "Scalable"_L1)
            return (maximum ? maximum : size) * scale;
        return (type == "Fixed"_L1 ? size : size + threshold) * scale;
    }
};

bool isInside(const QString& folder)
{
    return !folder.isEmpty() && !folder.startsWith(u'/') && !folder.contains(".."_L1);
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
    return std::clamp(value.trimmed().toInt(), 0, largestSide);
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
        group.scale = std::clamp(value.trimmed().toInt(), 1, 8);
    else if (key == "Type")
        group.type = QString::fromLatin1(value.trimmed());
    else if (key == "Inherits")
        group.parents = QString::fromUtf8(value.trimmed());
}

std::vector<Group> groupsIn(const QByteArray& index)
{
    std::vector<Group> groups;
    for (const QByteArray& line : index.split('\n')) {
        const QByteArrayView words = QByteArrayView(line).trimmed();
        const qsizetype equals = words.indexOf('=');
        if (words.startsWith('[') && words.endsWith(']'))
            groups.push_back({ .name = QString::fromUtf8(words.sliced(1).chopped(1)) });
        else if (!groups.empty() && equals > 0)
            learn(groups.back(), words.first(equals).trimmed(), words.sliced(equals + 1));
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
        const QString path = folder + icon + ending;
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

QList<QString> IconTheme::read(const QString& theme)
{
    QStringList parents;
    const std::vector<Group> groups = groupsIn(indexOf(theme));
    auto& folders = m_themes.emplace_back();
    for (const QString& icons : iconFolders()) {
        const QString root = icons + theme + u'/';
        if (groups.empty() || !QFileInfo::exists(root))
            continue;
        for (const Group& group : groups) {
            const QString path = root + group.name + u'/';
            if (group.size > 0 && isInside(group.name) && QFileInfo::exists(path))
                folders.push_back({ path, group.least(), group.most() });
        }
    }
    for (const Group& group : groups)
        parents << group.parents.split(u',', Qt::SkipEmptyParts);
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
