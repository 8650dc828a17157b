// Compares what the text tools make of the texts of a file with what is to come out:
//     TextVectors FILE
// The file is a JSON array of objects with "op", the name of the tool, "input", a string, and
// "output": an array of strings for sentences and words, a string for the other tools.
#include "App/QuickActions/TextTools.h"
#include "Tests/Support/VectorsCheck.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

struct Tool {
    QString name;
    std::function<QJsonValue(const QString& text)> run;
};

const std::array<Tool, 6> tools { {
    { u"sentences"_s,
        [](const QString& text) {
            return QJsonArray::fromStringList(TextTools::sentences(text));
        } },
    { u"words"_s,
        [](const QString& text) { return QJsonArray::fromStringList(TextTools::words(text)); } },
    { u"summarize"_s, &TextTools::summarize },
    { u"bullets"_s, &TextTools::bullets },
    { u"fixSpacingAndCase"_s, &TextTools::fixSpacingAndCase },
    { u"count"_s, &TextTools::count },
} };

const Tool* toolOf(const QJsonValue& vector)
{
    const auto tool = std::ranges::find(tools, vector[u"op"_s].toString(), &Tool::name);
    return tool == tools.end() ? nullptr : &*tool;
}

bool isText(const QJsonValue& value)
{
    return value.isString();
}

bool isVector(const QJsonValue& value)
{
    const auto* tool = toolOf(value);
    if (!tool || !isText(value[u"input"_s]))
        return false;
    const auto output = value[u"output"_s];
    if (output.type() != tool->run({}).type())
        return false;
    return isText(output) || std::ranges::all_of(output.toArray(), isText);
}

// As a JSON text in ASCII, in which halves of surrogate pairs and control characters show.
QString described(const QJsonValue& value)
{
    if (value.isArray()) {
        QStringList texts;
        for (const auto& text : value.toArray())
            texts << described(text);
        return u'[' + texts.join(u", "_s) + u']';
    }
    QString shown = u"\""_s;
    for (const auto c : value.toString()) {
        if (c < u' ' || c > u'~' || c == u'"' || c == u'\\')
            shown += u"\\u%1"_s.arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else
            shown += c;
    }
    return shown + u'"';
}

bool passes(const QJsonValue& vector, qsizetype number)
{
    const auto expected = vector[u"output"_s];
    const auto found = toolOf(vector)->run(vector[u"input"_s].toString());
    if (found == expected)
        return true;
    std::printf("%lld: %s %s\n    expected %s\n    found    %s\n", static_cast<long long>(number),
        qPrintable(vector[u"op"_s].toString()), qPrintable(described(vector[u"input"_s])),
        qPrintable(described(expected)), qPrintable(described(found)));
    return false;
}

// Qt takes a character of this kind for the mark of a file, at the start of any string.
QByteArray withEscapedByteOrderMarks(QByteArray json)
{
    const QByteArray mark("\xEF\xBB\xBF");
    if (json.startsWith(mark))
        json.remove(0, mark.size());
    return json.replace(mark, "\\uFEFF");
}

}

int main(int argc, char** argv)
{
    const VectorsCheck check { u"TextVectors"_s, u"an array of texts with what is to come out"_s,
        u"a tool, a text and what is to come out"_s, isVector, passes };
    return check.run(argc, argv, withEscapedByteOrderMarks);
}
