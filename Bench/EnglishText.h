// Prose that is made up, the same each time: common words as often as they are, and names of which
// new ones keep coming.
#pragma once

#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>

class EnglishText final {
public:
    // ASCII, so that bytes are characters.
    static std::string ofLength(std::size_t bytes)
    {
        EnglishText text;
        while (text.m_text.size() < bytes)
            text.addSentence();
        text.m_text.resize(bytes);
        return text.m_text;
    }

private:
    void addSentence();
    void addWord();
    void addName();
    std::size_t below(std::size_t limit) { return m_random() % limit; }

    std::mt19937 m_random; // Seeded alike each time.
    std::string m_text;
};

inline void EnglishText::addSentence()
{
    static constexpr std::array<std::string_view, 8> ends
        = { ". ", ". ", ". ", ". ", "? ", "! ", ".\n", ".\n\n" };
    addName();
    for (auto left = 5 + below(20); left > 0; --left) {
        m_text += below(12) == 0 ? ", " : " ";
        addWord();
    }
    m_text += ends[below(ends.size())];
}

inline void EnglishText::addWord()
{
    static constexpr std::array<std::string_view, 24> frequent
        = { "the", "of", "and", "to", "a", "in", "that", "it", "is", "was", "I", "for", "on", "you",
              "he", "be", "with", "as", "by", "at", "have", "are", "don't", "not" };
    static constexpr std::array<std::string_view, 72> others = { "meeting", "budget", "people",
        "running", "children", "weather", "machines", "thinking", "written", "morning", "tea",
        "mountains", "river", "house", "letters", "quickly", "office", "closed", "opened",
        "reading", "questions", "answered", "nobody", "something", "yesterday", "tomorrow",
        "because", "before", "after", "between", "large", "smaller", "better", "worst", "green",
        "window", "windows", "street", "walked", "walking", "spoken", "taught", "bought", "sold",
        "price", "prices", "market", "number", "numbers", "first", "second", "history", "science",
        "music", "painted", "colours", "garden", "gardens", "trains", "station", "travelled",
        "country", "countries", "government", "report", "reports", "published", "believed", "knew",
        "known", "understood", "remember" };
    switch (below(16)) {
    case 0:
        return addName();
    case 1:
        m_text += std::to_string(below(3000));
        return;
    default:
        m_text += below(2) == 0 ? frequent[below(frequent.size())] : others[below(others.size())];
    }
}

inline void EnglishText::addName()
{
    static constexpr std::array<std::string_view, 20> syllables
        = { "an", "ber", "cor", "dal", "el", "fin", "gar", "hel", "ir", "jo", "kar", "lin", "mor",
              "nel", "ol", "per", "ros", "sen", "tam", "vel" };
    const auto start = m_text.size();
    for (auto left = 2 + below(2); left > 0; --left)
        m_text += syllables[below(syllables.size())];
    m_text[start] = static_cast<char>(m_text[start] - 'a' + 'A');
}
