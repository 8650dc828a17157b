#include "App/Platform/Linux/Session/FontNames.h"

#include <QSet>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace FontNames {

static bool isStyle(const QString& word)
{
    static const QSet<QString> styles { u"normal"_s, u"roman"_s, u"oblique"_s, u"italic"_s,
        u"small-caps"_s, u"thin"_s, u"ultra-light"_s, u"extra-light"_s, u"light"_s, u"semi-light"_s,
        u"demi-light"_s, u"book"_s, u"regular"_s, u"medium"_s, u"semi-bold"_s, u"demi-bold"_s,
        u"bold"_s, u"ultra-bold"_s, u"extra-bold"_s, u"heavy"_s, u"black"_s, u"ultra-black"_s,
        u"extra-black"_s, u"ultra-heavy"_s, u"ultra-condensed"_s, u"extra-condensed"_s,
        u"condensed"_s, u"semi-condensed"_s, u"semi-expanded"_s, u"expanded"_s, u"extra-expanded"_s,
        u"ultra-expanded"_s };
    return styles.contains(word.toLower());
}

static bool isSize(QString word)
{
    if (word.endsWith(u"px"_s))
        word.chop(2);
    bool isNumber = false;
    word.toDouble(&isNumber);
    return isNumber;
}

// Axes and features of a variable font.
static bool isSetting(const QString& word)
{
    return word.startsWith(u'@') || word.startsWith(u'#');
}

QString pangoFamily(const QString& description)
{
    // A comma ends the first family, so that its own words are not taken for styles.
    if (description.contains(u','))
        return description.section(u',', 0, 0).simplified();
    auto words = description.simplified().split(u' ', Qt::SkipEmptyParts);
    while (!words.isEmpty() && isSetting(words.last()))
        words.removeLast();
    if (!words.isEmpty() && isSize(words.last()))
        words.removeLast();
    while (!words.isEmpty() && isStyle(words.last()))
        words.removeLast();
    return words.join(u' ');
}

QString kdeFamily(const QString& description)
{
    return description.section(u',', 0, 0).trimmed();
}

}
