#include "App/QuickActions/Text/Lemmas.h"

#include "App/QuickActions/Text/LemmaTable.h"

#include <algorithm>

namespace {

constexpr bool isApostrophe(QChar character)
{
    return character == u'\'' || character == u'\u2019';
}

// The small one of a Latin letter, another character as it is.
constexpr QChar small(QChar character)
{
    const auto code = character.unicode();
    return code >= u'A' && code <= u'Z' ? QChar(char16_t(code - u'A' + u'a')) : character;
}

std::uint32_t label(QChar character)
{
    const auto code = small(character).unicode();
    if (code >= u'a' && code <= u'z')
        return code - u'a' + 1u;
    return isApostrophe(code) ? LemmaTable::apostrophe : LemmaTable::unknown;
}

std::optional<std::uint32_t> target(std::uint32_t state, std::uint32_t label)
{
    const auto slot = state + label;
    const std::uint32_t mark = LemmaTable::marks[slot];
    if ((mark & 0x1F) != label)
        return {};
    return (mark >> 5 << 16) | LemmaTable::targets[slot];
}

// Absent where the word is not in the table.
const LemmaTable::Ending* ending(QStringView word)
{
    auto state = LemmaTable::first;
    for (const auto character : word) {
        const auto next = target(state, label(character));
        if (!next)
            return nullptr;
        state = *next;
    }
    const auto number = target(state, LemmaTable::wordEnd);
    return number ? &LemmaTable::endings[*number] : nullptr;
}

bool isSuffix(QStringView end, QStringView suffix)
{
    return std::ranges::equal(end, suffix,
        [](QChar c, QChar s) { return isApostrophe(s) ? isApostrophe(c) : small(c) == s; });
}

QStringView withoutContraction(QStringView word)
{
    if (std::ranges::none_of(word.last(std::min<qsizetype>(word.size(), 3)), isApostrophe))
        return word;
    for (const QStringView suffix : { u"n't", u"'s", u"'ll", u"'re", u"'ve", u"'d", u"'m" }) {
        if (word.size() > suffix.size() && isSuffix(word.last(suffix.size()), suffix))
            return word.chopped(suffix.size());
    }
    return word;
}

}

std::optional<QStringView> Lemmas::of(QStringView word)
{
    if (look(word))
        return m_lemma;
    const auto stem = withoutContraction(word);
    if (stem.size() == word.size())
        return {};
    if (!look(stem))
        m_lemma = stem.toString().toLower();
    return m_lemma;
}

bool Lemmas::look(QStringView word)
{
    const auto* found = ending(word);
    if (found == nullptr)
        return false;
    const auto stem = word.chopped(found->cut);
    const auto added = QLatin1StringView(found->added);
    m_lemma.resize(stem.size() + added.size());
    std::ranges::transform(stem, m_lemma.begin(), small);
    std::ranges::transform(
        added, m_lemma.begin() + stem.size(), [](char c) { return QLatin1Char(c); });
    return true;
}
