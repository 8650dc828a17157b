#include "App/QuickActions/Summary.h"

#include "App/QuickActions/Characters.h"
#include "App/QuickActions/Lemmas.h"
#include "App/QuickActions/WordTokens.h"

#include <QHash>
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

QString lowered(QStringView word)
{
    QString lower(3 * word.size(), Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    lower.truncate(
        u_strToLower(reinterpret_cast<char16_t*>(lower.data()), static_cast<int32_t>(lower.size()),
            word.utf16(), static_cast<int32_t>(word.size()), "", &status));
    return lower;
}

// A key of a table. Qt's own hash takes many times as long for words shorter than eight letters on
// processors on which masked loads are slow.
struct Key {
    QStringView text;

    bool operator==(const Key& other) const { return text == other.text; }
    friend std::size_t qHash(const Key& key, std::size_t seed)
    {
        std::uint64_t hash = seed;
        for (const auto unit : key.text)
            hash = (hash ^ unit.unicode()) * 0x9E37'79B9'7F4A'7C15;
        return hash ^ (hash >> 32);
    }
};

// The words of content with how often each stands in the text, as numbers: a token that comes
// again costs one look into a table.
class Vocabulary final {
public:
    static constexpr std::size_t none = SIZE_MAX;

    Vocabulary();
    // The number of the token's word; none for one without content.
    std::size_t add(QStringView token);
    double frequency(std::size_t word) const { return m_frequencies[word]; }

private:
    std::size_t wordOf(QStringView token);
    bool isLongEnough(QStringView word);

    QHash<Key, std::size_t> m_wordsOfTokens;
    QHash<Key, std::size_t> m_words; // Into the lemmas.
    QStringList m_lemmas;
    std::vector<double> m_frequencies;
    Characters m_characters;
    Lemmas m_dictionary;
};

Vocabulary::Vocabulary()
{
    for (const auto word : stopWords)
        m_words.insert({ word }, none);
}

std::size_t Vocabulary::add(QStringView token)
{
    auto known = m_wordsOfTokens.constFind({ token });
    if (known == m_wordsOfTokens.cend())
        known = m_wordsOfTokens.insert({ token }, wordOf(token));
    if (*known != none)
        ++m_frequencies[*known];
    return *known;
}

std::size_t Vocabulary::wordOf(QStringView token)
{
    const auto lemma = m_dictionary.of(token);
    const QString word = lemma ? lemma->toString() : lowered(token);
    if (!isLongEnough(word))
        return none;
    const auto known = m_words.constFind({ word });
    if (known != m_words.cend())
        return *known;
    m_lemmas << word;
    m_words.insert({ m_lemmas.back() }, m_frequencies.size());
    m_frequencies.push_back(0);
    return m_frequencies.size() - 1;
}

bool Vocabulary::isLongEnough(QStringView word)
{
    m_characters.setText(word);
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
    std::vector<std::size_t> words;
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
