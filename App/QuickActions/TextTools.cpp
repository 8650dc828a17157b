#include "App/QuickActions/TextTools.h"

#include "App/QuickActions/Text/Characters.h"
#include "App/QuickActions/Text/SentenceTokens.h"
#include "App/QuickActions/Text/SpacingAndCase.h"
#include "App/QuickActions/Text/Summary.h"
#include "App/QuickActions/Text/WordTokens.h"

#include <algorithm>
#include <unicode/uchar.h>
#include <unicode/utf16.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype wordsAMinute = 230;

QList<QStringView> trimmedSentences(QStringView text)
{
    auto sentences = sentenceTokens(text);
    for (auto& sentence : sentences)
        sentence = sentence.trimmed();
    sentences.removeIf([](QStringView sentence) { return sentence.isEmpty(); });
    return sentences;
}

bool isNewline(QChar c)
{
    return (c >= u'\n' && c <= u'\r') || c == u'\u0085' || c == u'\u2028' || c == u'\u2029';
}

QList<QStringView> trimmedLines(QStringView text)
{
    QList<QStringView> lines;
    for (auto rest = text; !rest.isEmpty();) {
        const qsizetype length = std::ranges::find_if(rest, isNewline) - rest.begin();
        const auto line = rest.first(length).trimmed();
        if (!line.isEmpty())
            lines << line;
        rest = rest.sliced(std::min(length + 1, rest.size()));
    }
    return lines;
}

// Where the mark of a list's item ends; 0 when there is none.
qsizetype markerEnd(QStringView item)
{
    if (item.startsWith(u'-') || item.startsWith(u'*') || item.startsWith(u'•'))
        return 1;
    qsizetype end = 0;
    while (end < item.size()) {
        auto next = end;
        UChar32 c = 0;
        U16_NEXT(item.utf16(), next, item.size(), c);
        if (!u_isdigit(c))
            break;
        end = next;
    }
    const bool isNumbered
        = end > 0 && end < item.size() && (item[end] == u'.' || item[end] == u')');
    return isNumbered ? end + 1 : 0;
}

QStringView withoutMarker(QStringView item)
{
    const auto rest = item.sliced(markerEnd(item));
    return !rest.isEmpty() && rest.front().isSpace() ? rest.trimmed() : item;
}

}

QStringList TextTools::sentences(const QString& text)
{
    QStringList sentences;
    for (const auto sentence : trimmedSentences(text))
        sentences << sentence.toString();
    return sentences;
}

QStringList TextTools::words(const QString& text)
{
    QStringList words;
    WordTokens tokens;
    tokens.setText(text);
    while (const auto word = tokens.next())
        words << word->toString();
    return words;
}

QString TextTools::summarize(const QString& text)
{
    const auto sentences = trimmedSentences(text);
    return sentences.size() < 3 ? text.trimmed() : summary(sentences);
}

QString TextTools::bullets(const QString& text)
{
    auto items = trimmedLines(text);
    if (items.size() < 2)
        items = trimmedSentences(text);
    QString list;
    for (const auto item : items) {
        if (!list.isEmpty())
            list += u'\n';
        list += u"• "_s;
        list += withoutMarker(item);
    }
    return list;
}

QString TextTools::fixSpacingAndCase(const QString& text)
{
    return withCaseMended(withSpacingMended(text));
}

QString TextTools::count(const QString& text)
{
    const auto words = wordCount(text);
    const auto minutes = std::max<qsizetype>(1, (words + wordsAMinute - 1) / wordsAMinute);
    return u"%1 words · %2 characters · %3 sentences · ~%4 min read"_s.arg(words)
        .arg(characterCount(text))
        .arg(trimmedSentences(text).size())
        .arg(minutes);
}
