// Prints the milliseconds that Open Text Summarizer takes for a summary of 40 KB: the least that a
// program over its library does, its dictionary being read before.
#include "Bench/EnglishText.h"
#include "Bench/LeastTime.h"

#include <cstdio>
#include <cstdlib>
#include <ots/libots.h>

static constexpr std::size_t length = 40'000;
static constexpr int percentKept = 5;
static constexpr int rounds = 5;

static const unsigned char* bytes(const char* text)
{
    return reinterpret_cast<const unsigned char*>(text);
}

static void summarize(OtsArticle* article, const std::string& text)
{
    ots_parse_stream(bytes(text.c_str()), text.size(), article);
    ots_grade_doc(article);
    ots_highlight_doc(article, percentKept);
    std::size_t size = 0;
    g_free(ots_get_doc_text(article, &size));
    if (size == 0)
        std::exit(2);
}

static OtsArticle* newArticle()
{
    auto* article = ots_new_article();
    if (!ots_load_xml_dictionary(article, bytes("en")))
        std::exit(2);
    return article;
}

int main()
{
    const auto text = EnglishText::ofLength(length);
    auto least = std::numeric_limits<double>::max();
    for (int i = 0; i < rounds; ++i) {
        auto* article = newArticle();
        least = std::min(least, leastMilliseconds(1, [&] { summarize(article, text); }));
        ots_free_article(article);
    }
    std::printf("%.2f\n", least);
    return 0;
}
