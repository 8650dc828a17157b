// What is known of English sentences beyond Unicode's rules, which look at classes of characters
// only. Each looks at a few words beside the place, so that a long text takes no longer a word.
#pragma once

#include <QStringView>

namespace SentenceRules {

// Whether a sentence goes on where Unicode's rules end it, between what they found and the rest.
bool goesOn(QStringView sentence, QStringView rest);

// Whether a sentence ends where Unicode's rules go on: before a small letter, or without a space.
// The full stop and the white space after it belong to the sentence.
bool endsEarly(QStringView sentence, QStringView rest);

}
