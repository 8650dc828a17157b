// What English words say of the full stop beside them: whether it only shortens the word before it,
// and whether a sentence is likely to begin after it.
#pragma once

#include <QStringView>

#include <optional>

enum class Abbreviation {
    title, // A name follows: Dr.
    place, // A name follows where no sentence begins: St.
    numbered, // A number follows where no sentence begins: no., fig.
    date, // Like it, but never in lower case: Sept.
    firm, // More of its name follows where no sentence begins: Co. Ltd.
    hour, // Its zone or day follows, or a sentence may end with it: p.m.
    open, // No sentence ends with it: e.g.
    closed, // A sentence may end with it: etc.
};

// Without the full stop at its end, in any case. Absent where it is none that is known.
std::optional<Abbreviation> abbreviation(QStringView word);

// Whether the word, in any case, begins sentences and no names: the, she, however.
bool opensSentences(QStringView word);
// Whether someone speaks by it: said, asked.
bool tellsOfSpeech(QStringView word);
// Whether it follows an hour: Monday, EST.
bool datesAnHour(QStringView word);
