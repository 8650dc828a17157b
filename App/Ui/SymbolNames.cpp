#include "App/Ui/SymbolNames.h"

#include "App/Ui/SymbolTable.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using std::string_view;
using SymbolNames::table;

string_view lineAt(size_t start)
{
    return table.substr(start, table.find('\n', start) - start);
}

string_view nameIn(string_view line)
{
    return line.substr(0, line.find(' '));
}

// Of the line that holds the place.
size_t startOfLine(size_t place)
{
    const size_t before = place == 0 ? string_view::npos : table.rfind('\n', place - 1);
    return before == string_view::npos ? 0 : before + 1;
}

// Empty where no line is the name's.
string_view lineOf(string_view name)
{
    size_t from = 0;
    size_t to = table.size();
    while (from < to) {
        const size_t start = startOfLine(from + (to - from) / 2);
        const string_view line = lineAt(start);
        const int order = nameIn(line).compare(name);
        if (order == 0)
            return line;
        if (order < 0)
            from = start + line.size() + 1;
        else
            to = start;
    }
    return {};
}

QString text(string_view part)
{
    return QString::fromLatin1(part.data(), qsizetype(part.size()));
}

}

QStringList SymbolNames::all()
{
    QStringList names;
    for (size_t start = 0; start < table.size(); start += lineAt(start).size() + 1)
        names << text(nameIn(lineAt(start)));
    return names;
}

QStringList SymbolNames::icons(const QString& name)
{
    // What is not Latin becomes a question mark, which is in no name.
    const QByteArray latin = name.toLatin1();
    const string_view line = lineOf({ latin.constData(), size_t(latin.size()) });
    return text(line).split(u' ', Qt::SkipEmptyParts).mid(1);
}

QString SymbolNames::plainer(const QString& name)
{
    constexpr std::array shapes { QStringView(u"fill"), QStringView(u"circle"),
        QStringView(u"square"), QStringView(u"rectangle"), QStringView(u"slash"),
        QStringView(u"dashed") };
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot <= 0)
        return {};
    if (std::ranges::find(shapes, QStringView(name).sliced(dot + 1)) != shapes.end())
        return name.first(dot);
    const qsizetype badge = name.lastIndexOf(u".badge."_s);
    return name.first(std::max<qsizetype>(badge, 0));
}
