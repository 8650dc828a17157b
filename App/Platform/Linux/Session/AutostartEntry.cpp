#include "App/Platform/Linux/Session/AutostartEntry.h"

#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// As a string of a desktop entry: «\s», «\n», «\t», «\r» and «\\».
QString unescaped(const QString& text)
{
    static const QHash<QChar, QChar> meaning { { u's', u' ' }, { u'n', u'\n' }, { u't', u'\t' },
        { u'r', u'\r' }, { u'\\', u'\\' } };
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isEscape = text[i] == u'\\' && i + 1 < text.size();
        if (isEscape && meaning.contains(text[i + 1]))
            plain += meaning[text[++i]];
        else
            plain += text[i];
    }
    return plain;
}

// Quoted as a command line, and that once more as a string.
QByteArray quoted(const QString& argument)
{
    QString command;
    for (const QChar character : argument) {
        if (u"\"`$\\"_s.contains(character))
            command += u'\\';
        command += character;
    }
    command.replace(u'%', u"%%"_s).replace(u'\\', u"\\\\"_s).replace(u'\n', u"\\n"_s);
    command.replace(u'\r', u"\\r"_s).replace(u'\t', u"\\t"_s);
    return '"' + command.toUtf8() + '"';
}

bool isFound(const QString& program)
{
    return !QStandardPaths::findExecutable(program).isEmpty();
}

}

AutostartEntry::AutostartEntry(const QByteArray& text)
{
    bool isInside = false;
    for (const auto& bytes : text.split('\n')) {
        const auto line = QString::fromUtf8(bytes).trimmed();
        const auto equals = line.indexOf(u'=');
        if (line.startsWith(u'['))
            isInside = line == "[Desktop Entry]"_L1;
        else if (isInside && equals > 0)
            m_values.insert(
                line.first(equals).trimmed(), unescaped(line.sliced(equals + 1).trimmed()));
    }
}

// Sessions differ in which other words they take for true and false: those stand in the way.
bool AutostartEntry::isEnabled() const
{
    const auto is = [this](const QString& key, QLatin1StringView word, QLatin1StringView digit) {
        const auto said = value(key);
        return said.isEmpty() || said == word || said == digit;
    };
    if (value(u"Type"_s) != "Application"_L1 || !is(u"Hidden"_s, "false"_L1, "0"_L1)
        || !is(u"X-GNOME-Autostart-enabled"_s, "true"_L1, "1"_L1)
        || !is(u"X-MATE-Autostart-enabled"_s, "true"_L1, "1"_L1) || !isForThisDesktop())
        return false;
    const auto needed = value(u"TryExec"_s);
    return (needed.isEmpty() || isFound(needed)) && isFound(program());
}

bool AutostartEntry::isForThisDesktop() const
{
    const auto names
        = QString::fromLocal8Bit(qgetenv("XDG_CURRENT_DESKTOP")).split(u':', Qt::SkipEmptyParts);
    const auto isIn = [&names](const QString& list) {
        return std::ranges::any_of(names,
            [desktops = list.split(u';')](const QString& name) { return desktops.contains(name); });
    };
    const auto only = value(u"OnlyShowIn"_s);
    return (only.isEmpty() || isIn(only)) && !isIn(value(u"NotShowIn"_s));
}

QString AutostartEntry::program() const
{
    const auto line = value(u"Exec"_s);
    if (!line.startsWith(u'"')) {
        const auto isBlank
            = [](QChar character) { return character == u' ' || character == u'\t'; };
        return QString(line.cbegin(), std::ranges::find_if(line, isBlank) - line.cbegin());
    }
    QString program;
    for (qsizetype i = 1; i < line.size() && line[i] != u'"'; ++i) {
        if (line[i] == u'\\' && i + 1 < line.size())
            ++i;
        program += line[i];
    }
    return program.replace("%%"_L1, "%"_L1);
}

QByteArray AutostartEntry::starting(const QString& program)
{
    return "[Desktop Entry]\nType=Application\nName=Corvella\nIcon=org.corvella.Corvella\nExec="
        + quoted(program) + "\nX-GNOME-Autostart-enabled=true\n";
}

QByteArray AutostartEntry::hidden()
{
    return "[Desktop Entry]\nType=Application\nName=Corvella\nHidden=true\n";
}
