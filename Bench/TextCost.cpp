// Prints what the text tools take beside ICU's boundaries alone, in two tables: text-cost
// [MILLISECONDS], which is what Open Text Summarizer took for 40 KB.
#include "App/QuickActions/TextTools.h"
#include "Bench/EnglishText.h"
#include "Bench/LeastTime.h"

#include <QList>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <unicode/ubrk.h>

using namespace Qt::StringLiterals;

namespace {

using Tool = QString (*)(const QString&);

constexpr std::size_t fortyKilobytes = 40'000;
constexpr std::size_t megabyte = 1'000'000;
constexpr int rounds = 5;
constexpr double mostOfMegabyte = 100;

double running(Tool tool, const QString& text)
{
    return leastMilliseconds(rounds, [&] {
        if (tool(text).isNull() && !text.trimmed().isEmpty())
            std::exit(2);
    });
}

// The least: going through all boundaries of these types.
double segmenting(std::initializer_list<UBreakIteratorType> types, const QString& text)
{
    return leastMilliseconds(rounds, [&] {
        for (const auto type : types) {
            UErrorCode status = U_ZERO_ERROR;
            auto* breaks = ubrk_open(type, "", reinterpret_cast<const char16_t*>(text.utf16()),
                static_cast<int32_t>(text.size()), &status);
            while (ubrk_next(breaks) != UBRK_DONE) { }
            ubrk_close(breaks);
        }
    });
}

struct Row {
    const char* name;
    double icu;
    double ots;
    double corvella;
    double most;
};

void print(const Row& row)
{
    std::printf("| %s | %.2f | ", row.name, row.icu);
    if (row.ots > 0)
        std::printf("%.1f | %.2f | %.0f | ", row.ots, row.corvella, row.ots / row.corvella);
    else
        std::printf(" | %.2f |  | ", row.corvella);
    std::printf("≤ %.0f | %s |\n", row.most, row.corvella > row.most ? "missed" : "");
}

void printEnglish(double ots)
{
    const auto forty = QString::fromStdString(EnglishText::ofLength(fortyKilobytes));
    const auto ten = QString::fromStdString(EnglishText::ofLength(10 * megabyte));
    const auto sentencesAndWords = { UBRK_SENTENCE, UBRK_WORD };
    std::puts("| ms of | plain ICU | OTS | Corvella | times as fast as OTS | wanted | |");
    std::puts("|---|---:|---:|---:|---:|---:|---|");
    print({ "summarize, 40 KB", segmenting(sentencesAndWords, forty), ots,
        running(&TextTools::summarize, forty), 4 });
    print({ "summarize, 10 MB", segmenting(sentencesAndWords, ten), 0,
        running(&TextTools::summarize, ten), 1000 });
    print({ "fixSpacingAndCase, 10 MB", segmenting({ UBRK_CHARACTER }, ten), 0,
        running(&TextTools::fixSpacingAndCase, ten), 125 });
    print({ "count, 10 MB", segmenting({ UBRK_SENTENCE, UBRK_WORD, UBRK_CHARACTER }, ten), 0,
        running(&TextTools::count, ten), 600 });
    print({ "bullets, 10 MB", segmenting({ UBRK_SENTENCE }, ten), 0,
        running(&TextTools::bullets, ten), 1000 });
}

// A megabyte of UTF-8, as what the clipboard hands out mostly is.
QString filled(const QString& piece)
{
    return piece.repeated(static_cast<qsizetype>(megabyte) / piece.toUtf8().size());
}

QString distinctWords()
{
    QString text;
    for (int i = 0; text.size() < static_cast<qsizetype>(megabyte); ++i)
        text += QString::number(50'000 + i, 36) + (i % 10 == 0 ? u". A"_s : u" "_s);
    return text;
}

struct Sample {
    const char* name;
    QString text;
};

QList<Sample> samples()
{
    return {
        { "English", QString::fromStdString(EnglishText::ofLength(megabyte)) },
        { "sentences of a letter", filled(u"A b. "_s) },
        { "distinct words", distinctWords() },
        { "one word", filled(u"a"_s) },
        { "spaces", filled(u" "_s) },
        { "line feeds", filled(u"\n"_s) },
        { "spaces and commas", filled(u" ,"_s) },
        { "full stops", filled(u"."_s) },
        { "German", filled(u"Schöne Grüße aus der Küche! Übrigens: „Käse“ fehlt. "_s) },
        { "Russian", filled(u"Привет, как дела? Всё хорошо. "_s) },
        { "Chinese", filled(u"我爱北京天安门。今天天气很好，我们去公园玩吧。"_s) },
        { "Chinese without marks", filled(u"我爱北京天安门今天天气很好我们去公园玩吧"_s) },
        { "Thai", filled(u"สวัสดีครับวันนี้อากาศดีมาก "_s) },
        { "Korean", filled(u"안녕하세요. 오늘 날씨가 좋네요. "_s) },
        { "Hindi", filled(u"नमस्ते क्षत्रिय दुनिया। "_s) },
        { "letters with marks", filled(u"e\u0301"_s) },
        { "marks", filled(u"\u0301"_s) },
        { "emoji", filled(u"👩\u200D👩\u200D👧👍🏽 🇩🇪"_s) },
    };
}

void printSamples()
{
    const std::array<Tool, 4> tools { &TextTools::summarize, &TextTools::bullets,
        &TextTools::fixSpacingAndCase, &TextTools::count };
    std::puts(
        "\n| ms of 1 MB of | plain ICU | summarize | bullets | fixSpacingAndCase | count | |");
    std::puts("|---|---:|---:|---:|---:|---:|---|");
    for (const auto& [name, text] : samples()) {
        std::printf(
            "| %s | %.2f |", name, segmenting({ UBRK_SENTENCE, UBRK_WORD, UBRK_CHARACTER }, text));
        double most = 0;
        for (const auto tool : tools) {
            const auto taken = running(tool, text);
            most = std::max(most, taken);
            std::printf(" %.2f |", taken);
        }
        std::printf(" %s |\n", most > mostOfMegabyte ? "missed" : "");
    }
}

}

int main(int argc, char** argv)
{
    printEnglish(argc > 1 ? std::atof(argv[1]) : 0);
    printSamples();
    return 0;
}
