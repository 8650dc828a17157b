#include "App/QuickActions/Text/SentenceRules.h"

#include "App/QuickActions/Text/Abbreviations.h"

#include <algorithm>

namespace {

constexpr qsizetype longestWord = 24;

constexpr auto isLetter = [](QChar character) { return character.isLetter(); };
constexpr auto isSmall = [](QChar character) { return character.isLower(); };

bool endsLine(QChar character)
{
    return QStringView(u"\n\r\u0085\u2028\u2029").contains(character);
}

bool opens(QChar character)
{
    return QStringView(u"([\"'\u2018\u201C\u00AB").contains(character);
}

bool closes(QChar character)
{
    return QStringView(u")]\"'\u2019\u201D\u00BB").contains(character);
}

// Without the last characters that have the property.
template <typename Property>
QStringView chopped(QStringView text, Property property)
{
    while (!text.isEmpty() && property(text.back()))
        text.chop(1);
    return text;
}

QStringView withoutSpace(QStringView text)
{
    return chopped(text, [](QChar c) { return c.isSpace(); });
}

// The letters at the end, and the full stops between them.
QStringView lastWord(QStringView text)
{
    const auto end = text.last(std::min(text.size(), longestWord));
    auto word = end.sliced(chopped(end, [](QChar c) { return c.isLetter() || c == u'.'; }).size());
    while (word.startsWith(u'.'))
        word = word.sliced(1);
    return word;
}

// The letters at the start, after a quote or bracket.
QStringView firstWord(QStringView text)
{
    auto word = text.first(std::min(text.size(), longestWord));
    while (!word.isEmpty() && opens(word.front()))
        word = word.sliced(1);
    return word.first(std::ranges::find_if_not(word, isLetter) - word.begin());
}

QStringView after(QStringView word, QStringView text)
{
    return text.sliced(word.end() - text.begin());
}

bool isCapital(QStringView word)
{
    return !word.isEmpty() && word.front().isUpper();
}

bool startsWithInitial(QStringView text)
{
    const auto word = firstWord(text);
    return word.size() == 1 && word.front().isUpper() && after(word, text).startsWith(u'.');
}

bool startsWithName(QStringView text)
{
    const auto word = firstWord(text);
    return startsWithInitial(text) || (isCapital(word) && !opensSentences(word));
}

bool startsWithNumber(QStringView text)
{
    if (text.startsWith(u'(') || text.startsWith(u'['))
        text = text.sliced(1);
    return !text.isEmpty() && text.front().isDigit();
}

// Letters with a full stop after each, or two: U.S, Ph.D.
bool isAcronym(QStringView word)
{
    int letters = 0;
    for (const auto character : word) {
        letters = character == u'.' ? 0 : letters + 1;
        if (letters > 2)
            return false;
    }
    return isCapital(word) && word.contains(u'.');
}

bool goesOnAfter(Abbreviation kind, QStringView word, QStringView rest)
{
    switch (kind) {
    case Abbreviation::title:
        return isCapital(word) && isCapital(firstWord(rest));
    case Abbreviation::place:
        return isCapital(word) && startsWithName(rest);
    case Abbreviation::numbered:
        return startsWithNumber(rest);
    case Abbreviation::date:
        return isCapital(word) && startsWithNumber(rest);
    case Abbreviation::firm:
        return rest.startsWith(u'(') || abbreviation(firstWord(rest)) == Abbreviation::firm;
    case Abbreviation::hour:
        return rest.startsWith(u'(') || datesAnHour(firstWord(rest));
    case Abbreviation::open:
        return isCapital(firstWord(rest)) || startsWithNumber(rest);
    case Abbreviation::closed:
        return false;
    }
    return false;
}

// The numeral and the pronoun I end sentences.
bool goesOnAfterInitial(QStringView initial, QStringView rest)
{
    return initial == u"I" ? startsWithInitial(rest) : startsWithName(rest);
}

// The word with a full stop after it, where it is one: not a part of a number or a file's name.
QStringView stoppedWord(QStringView sentence)
{
    const auto text = sentence.chopped(1);
    const auto word = lastWord(text);
    const auto before = text.chopped(word.size());
    const bool isWhole = before.isEmpty() || before.back().isSpace() || opens(before.back())
        || QStringView(u"-\u2013\u2014/&,;:").contains(before.back());
    return isWhole && !word.endsWith(u'.') ? word : QStringView();
}

bool goesOnAfterStop(QStringView sentence, QStringView rest)
{
    const auto word = stoppedWord(sentence);
    if (word.isEmpty())
        return false;
    if (word.size() == 1 && isCapital(word))
        return goesOnAfterInitial(word, rest);
    if (const auto kind = abbreviation(word))
        return goesOnAfter(*kind, word, rest);
    return isAcronym(word) && (startsWithName(rest) || rest.startsWith(u'('));
}

// A quote that ends like a sentence: «Stop!».
bool endsQuote(QStringView text)
{
    const auto quoted
        = chopped(text, [](QChar c) { return QStringView(u"\"'\u2019\u201D\u00BB").contains(c); });
    const auto words = chopped(quoted, [](QChar c) { return c == u'!' || c == u'?'; });
    return quoted.size() < text.size() && words.size() < quoted.size() && !words.isEmpty()
        && words.back().isLetter();
}

// Someone says what was quoted: he said, Aunt Em cried.
bool goesOnAfterQuote(QStringView rest)
{
    if (rest.front().isLower())
        return true;
    for (int names = 0; names < 2; ++names) {
        const auto name = firstWord(rest);
        if (!isCapital(rest) || !after(name, rest).startsWith(u' '))
            return false;
        rest = after(name, rest).sliced(1);
        if (tellsOfSpeech(firstWord(rest)))
            return true;
    }
    return false;
}

bool isSmallWord(QStringView word)
{
    return word.size() > 1 && std::ranges::all_of(word, isSmall);
}

// Whether the first letter is a small one: such writers begin no sentence with a capital.
bool startsSmall(QStringView sentence)
{
    const auto start = sentence.first(std::min(sentence.size(), longestWord));
    const auto letter = std::ranges::find_if(start, isLetter);
    return letter != start.end() && letter->isLower();
}

bool isAddress(QStringView text)
{
    return text.startsWith(u"http://") || text.startsWith(u"https://") || text.startsWith(u"www.");
}

// Whether it is more than one word of which the last, with its full stop, is no abbreviation.
bool isWhole(QStringView sentence)
{
    const auto text = sentence.chopped(1);
    const auto end = text.last(std::min(text.size(), 2 * longestWord));
    if (!end.contains(u' '))
        return false;
    if (const auto word = stoppedWord(sentence); !word.isEmpty())
        return word.size() > 1 && !word.contains(u'.') && !abbreviation(word);
    return end.back() == u')' || (end.back().isDigit() && end[end.size() - 2].isDigit());
}

// Few writers leave out the space, and none of them before words that are no names: «.com», «.The».
bool isGlued(QStringView sentence, QStringView rest)
{
    const auto word = firstWord(rest);
    return isCapital(rest) && isSmallWord(word.sliced(1)) && opensSentences(word)
        && !after(word, rest).startsWith(u'.') && isSmallWord(stoppedWord(sentence));
}

// Where the sentence is written with a capital, only such words as begin another, and no names of
// which a part is left out, are taken for the carelessness of one who writes without.
bool isCareless(QStringView sentence, QStringView rest)
{
    const auto word = firstWord(rest);
    return startsSmall(sentence) || word == u"i"
        || (opensSentences(word) && !isCapital(stoppedWord(sentence)));
}

}

bool SentenceRules::goesOn(QStringView sentence, QStringView rest)
{
    if (sentence.isEmpty() || rest.isEmpty() || endsLine(sentence.back()))
        return false;
    const auto text = withoutSpace(sentence);
    const auto marked = chopped(text, closes);
    if (marked.isEmpty() || text.size() == sentence.size())
        return false;
    if (marked.back() == u'.')
        return marked.size() == text.size() && goesOnAfterStop(marked, rest);
    return endsQuote(text) && goesOnAfterQuote(rest);
}

bool SentenceRules::endsEarly(QStringView sentence, QStringView rest)
{
    const auto text = withoutSpace(sentence);
    if (!text.endsWith(u'.') || rest.isEmpty())
        return false;
    if (text.size() == sentence.size())
        return isGlued(text, rest);
    return isWhole(text) && (isAddress(rest) || (rest.front().isLower() && isCareless(text, rest)));
}
