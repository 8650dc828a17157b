#!/usr/bin/env python3
"""Writes a table of inflected English words with their lemmas as C++: lemma-table.py WORDNET OUTPUT

WORDNET is the folder with WordNet's dictionary files. English inflects their words by a few rules
and some exceptions, which WordNet lists. Of several lemmas of one form the most frequent is taken,
as counted in the texts that were tagged by hand for WordNet. The table is a minimal automaton: the
endings that words share, and what replaces them in the lemma, are stored once.
"""
import collections
import itertools
import pathlib
import re
import sys

NOUN, VERB, ADJECTIVE, ADVERB = FILES = ["noun", "verb", "adj", "adv"]
TAGGED_AS = {"1": NOUN, "2": VERB, "3": ADJECTIVE, "4": ADVERB, "5": ADJECTIVE}

# The counts are those of all forms of a word together; of some forms only a small part is theirs.
SHARE = {"itself": 1, "s": 1, "ed": 1, "verb s": 0.3, "ing": 0.15, "er": 0.02}
UNTAGGED = 0.1  # A word that was never seen is still one.
RARE_PLURAL = 0.3  # Of a form that is also a noun by itself: data, agenda.
UNUSUAL = 0.001  # A regular form where there is an irregular one: growed.

# Where counting words without looking at their neighbours goes wrong, and what is no dictionary's
# word: pronouns, contractions.
ITSELF = """
    after cola further hers his its media outer regards thanks united us
""".split()
LEMMAS = dict(pair.split(":") for pair in """
    him:he me:i them:they these:this those:that
    an:a following:follow others:other
    ain't:be can't:can cannot:can gonna:go gotta:get shan't:shall wanna:want won't:will
    'd:would 'll:will 'm:be 're:be 's:be 've:have n't:not
""".split())

TERMINAL = 0  # The label at the end of a word; letters are 1 to 26.
APOSTROPHE = 27
UNUSED = 31  # Marks a slot that no state uses.
LABELS = 32


def lines(path):
    try:
        return path.read_text(encoding="ascii").splitlines()
    except OSError as error:
        sys.exit(f"lemma-table.py: {path}: {error.strerror}. Is the package wordnet-base installed?")


def is_word(text):
    return re.fullmatch("[a-z]+", text)


def read_counts(folder):
    """How often each word was tagged, by part of speech."""
    counts = {part: {} for part in FILES}
    for part in FILES:
        words = (line.split(" ")[0] for line in lines(folder / f"index.{part}"))
        counts[part].update((word, 0) for word in words if is_word(word))
    for line in lines(folder / "cntlist.rev"):
        sense, _, count = line.split()
        word, _, kind = sense.partition("%")
        part = TAGGED_AS[kind[0]]
        if word in counts[part]:
            counts[part][word] += int(count)
    return counts


def read_irregular(folder):
    """The irregular forms of each word, by part of speech."""
    irregular = {part: collections.defaultdict(list) for part in FILES}
    for part in FILES:
        for line in lines(folder / f"{part}.exc"):
            form, *words = line.split()
            for word in words:
                if is_word(form) and is_word(word):
                    irregular[part][word].append(form)
    return irregular


def with_s(word):
    if word.endswith("man"):
        return [word[:-2] + "en", word + "s"]
    if re.search("(s|x|z|ch|sh)$", word):
        return [word + "es"]
    if re.search("[^aeiou]y$", word):
        return [word[:-1] + "ies"]
    if re.search("[^aeiou]o$", word):
        return [word + "es", word + "s"]
    return [word + "s"]


def syllables(word):
    return len(re.findall("[aeiouy]+", re.sub("e$", "", word))) or 1


def with_suffix(word, suffix):
    if suffix == "ing":
        if word.endswith("ie"):
            return word[:-2] + "ying"
        if len(word) > 2 and re.search("[^eoy]e$", word):
            return word[:-1] + suffix
    elif word.endswith("e"):
        return word + suffix[1:]
    elif re.search("[^aeiou]y$", word):
        return word[:-1] + "i" + suffix
    if syllables(word) == 1 and re.search("([^aeiou]|qu)[aeiou][bcdfgklmnprstvz]$", word):
        return word + word[-1].replace("c", "k") + suffix
    return word + suffix


def is_compared(adjective):
    """Others are compared by more and most."""
    if adjective.endswith(("ed", "ing", "ly")):
        return False
    few = syllables(adjective)
    return few == 1 or few == 2 and re.search("(y|le|ow|er)$", adjective)


def regular_forms(part, word):
    """Pairs of a form and what it is."""
    if part == NOUN:
        yield from ((form, "s") for form in with_s(word))
    if part == VERB:
        yield from ((form, "verb s") for form in with_s(word))
        yield with_suffix(word, "ing"), "ing"
        yield with_suffix(word, "ed"), "ed"
    if part == ADJECTIVE and is_compared(word):
        yield with_suffix(word, "er"), "er"
        yield with_suffix(word, "est"), "er"


def replaces(part, kind, form):
    """Whether an irregular form stands where the regular one would."""
    if part == VERB:
        return kind == "ed" and not form.endswith(("ed", "ing", "s"))
    return True


