#include "Tests/QuickActions/Text/TextDefinitions.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/uregex.h>
#include <unicode/ustring.h>

using namespace Qt::StringLiterals;

namespace {

const char16_t* units(const QString& text)
{
    return reinterpret_cast<const char16_t*>(text.utf16());
}

// What ICU writes, however long it is.
using Writing = std::function<int32_t(char16_t* start, int32_t length, UErrorCode* status)>;
QString written(const Writing& write)
{
    UErrorCode status = U_ZERO_ERROR;
    QString text(write(nullptr, 0, &status), Qt::Uninitialized);
    status = U_ZERO_ERROR;
    write(reinterpret_cast<char16_t*>(text.data()), int32_t(text.size()), &status);
    if (U_FAILURE(status))
        qFatal("ICU: %s", u_errorName(status));
    return text;
}

QStringList pieces(const QString& text, UBreakIteratorType type, int32_t leastStatus)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UBreakIterator, decltype(&ubrk_close)> breaks(
        ubrk_open(type, "", units(text), int32_t(text.size()), &status), &ubrk_close);
    QStringList pieces;
    qsizetype start = 0;
    for (auto end = ubrk_next(breaks.get()); end != UBRK_DONE; end = ubrk_next(breaks.get())) {
        if (ubrk_getRuleStatus(breaks.get()) >= leastStatus)
            pieces << text.sliced(start, end - start);
        start = end;
    }
    return pieces;
}

QString replaced(const QString& text, const QString& pattern, const QString& replacement)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<URegularExpression, decltype(&uregex_close)> regex(
        uregex_open(units(pattern), int32_t(pattern.size()), 0, nullptr, &status), &uregex_close);
    uregex_setText(regex.get(), units(text), int32_t(text.size()), &status);
    return written([&](char16_t* start, int32_t length, UErrorCode* code) {
        return uregex_replaceAll(
            regex.get(), units(replacement), int32_t(replacement.size()), start, length, code);
    });
}

bool isWhiteSpace(const QString& text)
{
    return std::ranges::all_of(text.toUcs4(), [](uint c) { return u_isUWhiteSpace(UChar32(c)); });
}

QString trimmed(QString text)
{
    while (!text.isEmpty() && isWhiteSpace(text.first(1)))
        text.remove(0, 1);
    while (!text.isEmpty() && isWhiteSpace(text.last(1)))
        text.chop(1);
    return text;
}

bool isLetter(const QString& character)
{
    return (U_GET_GC_MASK(UChar32(character.toUcs4().front())) & U_GC_L_MASK) != 0;
}

QString upperCase(const QString& text)
{
    return written([&](char16_t* start, int32_t length, UErrorCode* code) {
        return u_strToUpper(start, length, units(text), int32_t(text.size()), "", code);
    });
}

QString capitalized(const QString& text)
{
    static const QStringList ends { u"."_s, u"!"_s, u"?"_s, u"\n"_s };
    static const QStringList opening { u"\""_s, u"'"_s, u"("_s, u"\u201C"_s, u"\u2018"_s };
    QString result;
    bool capitalizesNext = true;
    for (const auto& character : TextDefinitions::characters(text)) {
        if (capitalizesNext && isLetter(character)) {
            result += upperCase(character);
            capitalizesNext = false;
            continue;
        }
        result += character;
        if (ends.contains(character))
            capitalizesNext = true;
        else if (!isWhiteSpace(character) && !opening.contains(character))
            capitalizesNext = false;
    }
    return result;
}

}

QStringList TextDefinitions::characters(const QString& text)
{
    return pieces(text, UBRK_CHARACTER, 0);
}

QStringList TextDefinitions::words(const QString& text)
{
    return pieces(text, UBRK_WORD, UBRK_WORD_NONE_LIMIT);
}

QString TextDefinitions::fixSpacingAndCase(const QString& text)
{
    auto fixed = replaced(text, u"[ \t]+"_s, u" "_s);
    fixed = replaced(fixed, u" *\n *"_s, u"\n"_s);
    fixed = replaced(fixed, u"\n{3,}"_s, u"\n\n"_s);
    fixed = replaced(fixed, u" +([,.;:!?])"_s, u"$1"_s);
    fixed = replaced(fixed, u"([,;:!?])(?=[A-Za-z])"_s, u"$1 "_s);
    fixed = replaced(fixed, u"([a-z])\\.(?=[A-Z])"_s, u"$1. "_s);
    return replaced(capitalized(trimmed(fixed)), u"\\bi\\b(?=[ ',.!?])"_s, u"I"_s);
}
