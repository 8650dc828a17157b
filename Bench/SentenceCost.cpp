// Prints what finding sentences takes in texts of a megabyte each, most of them made to be slow,
// beside what Unicode's rules take alone, and what lemmas take a word: two tables.
#include "App/QuickActions/Text/Lemmas.h"
#include "App/QuickActions/Text/SentenceTokens.h"
#include "Bench/LeastTime.h"

#include <QList>
#include <QString>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <unicode/ubrk.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype megabyte = 1'000'000;
constexpr int rounds = 9;

struct Sample {
    const char* name;
    QString text;
};

QString filled(const QString& start, const QString& piece)
{
    return start + piece.repeated((megabyte - start.size()) / piece.size());
}

QString prose()
{
    return u"Dr. Ann E. Smith came at 10 a.m. on Monday. She said that the tools (e.g. hammers) "
           u"were "
           "left in the house, and that nobody had used them since 1998!\nWhy had they been "
           "bought? "
           "\"Nobody knows,\" she answered; the U.S. Department of Labor didn't.\n"_s;
}

QList<Sample> samples()
{
    return {
        { "prose", filled({}, prose()) },
        { "e.g.", filled({}, u"e.g. "_s) },
        { "initials", filled({}, u"A. "_s) },
        { "titles", filled({}, u"Dr. Smith "_s) },
        { "small sentences", filled({}, u"aa bb. "_s) },
        { "marks", filled({}, u"!?"_s) },
        { "marks in one word", filled({}, u"a?"_s) },
        { "marks in one address", filled(u"http://"_s, u"a?"_s) },
        { "quotes", filled({}, u"\""_s) },
        { "quotes and marks", filled({}, u"!\""_s) },
        { "notes", filled({}, u"a.[1]"_s) },
        { "brackets after a stop", filled(u"A. "_s, u"("_s) },
        { "dots", filled({}, u"."_s) },
        { "one word", filled({}, u"a"_s) },
        { "spaces", filled({}, u" "_s) },
        { "spaces before initials",
            QString(megabyte / 2, u' ') + filled({}, u"A. "_s).first(megabyte / 2) },
        { "lines", filled({}, u"\n"_s) },
        { "half surrogate pairs", QString(megabyte, QChar(0xD800)) },
        { "zeros", QString(megabyte, QChar(0)) },
    };
}

double byUnicode(const QString& text)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UBreakIterator, decltype(&ubrk_close)> breaks(
        ubrk_open(UBRK_SENTENCE, "", nullptr, 0, &status), &ubrk_close);
    return leastMilliseconds(rounds, [&] {
        ubrk_setText(breaks.get(), reinterpret_cast<const char16_t*>(text.utf16()),
            int32_t(text.size()), &status);
        while (ubrk_next(breaks.get()) != UBRK_DONE) { }
    });
}

double byCorvella(const QString& text)
{
    return leastMilliseconds(rounds, [&text] {
        if (sentenceTokens(text).isEmpty())
            std::exit(2);
    });
}

void printSentences()
{
    std::puts("| 1 MB of | Unicode's rules | Corvella | ns a character |");
    std::puts("|---|---:|---:|---:|");
    for (const auto& [name, text] : samples()) {
        const auto taken = byCorvella(text);
        std::printf("| %s | %.1f | %.1f | %.1f |\n", name, byUnicode(text), taken,
            taken * 1e6 / double(text.size()));
    }
}

void printLemmas()
{
    const auto text = filled({}, prose());
    QList<QStringView> words;
    for (const auto word : QStringView(text).split(u' ', Qt::SkipEmptyParts))
        words.append(word);
    Lemmas lemmas;
    const auto taken = leastMilliseconds(rounds, [&] {
        if (std::ranges::count_if(
                words, [&](QStringView word) { return lemmas.of(word).has_value(); })
            == 0)
            std::exit(2);
    });
    std::puts("\n| lemmas of | ns a word |");
    std::puts("|---|---:|");
    std::printf("| prose | %.1f |\n", taken * 1e6 / double(words.size()));
}

}

int main()
{
    printSentences();
    printLemmas();
    return 0;
}
