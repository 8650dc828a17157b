// English words that are inflected, and what makes lemmas of them: an automaton that
// tools/lemma-table.py makes of WordNet while Corvella is built. Nothing of it is copied or set up
// when the program runs.
#pragma once

#include <cstdint>

namespace LemmaTable {

// What is cut off at the end of a word, and what is put there.
struct Ending {
    std::uint8_t cut;
    char added[15];
};

// The state in which a word begins; any other is, like it, the number of a slot.
inline constexpr std::uint32_t first = 0;
// Labels: the end of a word, after which the target is an ending; letters from 1 on; apostrophes;
// what is in no word.
inline constexpr std::uint32_t wordEnd = 0;
inline constexpr std::uint32_t apostrophe = 27;
inline constexpr std::uint32_t unknown = 30;

// A label leads on from a state where it is that of the slot as many behind the state's. In five
// bits stands the label of a slot, in three the first ones of its target, in another array the
// rest.
extern const std::uint8_t marks[];
extern const std::uint16_t targets[];
extern const Ending endings[];

}
