// Prints what the search for a meeting link takes in texts of a megabyte each, most of them made to
// be slow, beside the least that reading them takes: a table of milliseconds.
#include "App/Meetings/MeetingLink.h"
#include "Bench/LeastTime.h"

#include <QList>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype megabyte = 1'000'000;
constexpr int rounds = 15;
constexpr double mostOfNotes = 10;

struct Sample {
    const char* name;
    QString text;
};

QString filled(const QString& start, const QString& piece)
{
    return start + piece.repeated((megabyte - start.size()) / piece.size());
}

QList<Sample> samples()
{
    const auto notes
        = u"Hi all,\nplease read https://intranet.example.com/agenda?week=12 before we "
          "meet on Tuesday at 10:30.\nWe'll talk about (1) the budget, (2) \"anything "
          "else\".\n\nBest regards, Ann\n"_s;
    const auto start = u"http://"_s;
    return {
        { "ordinary notes", filled({}, notes) },
        { "addresses glued by commas", filled({}, u"http://a,"_s) },
        { "one unbroken address", filled(start, u"a"_s) },
        { "half a host at each start", filled({}, u"http://zoom.u"_s) },
        { "half a longer host at each start", filled({}, u"https://teams.microsoft.co"_s) },
        { "half hosts in one address", filled(start, u"zoom.u"_s) },
        { "starts, a host before them", filled(u"zoom.us"_s, start) },
        { "starts and spaces", filled({}, u"http:// "_s) },
        { "dots", filled(start, u"."_s) },
        { "last letters and dots", filled(start, u"s."_s) },
        { "marks of a scheme", filled({}, u"://"_s) },
        { "other letters", filled(start, u"\u4F1A\u8B70"_s) },
    };
}

double searching(const QString& text)
{
    return leastMilliseconds(rounds, [&text] {
        if (findMeetingLink({ text }))
            std::exit(2); // There is none in any of them.
    });
}

// Each character is looked at once, and that is all.
double reading(const QString& text)
{
    return leastMilliseconds(rounds, [&text] {
        if (std::ranges::count_if(text, [](QChar c) { return c.isSpace(); }) == text.size())
            std::exit(2);
    });
}

}

int main()
{
    const auto all = samples();
    const auto notes = searching(all.first().text);
    std::puts("| 1 MB of | reading | Corvella | of ordinary notes | |");
    std::puts("|---|---:|---:|---:|---|");
    for (const auto& [name, text] : all) {
        const auto taken = searching(text);
        std::printf("| %s | %.2f | %.2f | %.1f | %s |\n", name, reading(text), taken, taken / notes,
            taken > mostOfNotes * notes ? "missed" : "");
    }
    return 0;
}
