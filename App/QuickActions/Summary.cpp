#include "App/QuickActions/Summary.h"

#include "App/QuickActions/Characters.h"
#include "App/QuickActions/Lemmas.h"
#include "App/QuickActions/WordTokens.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <unicode/ustring.h>

using namespace Qt::StringLiterals;

namespace {

const QSet<QString>& stopWords()
{
    static const QSet<QString> words { u"the"_s, u"and"_s, u"that"_s, u"this"_s, u"with"_s,
        u"for"_s, u"are"_s, u"was"_s, u"were"_s, u"have"_s, u"has"_s, u"had"_s, u"but"_s, u"not"_s,
        u"you"_s, u"your"_s, u"from"_s, u"they"_s, u"their"_s, u"will"_s, u"would"_s, u"can"_s,
        u"could"_s, u"there"_s, u"been"_s, u"which"_s, u"what"_s, u"when"_s, u"about"_s, u"into"_s,
        u"than"_s, u"then"_s, u"also"_s, u"its"_s, u"our"_s, u"who"_s };
    return words;
}

QString lowered(const QString& word)
{
    QString lower(3 * word.size(), Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    lower.truncate(u_strToLower(reinterpret_cast<char16_t*>(lower.data()),
        static_cast<int32_t>(lower.size()), reinterpret_cast<const char16_t*>(word.utf16()),
        static_cast<int32_t>(word.size()), "", &status));
    return lower;
}

QStringList contentOf(QStringView sentence)
{
    QStringList content;
    WordTokens tokens;
    tokens.setText(sentence);
    while (const auto token = tokens.next()) {
        const auto known = lemma(*token);
        const auto word = lowered(known.isEmpty() ? token->toString() : known);
        if (characterCount(word) >= 3 && !stopWords().contains(word))
            content << word;
    }
    return content;
}

}

QString summary(const QList<QStringView>& sentences)
{
    QList<QStringList> contents;
    QHash<QString, double> frequencies;
    for (const auto sentence : sentences) {
        contents << contentOf(sentence);
        for (const auto& word : contents.back())
            ++frequencies[word];
    }
    QList<double> scores;
    for (const auto& content : contents) {
        double sum = 0;
        for (const auto& word : content)
            sum += frequencies[word];
        const auto size = content.size();
        const auto base = size == 0 ? 0.0 : sum / static_cast<double>(size);
        scores << (scores.isEmpty() ? 1.2 : 1.0) * (base * (size < 4 ? 0.6 : 1.0));
    }
    QList<qsizetype> order(sentences.size());
    std::iota(order.begin(), order.end(), 0);
    std::ranges::stable_sort(
        order, [&](qsizetype one, qsizetype other) { return scores[one] > scores[other]; });
    const auto third = static_cast<qsizetype>(std::ceil(static_cast<double>(order.size()) / 3.0));
    order.resize(std::min(std::clamp<qsizetype>(third, 2, 5), order.size()));
    std::ranges::sort(order);
    QStringList kept;
    for (const auto index : order)
        kept << sentences[index].toString();
    return kept.join(u' ');
}
