#include "App/QuickActions/SpacingAndCase.h"

#include "App/QuickActions/Characters.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <utility>

namespace {

enum class Kind : std::uint8_t { Other, Gap, Lower, Upper, Pause, FullStop };

constexpr std::array<Kind, 0x80> kinds = [] {
    std::array<Kind, 0x80> table {};
    for (const auto gap : { ' ', '\t', '\n' })
        table[static_cast<std::size_t>(gap)] = Kind::Gap;
    for (const auto pause : { ',', ';', ':', '!', '?' })
        table[static_cast<std::size_t>(pause)] = Kind::Pause;
    table['.'] = Kind::FullStop;
    std::fill(table.begin() + 'a', table.begin() + 'z' + 1, Kind::Lower);
    std::fill(table.begin() + 'A', table.begin() + 'Z' + 1, Kind::Upper);
    return table;
}();

Kind kindOf(QChar unit)
{
    return unit.unicode() < kinds.size() ? kinds[unit.unicode()] : Kind::Other;
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
    qsizetype writeGap(qsizetype start);
    bool lacksSpaceBefore(Kind next) const;
    void write(QChar unit, Kind kind);

    QStringView m_text;
    QString m_mended;
    QChar* m_end;
    Kind m_last = Kind::Other;
    Kind m_lastButOne = Kind::Other;
};

QString SpacingMender::mended()
{
    for (qsizetype i = 0; i < m_text.size();) {
        const auto kind = kindOf(m_text[i]);
        if (kind == Kind::Gap) {
            i = writeGap(i);
            continue;
        }
        if (lacksSpaceBefore(kind))
            write(u' ', Kind::Gap);
        write(m_text[i++], kind);
    }
    m_mended.truncate(m_end - m_mended.constData());
    return std::move(m_mended).trimmed();
}

// Returns where what follows the gap begins.
qsizetype SpacingMender::writeGap(qsizetype start)
{
    auto end = start;
    int lineFeeds = 0;
    for (; end < m_text.size() && kindOf(m_text[end]) == Kind::Gap; ++end)
        lineFeeds += m_text[end] == u'\n' ? 1 : 0;
    for (auto left = std::min(lineFeeds, 2); left > 0; --left)
        write(u'\n', Kind::Gap);
    const auto next = end < m_text.size() ? kindOf(m_text[end]) : Kind::Other;
    if (lineFeeds == 0 && next != Kind::Pause && next != Kind::FullStop)
        write(u' ', Kind::Gap);
    return end;
}

bool SpacingMender::lacksSpaceBefore(Kind next) const
{
    if (m_last == Kind::Pause)
        return next == Kind::Lower || next == Kind::Upper;
    return m_last == Kind::FullStop && m_lastButOne == Kind::Lower && next == Kind::Upper;
}

void SpacingMender::write(QChar unit, Kind kind)
{
    *m_end++ = unit;
    m_lastButOne = std::exchange(m_last, kind);
}

bool isOneOf(QStringView units, QStringView character)
{
    return character.size() == 1 && units.contains(character.front());
}

bool isLetter(QStringView character)
{
    UChar32 c = 0;
    U16_GET(character.utf16(), 0, 0, character.size(), c);
    return u_isalpha(c);
}

bool isWhiteSpace(QStringView character)
{
    return character == u"\r\n" || (character.size() == 1 && character.front().isSpace());
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
bool capitalizesNext(QStringView character, bool wished)
{
    if (isOneOf(u".!?\n", character))
        return true;
    return wished && (isWhiteSpace(character) || isOneOf(u"\"'(“‘", character));
}

QString withSentencesCapitalized(QStringView text)
{
    QString capitalized;
    capitalized.reserve(text.size());
    Characters characters(text);
    qsizetype copied = 0;
    bool isWished = true;
    for (qsizetype end = 0; end < text.size();) {
        const auto character = characters.next();
        const auto start = std::exchange(end, end + character.size());
        if (!isWished || !isLetter(character)) {
            isWished = capitalizesNext(character, isWished);
            continue;
        }
        capitalized += text.sliced(copied, start - copied);
        appendCapital(capitalized, character);
        copied = end;
        isWished = false;
    }
    return capitalized += text.sliced(copied);
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
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (text.at(i) == u'i' && QStringView(u" ',.!?").contains(text.at(i + 1))
            && !endsInWord(QStringView(text).first(i)))
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
