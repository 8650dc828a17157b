#include "App/QuickActions/Text/SpacingAndCase.h"

#include "App/QuickActions/Text/Characters.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <utility>

namespace {

// Some of the code units before U+0040. No branch depends on what else there is in a text, as most
// would be mispredicted.
class Marks final {
public:
    constexpr explicit Marks(std::u16string_view units)
    {
        for (const auto unit : units)
            m_bits |= std::uint64_t(1) << unit;
    }
    bool contains(QChar unit) const
    {
        const auto isMark = (m_bits >> (unit.unicode() % limit)) & 1;
        return (static_cast<unsigned>(isMark) & static_cast<unsigned>(unit.unicode() < limit)) != 0;
    }

private:
    static constexpr char16_t limit = 64;

    std::uint64_t m_bits = 0;
};

constexpr Marks gaps(u" \t\n");
constexpr Marks pauses(u",;:!?");
constexpr Marks punctuation(u",.;:!?");
constexpr Marks gapsAndPunctuation(u"\t\n,.;:!?"); // A space is no more than itself.
constexpr Marks sentenceEnds(u".!?\n");
constexpr Marks afterLoneI(u" ',.!?");

bool isLower(QChar unit)
{
    return unit >= u'a' && unit <= u'z';
}

bool isUpper(QChar unit)
{
    return unit >= u'A' && unit <= u'Z';
}

// Goes through a text once; what was written last decides about the next.
class SpacingMender final {
public:
    explicit SpacingMender(QStringView text)
        : m_text(text)
        // A space more for two characters is the most there can be.
        , m_mended(text.size() + text.size() / 2, Qt::Uninitialized)
        , m_end(m_mended.data())
    {
    }

    QString mended();

private:
    qsizetype plainEnd(qsizetype start) const;
    qsizetype gapEnd(qsizetype start) const;
    QStringView written() const { return { m_mended.constData(), m_end }; }
    bool lacksSpaceBefore(QChar next) const;
    void write(QStringView run) { m_end = std::ranges::copy(run, m_end).out; }
    void writeGap(QStringView run);

    QStringView m_text;
    QString m_mended;
    QChar* m_end;
};

QString SpacingMender::mended()
{
    for (qsizetype i = 0; i < m_text.size();) {
        const auto start = i;
        if (i = gapEnd(start); i > start) {
            writeGap(m_text.sliced(start, i - start));
            continue;
        }
        i = std::max(plainEnd(start), start + 1);
        if (lacksSpaceBefore(m_text[start]))
            write(u" ");
        write(m_text.sliced(start, i - start));
    }
    m_mended.truncate(written().size());
    return std::move(m_mended).trimmed();
}

// Of words with one space between them.
qsizetype SpacingMender::plainEnd(qsizetype start) const
{
    auto end = start;
    QChar before;
    for (; end < m_text.size(); ++end) {
        const auto unit = m_text[end];
        const auto isSecondSpace
            = static_cast<unsigned>(unit == u' ') & static_cast<unsigned>(before == u' ');
        if (gapsAndPunctuation.contains(unit) || isSecondSpace != 0)
            break;
        before = unit;
    }
    return before == u' ' ? end - 1 : end;
}

qsizetype SpacingMender::gapEnd(qsizetype start) const
{
    auto end = start;
    while (end < m_text.size() && gaps.contains(m_text[end]))
        ++end;
    return end;
}

bool SpacingMender::lacksSpaceBefore(QChar next) const
{
    const auto before = written();
    if (before.isEmpty())
        return false;
    if (pauses.contains(before.back()))
        return isLower(next) || isUpper(next);
    return before.back() == u'.' && isUpper(next) && before.size() > 1
        && isLower(before[before.size() - 2]);
}

void SpacingMender::writeGap(QStringView run)
{
    const auto lineFeeds = run.count(u'\n');
    const auto* next = run.end();
    if (lineFeeds > 0)
        write(lineFeeds == 1 ? u"\n" : u"\n\n");
    else if (next == m_text.end() || !punctuation.contains(*next))
        write(u" ");
}

bool opensQuote(QChar unit)
{
    return unit == u'"' || unit == u'\'' || unit == u'(' || unit == u'“' || unit == u'‘';
}

bool isLetter(QStringView character)
{
    UChar32 c = 0;
    U16_GET(character.utf16(), 0, 0, character.size(), c);
    return u_isalpha(c);
}

// As one character, however many code points make it up. Becomes three times as long at most.
void appendCapital(QString& text, QStringView character)
{
    const auto start = text.size();
    const auto most = 3 * character.size();
    text.resize(start + most);
    UErrorCode status = U_ZERO_ERROR;
    const auto size
        = u_strToUpper(reinterpret_cast<char16_t*>(text.data() + start), static_cast<int32_t>(most),
            character.utf16(), static_cast<int32_t>(character.size()), "", &status);
    text.truncate(start + size);
}

// What this character makes of the wish for a capital, when it has not become one itself.
bool capitalizesNext(QStringView character, bool isWished)
{
    if (character.size() > 1)
        return isWished && character == u"\r\n";
    const auto unit = character.front();
    return sentenceEnds.contains(unit) || (isWished && (unit.isSpace() || opensQuote(unit)));
}

qsizetype sentenceEndFrom(QStringView text, qsizetype position)
{
    while (position < text.size() && !sentenceEnds.contains(text[position]))
        ++position;
    return position;
}

QString withSentencesCapitalized(QStringView text)
{
    QString capitalized;
    capitalized.reserve(text.size());
    Characters characters(text);
    qsizetype copied = 0;
    qsizetype sentenceEnd = 0;
    bool isWished = true;
    while (true) {
        if (!isWished) {
            sentenceEnd = sentenceEndFrom(text, std::max(sentenceEnd, characters.position()));
            characters.skipTo(sentenceEnd);
        }
        const auto character = characters.next();
        if (character.isEmpty())
            return capitalized += text.sliced(copied);
        if (!isWished || !isLetter(character)) {
            isWished = capitalizesNext(character, isWished);
            continue;
        }
        const auto end = characters.position();
        capitalized += text.sliced(copied, end - character.size() - copied);
        appendCapital(capitalized, character);
        copied = end;
        isWished = false;
    }
}

// As regular expressions have it: marks and what only formats belong to what is before them.
bool endsInWord(QStringView text)
{
    for (auto position = text.size(); position > 0;) {
        UChar32 c = 0;
        U16_PREV(text.utf16(), 0, position, c);
        const auto category = U_GET_GC_MASK(c);
        if (u_hasBinaryProperty(c, UCHAR_GRAPHEME_EXTEND) || (category & U_GC_CF_MASK) != 0)
            continue;
        return u_isUAlphabetic(c) || (category & (U_GC_M_MASK | U_GC_ND_MASK | U_GC_PC_MASK)) != 0;
    }
    return false;
}

void capitalizeLoneI(QString& text)
{
    const QStringView units(text);
    for (qsizetype i = 0; i + 1 < units.size(); ++i) {
        const auto isAlone = static_cast<unsigned>(units[i] == u'i')
            & static_cast<unsigned>(afterLoneI.contains(units[i + 1]));
        if (isAlone != 0 && !endsInWord(units.first(i)))
            text[i] = u'I';
    }
}

}

QString withSpacingMended(QStringView text)
{
    return SpacingMender(text).mended();
}

QString withCaseMended(QStringView text)
{
    auto mended = withSentencesCapitalized(text);
    capitalizeLoneI(mended);
    return mended;
}
