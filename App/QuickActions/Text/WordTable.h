// The texts that were asked for, each with two numbers. Tables of Qt take several times as long for
// texts as short as words are.
#pragma once

#include <QStringView>

#include <cstdint>
#include <vector>

class WordTable final {
public:
    struct Entry {
        QStringView text; // Not copied; null in an empty place.
        std::uint32_t hash = 0;
        std::uint32_t ofToken = 0;
        std::uint32_t ofLemma = 0;
    };

    // A new one where there was none. Good until the next is asked for.
    Entry& operator[](QStringView text);

private:
    Entry& placeOf(QStringView text, std::uint32_t hash);
    void grow();

    std::vector<Entry> m_entries = std::vector<Entry>(256); // A power of two, half of them empty.
    std::size_t m_used = 0;
};
