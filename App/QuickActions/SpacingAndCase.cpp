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

// In this order: all before a gap are written as they are.
enum class Kind : std::uint8_t { Other, Lower, Upper, Gap, Pause, FullStop, FullStopAfterLower };

constexpr std::array<Kind, 0x80> kinds = [] {
    std::array<Kind, 0x80> table {};
    const auto set = [&table](char16_t first, char16_t last, Kind kind) {
        std::fill(table.begin() + first, table.begin() + last + 1, kind);
    };
    set(u'a', u'z', Kind::Lower);
    set(u'A', u'Z', Kind::Upper);
    for (const auto gap : { u' ', u'\t', u'\n' })
        set(gap, gap, Kind::Gap);
    for (const auto pause : { u',', u';', u':', u'!', u'?' })
        set(pause, pause, Kind::Pause);
    set(u'.', u'.', Kind::FullStop);
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
    Kind kindAt(qsizetype position) const;
    qsizetype plainEnd(qsizetype start) const;
    qsizetype gapEnd(qsizetype start) const;
    void writePlain(QStringView run);
    void writeGap(QStringView run);
    void write(QChar unit, Kind kind);

    QStringView m_text;
    QString m_mended;
    QChar* m_end;
    Kind m_last = Kind::Other;
};

QString SpacingMender::mended()
{
    for (qsizetype i = 0; i < m_text.size();) {
        const auto start = i;
        if (i = plainEnd(start); i > start)
            writePlain(m_text.sliced(start, i - start));
        else if (i = gapEnd(start); i > start)
            writeGap(m_text.sliced(start, i - start));
        else
            write(m_text[i++], kindAt(start));
    }
    m_mended.truncate(m_end - m_mended.constData());
    return std::move(m_mended).trimmed();
}

Kind SpacingMender::kindAt(qsizetype position) const
{
    return position < m_text.size() ? kindOf(m_text[position]) : Kind::Other;
}

// Words with one space between them.
qsizetype SpacingMender::plainEnd(qsizetype start) const
{
    auto end = start;
    while (end < m_text.size()) {
        const bool isPlain = kindAt(end) < Kind::Gap;
        if (!isPlain && (m_text[end] != u' ' || kindAt(end + 1) >= Kind::Gap))
            break;
        ++end;
    }
    return end;
}

qsizetype SpacingMender::gapEnd(qsizetype start) const
{
    auto end = start;
    while (kindAt(end) == Kind::Gap)
        ++end;
    return end;
}

void SpacingMender::writePlain(QStringView run)
{
    const auto first = kindOf(run.front());
    const bool isAsciiLetter = first == Kind::Lower || first == Kind::Upper;
    if ((m_last == Kind::Pause && isAsciiLetter)
        || (m_last == Kind::FullStopAfterLower && first == Kind::Upper))
        *m_end++ = u' ';
    m_end = std::ranges::copy(run, m_end).out;
    m_last = kindOf(run.back());
}

void SpacingMender::writeGap(QStringView run)
{
    const auto next = kindAt(run.end() - m_text.begin());
    if (run.contains(u'\n')) {
        for (auto left = std::min<qsizetype>(run.count(u'\n'), 2); left > 0; --left)
            write(u'\n', Kind::Gap);
    } else if (next != Kind::Pause && next != Kind::FullStop) {
        write(u' ', Kind::Gap);
    }
}

void SpacingMender::write(QChar unit, Kind kind)
{
    *m_end++ = unit;
    const bool isAfterLower = kind == Kind::FullStop && m_last == Kind::Lower;
    m_last = isAfterLower ? Kind::FullStopAfterLower : kind;
}

bool endsSentence(QChar unit)
{
    return unit == u'.' || unit == u'!' || unit == u'?' || unit == u'\n';
}

bool opensQuote(QChar unit)
{
    return unit == u'"' || unit == u'\'' || unit == u'(' || unit == u'“' || unit == u'‘';
}

bool mayFollowI(QChar unit)
{
    return unit == u' ' || unit == u'\'' || unit == u',' || unit == u'.' || unit == u'!'
        || unit == u'?';
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
    return endsSentence(unit) || (isWished && (unit.isSpace() || opensQuote(unit)));
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
            if (sentenceEnd < characters.position())
                sentenceEnd
                    = std::find_if(text.begin() + characters.position(), text.end(), endsSentence)
                    - text.begin();
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
        if (units[i] == u'i' && mayFollowI(units[i + 1]) && !endsInWord(units.first(i)))
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
