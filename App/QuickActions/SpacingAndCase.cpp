#include "App/QuickActions/SpacingAndCase.h"

#include "App/QuickActions/Characters.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

namespace {

bool isOf(QStringView characters, QChar c)
{
    return characters.contains(c);
}

bool isLower(QChar c)
{
    return c >= u'a' && c <= u'z';
}

bool isUpper(QChar c)
{
    return c >= u'A' && c <= u'Z';
}

// What a run of spaces, tabs and line feeds comes to.
QStringView gap(QStringView run)
{
    switch (run.count(u'\n')) {
    case 0:
        return u" ";
    case 1:
        return u"\n";
    default:
        return u"\n\n";
    }
}

bool lacksSpace(QStringView before, QChar next)
{
    if (before.isEmpty())
        return false;
    if (isOf(u",;:!?", before.back()))
        return isLower(next) || isUpper(next);
    return before.back() == u'.' && isUpper(next) && before.size() > 1
        && isLower(before[before.size() - 2]);
}

char32_t codePointAt(QStringView text, qsizetype position)
{
    char32_t c = 0;
    U16_GET(text.utf16(), 0, position, text.size(), c);
    return c;
}

bool isWhiteSpace(QStringView character)
{
    return character == u"\r\n" || (character.size() == 1 && character.front().isSpace());
}

bool isLetter(QStringView character)
{
    return u_isalpha(static_cast<UChar32>(codePointAt(character, 0)));
}

void appendCapital(QString& text, QStringView character)
{
    const auto length = text.size();
    auto size = static_cast<int32_t>(3 * character.size());
    text.resize(length + size);
    UErrorCode status = U_ZERO_ERROR;
    size = u_strToUpper(reinterpret_cast<char16_t*>(text.data()) + length, size, character.utf16(),
        static_cast<int32_t>(character.size()), "", &status);
    text.truncate(length + size);
}

// Whether what is before a position joins what follows to one word.
bool endsInWord(QStringView text)
{
    auto position = text.size();
    while (position > 0) {
        UChar32 c = 0;
        U16_PREV(text.utf16(), 0, position, c);
        if (u_hasBinaryProperty(c, UCHAR_GRAPHEME_EXTEND) || u_charType(c) == U_FORMAT_CHAR)
            continue;
        return u_isUAlphabetic(c)
            || (U_GET_GC_MASK(c) & (U_GC_M_MASK | U_GC_ND_MASK | U_GC_PC_MASK));
    }
    return false;
}

void capitalizeLoneI(QString& text)
{
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (text[i] == u'i' && isOf(u" ',.!?", text[i + 1])
            && !endsInWord(QStringView(text).first(i)))
            text[i] = u'I';
    }
}

}

QString withSpacingMended(QStringView text)
{
    QString mended;
    mended.reserve(text.size() + text.size() / 2);
    for (qsizetype i = 0; i < text.size();) {
        const auto start = i;
        while (i < text.size() && isOf(u" \t\n", text[i]))
            ++i;
        const auto run = text.sliced(start, i - start);
        if (!run.isEmpty()) {
            const auto space = gap(run);
            if (space != u" " || i == text.size() || !isOf(u",.;:!?", text[i]))
                mended += space;
            continue;
        }
        if (lacksSpace(mended, text[i]))
            mended += u' ';
        mended += text[i++];
    }
    return mended.trimmed();
}

QString withCaseMended(QStringView text)
{
    QString mended;
    mended.reserve(text.size());
    Characters characters(text);
    bool capitalizesNext = true;
    for (auto character = characters.next(); !character.isEmpty(); character = characters.next()) {
        if (capitalizesNext && isLetter(character)) {
            appendCapital(mended, character);
            capitalizesNext = false;
            continue;
        }
        mended += character;
        if (character.size() == 1 && isOf(u".!?\n", character.front()))
            capitalizesNext = true;
        else if (!isWhiteSpace(character)
            && !(character.size() == 1 && isOf(u"\"'(“‘", character.front())))
            capitalizesNext = false;
    }
    capitalizeLoneI(mended);
    return mended;
}