def irregular_share(part, form, counts):
    if part == NOUN and form in counts[NOUN]:
        return RARE_PLURAL
    if part == VERB and form.endswith("ing"):
        return SHARE["ing"]
    return 1


def candidates(counts, irregular):
    """For each form the words that it may be of, with their parts of speech and weights."""
    found = collections.defaultdict(dict)

    def add(form, word, part, share):
        weight = (counts[part][word] + UNTAGGED) * share
        found[form][word, part] = max(weight, found[form].get((word, part), 0))

    compared = set()
    for part in FILES:
        for word in counts[part]:
            add(word, word, part, SHARE["itself"])
            exceptions = irregular[part].get(word, [])
            for form, kind in regular_forms(part, word):
                is_unusual = any(replaces(part, kind, other) for other in exceptions)
                add(form, word, part, SHARE[kind] * (UNUSUAL if is_unusual else 1))
                if kind == "er":
                    compared.add(form)
            for form in exceptions:
                add(form, word, part, irregular_share(part, form, counts))
                if part in (ADJECTIVE, ADVERB):
                    compared.add(form)
    # WordNet lists many comparatives as words of their own, such as better and later.
    for form in compared:
        if any(word != form for word, _ in found[form]):
            found[form].pop((form, ADJECTIVE), None)
            found[form].pop((form, ADVERB), None)
    return found


def choose(found):
    """The lemma of each form that is not its own."""
    lemmas = {}
    for form, weights in found.items():
        # Of words never seen, an inflected one is likelier than one that looks like it.
        lemmas[form], _ = max(weights, key=lambda c: (weights[c], c[0] != form, c))
    lemmas.update(LEMMAS)
    lemmas.update((form, form) for form in ITSELF)
    return {form: lemma for form, lemma in lemmas.items() if lemma != form}


def ending_rule(form, lemma):
    """How many letters to cut off, and what to put there."""
    same = len([*itertools.takewhile(lambda pair: pair[0] == pair[1], zip(form, lemma))])
    return len(form) - same, lemma[same:]


def label(letter):
    return APOSTROPHE if letter == "'" else ord(letter) - ord("a") + 1


def trie(lemmas, rules):
    root = {}
    for form in sorted(lemmas):
        node = root
        for letter in form:
            node = node.setdefault(label(letter), {})
        node[TERMINAL] = rules.index(ending_rule(form, lemmas[form]))
    return root


def automaton(root):
    """The states, each of them pairs of a label and the next state's number; the last one is first.

    States from which the same endings lead on are one. After TERMINAL stands a rule's number.
    """
    numbers = {}

    def number(node):
        state = tuple(
            (mark, number(child) if mark != TERMINAL else child)
            for mark, child in sorted(node.items())
        )
        return numbers.setdefault(state, len(numbers))

    number(root)
    return list(numbers)


def place(states):
    """Where each state begins among the slots: its labels fall on free ones, and no other begins there."""
    begins = [0] * len(states)
    used = taken = 0  # A bit for each slot.
    root = len(states) - 1
    for index in sorted(range(len(states)), key=lambda i: (i != root, -len(states[i]), i)):
        blocked = taken
        marks = 0
        for mark, _ in states[index]:
            blocked |= used >> mark
            marks |= 1 << mark
        begin = (~blocked & (blocked + 1)).bit_length() - 1
        begins[index] = begin
        taken |= 1 << begin
        used |= marks << begin
    return begins


def slots(states, begins):
    size = max(begins) + LABELS
    filled = [(UNUSED, 0)] * size
    for begin, state in zip(begins, states):
        for mark, target in state:
            filled[begin + mark] = mark, target if mark == TERMINAL else begins[target]
    return filled


def rows(values):
    texts = [str(value) for value in values]
    return ",\n".join(",".join(texts[i : i + 32]) for i in range(0, len(texts), 32))


def source(rules, filled):
    marks = [mark | target >> 16 << 5 for mark, target in filled]
    targets = [target & 0xFFFF for _, target in filled]
    endings = ",\n".join(f'{{ {cut}, "{added}" }}' for cut, added in rules)
    return f"""// Derived from WordNet 3.0, Copyright 2006 by Princeton University. All rights reserved.
#include "App/QuickActions/Text/LemmaTable.h"

const std::uint8_t LemmaTable::marks[] = {{
{rows(marks)}
}};

const std::uint16_t LemmaTable::targets[] = {{
{rows(targets)}
}};

const LemmaTable::Ending LemmaTable::endings[] = {{
{endings}
}};
"""


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: lemma-table.py WORDNET OUTPUT")
    folder, output = map(pathlib.Path, sys.argv[1:])
    lemmas = choose(candidates(read_counts(folder), read_irregular(folder)))
    rules = sorted({ending_rule(form, lemma) for form, lemma in lemmas.items()})
    states = automaton(trie(lemmas, rules))
    output.write_text(source(rules, slots(states, place(states))), encoding="ascii")


if __name__ == "__main__":
    main()
