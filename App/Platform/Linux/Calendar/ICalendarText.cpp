#include "App/Platform/Linux/Calendar/ICalendarText.h"

#include <QList>
#include <QStringView>

#include <algorithm>
#include <initializer_list>

using namespace Qt::StringLiterals;

namespace {

// Behind the property's name where it begins a line; -1 when there is none.
qsizetype findProperty(QStringView text, QStringView name)
{
    for (qsizetype at = 0; (at = text.indexOf(name, at, Qt::CaseInsensitive)) >= 0; ++at) {
        const auto end = at + name.size();
        const bool beginsLine = at == 0 || text[at - 1] == u'\n';
        if (beginsLine && end < text.size() && (text[end] == u':' || text[end] == u';'))
            return end;
    }
    return -1;
}

// A line that begins with white space goes on with the one before.
QString unfolded(QStringView text)
{
    QString line;
    for (auto part : text.split(u'\n')) {
        const bool goesOn = part.startsWith(u' ') || part.startsWith(u'\t');
        if (!line.isNull() && !goesOn)
            break;
        if (part.endsWith(u'\r'))
            part.chop(1);
        line += goesOn ? part.sliced(1) : part;
        if (line.isNull())
            line = u""_s;
    }
    return line;
}

QString unescaped(QStringView value)
{
    QString text;
    for (qsizetype at = 0; at < value.size(); ++at) {
        if (value[at] != u'\\' || at + 1 == value.size())
            text += value[at];
        else
            text += value[++at].toLower() == u'n' ? QChar(u'\n') : value[at];
    }
    return text;
}

qsizetype valueStart(QStringView line)
{
    bool isQuoted = false;
    for (qsizetype at = 0; at < line.size(); ++at) {
        if (line[at] == u'"')
            isQuoted = !isQuoted;
        else if (line[at] == u':' && !isQuoted)
            return at + 1;
    }
    return line.size();
}

}

QString ICalendarText::uid(const QString& text)
{
    const auto end = findProperty(text, u"UID");
    if (end < 0)
        return {};
    const auto line = unfolded(QStringView(text).sliced(end));
    return unescaped(QStringView(line).sliced(valueStart(line)));
}

bool ICalendarText::isRecurring(const QString& text)
{
    return std::ranges::any_of(
        std::initializer_list<QStringView> { u"RRULE", u"RDATE", u"RECURRENCE-ID" },
        [&text](QStringView name) { return findProperty(text, name) >= 0; });
}
