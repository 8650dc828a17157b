// Compares the text tools with ICU's boundaries and regular expressions, by which they are defined.
// The input is one text; what is not UTF-8 becomes half a surrogate pair.
#include "App/QuickActions/Text/Characters.h"
#include "App/QuickActions/TextTools.h"
#include "Tests/QuickActions/Text/TextDefinitions.h"

#include <QByteArray>

#include <algorithm>
#include <cstdint>

using namespace Qt::StringLiterals;

namespace {

void require(bool condition)
{
    if (!condition)
        qFatal("The text is not the one that was to come out.");
}

QString textOf(const QByteArray& input)
{
    return QString::fromUtf8(input).replace(QChar::ReplacementCharacter, QChar(0xD800));
}

bool isTrimmed(const QString& sentence)
{
    return !sentence.isEmpty() && sentence == sentence.trimmed();
}

QString countOf(const QString& text)
{
    const auto words = TextDefinitions::words(text).size();
    return u"%1 words · %2 characters · %3 sentences · ~%4 min read"_s.arg(words)
        .arg(TextDefinitions::characters(text).size())
        .arg(TextTools::sentences(text).size())
        .arg(std::max<qsizetype>(1, words / 230 + (words % 230 == 0 ? 0 : 1)));
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto text
        = textOf(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    require(TextTools::fixSpacingAndCase(text) == TextDefinitions::fixSpacingAndCase(text));
    require(TextTools::words(text) == TextDefinitions::words(text));
    require(TextTools::count(text) == countOf(text));

    const auto sentences = TextTools::sentences(text);
    require(std::ranges::all_of(sentences, isTrimmed));
    const auto summary = TextTools::summarize(text);
    require(sentences.size() > 2 || summary == text.trimmed());
    require(sentences.size() <= 2 || std::ranges::count_if(sentences, [&](const QString& sentence) {
        return summary.contains(sentence);
    }) >= 2);
    require(TextTools::bullets(text).startsWith(u"• "_s) == !sentences.isEmpty());
    return 0;
}
