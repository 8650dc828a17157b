#include "App/QuickActions/Text/Summary.h"

#include "App/QuickActions/Text/Characters.h"
#include "App/QuickActions/Text/Lemmas.h"
#include "App/QuickActions/Text/WordTable.h"
#include "App/QuickActions/Text/WordTokens.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <unicode/ustring.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype shortestWord = 3;
constexpr std::size_t wordsOfLongSentence = 4;
constexpr double shortFactor = 0.6;
constexpr double leadFactor = 1.2;
constexpr qsizetype sentencesToOneKept = 3;
constexpr qsizetype fewestKept = 2;
constexpr qsizetype mostKept = 5;

const std::array<QStringView, 36> stopWords { u"the", u"and", u"that", u"this", u"with", u"for",
    u"are", u"was", u"were", u"have", u"has", u"had", u"but", u"not", u"you", u"your", u"from",
    u"they", u"their", u"will", u"would", u"can", u"could", u"there", u"been", u"which", u"what",
    u"when", u"about", u"into", u"than", u"then", u"also", u"its", u"our", u"who" };

bool isPlain(QChar unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'0' && unit <= u'9');
}

QString lowered(QStringView word)
{
    QString lower(3 * word.size(), Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    lower.truncate(
        u_strToLower(reinterpret_cast<char16_t*>(lower.data()), static_cast<int32_t>(lower.size()),
            word.utf16(), static_cast<int32_t>(word.size()), "", &status));
    return lower;
}

// The words of content with how often each stands in the text, as numbers: a token that comes
// again costs one look into a table.
class Vocabulary final {
public:
    static constexpr std::uint32_t none = UINT32_MAX; // Has no content.

    Vocabulary();
    // The number of the token's word; none for one without content.
    std::uint32_t add(QStringView token);
    double frequency(std::uint32_t word) const { return m_frequencies[word]; }

private:
    static constexpr std::uint32_t unknown = 0;

    std::uint32_t wordOf(QStringView token);
    QStringView formOf(QStringView token);
    bool isLongEnough(QStringView form);

    WordTable m_table;
    QString m_form;
    QStringList m_keptForms; // That the table looks at, as they are not in the text.
    std::vector<double> m_frequencies { 0 }; // From the first known word on.
    Characters m_characters;
    Lemmas m_dictionary;
};

Vocabulary::Vocabulary()
{
    for (const auto word : stopWords)
        m_table[word].ofLemma = none;
}

std::uint32_t Vocabulary::add(QStringView token)
{
    auto word = m_table[token].ofToken;
    if (word == unknown) {
        word = wordOf(token);
        m_table[token].ofToken = word;
    }
    if (word != none)
        ++m_frequencies[word];
    return word;
}

std::uint32_t Vocabulary::wordOf(QStringView token)
{
    const auto form = formOf(token);
    if (!isLongEnough(form))
        return none;
    auto& entry = m_table[form];
    if (entry.ofLemma != unknown)
        return entry.ofLemma;
    entry.ofLemma = static_cast<std::uint32_t>(m_frequencies.size());
    m_frequencies.push_back(0);
    if (form.data() == m_form.constData())
        m_keptForms << m_form;
    return entry.ofLemma;
}

// In the text, or until the next one is asked for.
QStringView Vocabulary::formOf(QStringView token)
{
    if (const auto lemma = m_dictionary.of(token))
        m_form = lemma->toString();
    else if (std::ranges::all_of(token, isPlain))
        return token;
    else
        m_form = lowered(token);
    return token == m_form ? token : m_form;
}

bool Vocabulary::isLongEnough(QStringView form)
{
    m_characters.setText(form);
    auto left = shortestWord;
    while (left > 0 && !m_characters.next().isEmpty())
        --left;
    return left == 0;
}

// The words of content of all sentences, one after the other.
struct Contents {
    explicit Contents(const QList<QStringView>& sentences);
    double score(qsizetype sentence) const;

    Vocabulary vocabulary;
    std::vector<std::uint32_t> words;
    std::vector<std::size_t> ends; // Of each sentence's in words.
};

Contents::Contents(const QList<QStringView>& sentences)
{
    WordTokens tokens;
    for (const auto sentence : sentences) {
        tokens.setText(sentence);
        while (const auto token = tokens.next()) {
            const auto word = vocabulary.add(*token);
            if (word != Vocabulary::none)
                words.push_back(word);
        }
        ends.push_back(words.size());
    }
}

double Contents::score(qsizetype sentence) const
{
    const auto index = static_cast<std::size_t>(sentence);
    const auto start = index == 0 ? 0 : ends[index - 1];
    const auto size = ends[index] - start;
    if (size == 0)
        return 0;
    double sum = 0;
    for (auto i = start; i < ends[index]; ++i)
        sum += vocabulary.frequency(words[i]);
    const auto base = sum / static_cast<double>(size);
    const auto length = size < wordsOfLongSentence ? shortFactor : 1;
    return (index == 0 ? leadFactor : 1) * (base * length);
}

// The best ones, the earlier of equals first, back in text order.
QList<qsizetype> best(const QList<double>& scores)
{
    const auto third = (scores.size() + sentencesToOneKept - 1) / sentencesToOneKept;
    const auto kept = std::min(std::clamp(third, fewestKept, mostKept), scores.size());
    QList<qsizetype> indices(scores.size());
    std::iota(indices.begin(), indices.end(), 0);
    std::ranges::partial_sort(indices, indices.begin() + kept, [&](qsizetype a, qsizetype b) {
        return scores[a] > scores[b] || (scores[a] == scores[b] && a < b);
    });
    indices.resize(kept);
    std::ranges::sort(indices);
    return indices;
}

}

QString summary(const QList<QStringView>& sentences)
{
    const Contents contents(sentences);
    QList<double> scores;
    for (qsizetype i = 0; i < sentences.size(); ++i)
        scores << contents.score(i);
    QString text;
    for (const auto index : best(scores)) {
        if (!text.isEmpty())
            text += u' ';
        text += sentences[index];
    }
    return text;
}
