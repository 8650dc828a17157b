#include "App/QuickActions/Text/WordTokens.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace {

// What a code unit does to its neighbours. A joint is part of a word between two digits, or between
// two letters as well; whether a colon is one differs from version to version.
enum class Kind : std::uint8_t { Unsure, Other, Letter, Digit, LowLine, Joint, DigitJoint, Colon };

// Long enough for what it takes to hand a part to ICU.
constexpr qsizetype shortestPart = 32;

constexpr std::array<Kind, 0x530> kinds = [] {
    std::array<Kind, 0x530> table {};
    const auto set = [&table](char16_t first, char16_t last, Kind kind) {
        std::fill(table.begin() + first, table.begin() + last + 1, kind);
    };
    set(u'\0', u'\u00AC', Kind::Other); // What follows is a soft hyphen.
    set(u'\u00AE', u'\u00BF', Kind::Other);
    set(u'a', u'z', Kind::Letter);
    set(u'A', u'Z', Kind::Letter);
    set(u'0', u'9', Kind::Digit);
    set(u'_', u'_', Kind::LowLine);
    set(u'.', u'.', Kind::Joint);
    set(u'\'', u'\'', Kind::Joint);
    set(u',', u',', Kind::DigitJoint);
    set(u';', u';', Kind::DigitJoint);
    set(u':', u':', Kind::Colon);
    set(u'@', u'@', Kind::Unsure); // Part of an address in some versions.
    set(u'\u00B7', u'\u00B7', Kind::Unsure); // A joint in Catalan.
    for (const auto letter : { u'\u00AA', u'\u00B5', u'\u00BA' })
        set(letter, letter, Kind::Letter);
    set(u'\u00C0', u'\u024F', Kind::Letter);
    set(u'\u00D7', u'\u00D7', Kind::Other);
    set(u'\u00F7', u'\u00F7', Kind::Other);
    set(u'\u0400', u'\u0481', Kind::Letter);
    set(u'\u048A', u'\u052F', Kind::Letter);
    return table;
}();

Kind kindOf(QChar unit)
{
    if (unit.unicode() < kinds.size())
        return kinds[unit.unicode()];
    switch (unit.unicode()) {
    case u'‘':
    case u'’':
        return Kind::Joint;
    case u'–':
    case u'—':
    case u'“':
    case u'”':
    case u'„':
    case u'•':
    case u'…':
        return Kind::Other;
    default:
        return Kind::Unsure;
    }
}

bool beginsWord(Kind kind)
{
    return kind == Kind::Letter || kind == Kind::Digit;
}

bool joins(Kind before, Kind joint, Kind after)
{
    if (before != after)
        return false;
    if (joint == Kind::Joint)
        return beginsWord(before);
    return joint == Kind::DigitJoint && before == Kind::Digit;
}

}

void WordTokens::setText(QStringView text)
{
    m_text = text;
    m_position = 0;
    m_partEnd = 0;
}

std::optional<QStringView> WordTokens::next()
{
    while (m_position < m_text.size()) {
        if (m_position < m_partEnd) {
            const auto token = takeTo(m_partStart + m_boundaries.next());
            if (m_boundaries.endsWord())
                return token;
            continue;
        }
        skipGap();
        const auto end = plainEnd();
        if (end > m_position)
            return takeTo(end);
        openPart();
    }
    return {};
}

// An unsure code unit may join what is before it.
void WordTokens::skipGap()
{
    const auto isGap = [this](qsizetype position) {
        const auto kind = kindOf(m_text[position]);
        return kind != Kind::Unsure && kind != Kind::LowLine && !beginsWord(kind);
    };
    const auto isSure = [this](qsizetype position) {
        return position == m_text.size() || kindOf(m_text[position]) != Kind::Unsure;
    };
    while (m_position < m_text.size() && isGap(m_position) && isSure(m_position + 1))
        ++m_position;
}

// Where the word at this position ends; this position itself when there is none, or ICU must tell.
qsizetype WordTokens::plainEnd() const
{
    const auto kindAt = [this](qsizetype position) {
        return position < m_text.size() ? kindOf(m_text[position]) : Kind::Other;
    };
    auto end = m_position;
    auto kind = kindAt(end);
    if (!beginsWord(kind))
        return m_position;
    while (true) {
        auto before = kind;
        while (beginsWord(kind) || kind == Kind::LowLine) {
            before = kind;
            kind = kindAt(++end);
        }
        const auto after = kindAt(end + 1);
        if (kind == Kind::Other)
            return end;
        const bool mayJoin = kind == Kind::Colon && before == Kind::Letter && after == before;
        if (kind == Kind::Unsure || after == Kind::Unsure || mayJoin)
            return m_position;
        if (!joins(before, kind, after))
            return end;
        kind = kindAt(++end);
    }
}

// Up to a word that is plain and has white space before it: nothing joins it to what is before.
void WordTokens::openPart()
{
    const auto isSure = [this](qsizetype position) {
        if (position == m_text.size())
            return true;
        const auto before = m_text[position - 1];
        return (before == u' ' || before == u'\n') && beginsWord(kindOf(m_text[position]));
    };
    m_partStart = m_position;
    m_partEnd = std::min(m_position + shortestPart, m_text.size());
    while (!isSure(m_partEnd))
        ++m_partEnd;
    m_boundaries.setText(m_text.sliced(m_partStart, m_partEnd - m_partStart));
}

QStringView WordTokens::takeTo(qsizetype end)
{
    const auto start = std::exchange(m_position, end);
    return m_text.sliced(start, end - start);
}

qsizetype wordCount(QStringView text)
{
    WordTokens tokens;
    tokens.setText(text);
    qsizetype count = 0;
    while (tokens.next())
        ++count;
    return count;
}
