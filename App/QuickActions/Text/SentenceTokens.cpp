#include "App/QuickActions/Text/SentenceTokens.h"

#include "App/QuickActions/Text/SentenceRules.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>
#include <unicode/ubrk.h>

namespace {

constexpr qsizetype longestNote = 12;

class Sentences final {
public:
    explicit Sentences(QStringView text)
        : m_text(text)
    {
    }

    // To be called for each break of Unicode's rules, in order.
    void breakAt(qsizetype place);
    // What is after the last break is a sentence, too.
    QList<QStringView> take();

private:
    void endAt(qsizetype place);
    void endEarly(qsizetype place);
    bool isInAddress(qsizetype place);
    qsizetype endOfSpaces(qsizetype place) const;
    std::optional<qsizetype> endOfNotes(qsizetype start) const;

    QStringView m_text;
    QList<QStringView> m_sentences;
    qsizetype m_start = 0;
    // What was last looked at between white space, and whether it is a web address.
    qsizetype m_runEnd = 0;
    bool m_runIsAddress = false;
};

void Sentences::breakAt(qsizetype place)
{
    if (place <= m_start)
        return;
    if (const auto notes = endOfNotes(place - 1)) {
        const auto end = endOfSpaces(*notes);
        if (end > *notes || end == m_text.size())
            endAt(end);
        return;
    }
    const auto sentence = m_text.sliced(m_start, place - m_start);
    if (!SentenceRules::goesOn(sentence, m_text.sliced(place)) && !isInAddress(place))
        endAt(place);
}

QList<QStringView> Sentences::take()
{
    if (m_start < m_text.size())
        endAt(m_text.size());
    return std::move(m_sentences);
}

void Sentences::endAt(qsizetype place)
{
    endEarly(place);
    m_sentences.append(m_text.sliced(m_start, place - m_start));
    m_start = place;
}

void Sentences::endEarly(qsizetype place)
{
    const auto text = m_text.first(place);
    for (auto stop = text.indexOf(u'.', m_start); stop >= 0; stop = text.indexOf(u'.', stop + 1)) {
        const auto end = std::min(endOfSpaces(stop + 1), place);
        const auto sentence = text.sliced(m_start, end - m_start);
        if (SentenceRules::endsEarly(sentence, text.sliced(end))) {
            m_sentences.append(sentence);
            m_start = end;
        }
    }
}

bool Sentences::isInAddress(qsizetype place)
{
    if (place >= m_text.size() || m_text[place].isSpace() || m_text[place - 1].isSpace())
        return false;
    if (place >= m_runEnd) {
        const auto isSpace = [](QChar c) { return c.isSpace(); };
        auto start = place;
        while (start > m_runEnd && !m_text[start - 1].isSpace())
            --start;
        m_runEnd = std::find_if(m_text.begin() + place, m_text.end(), isSpace) - m_text.begin();
        const auto run = m_text.sliced(start, m_runEnd - start);
        m_runIsAddress = run.contains(u"://") || run.startsWith(u"www.");
    }
    return m_runIsAddress;
}

qsizetype Sentences::endOfSpaces(qsizetype place) const
{
    while (place < m_text.size() && m_text[place] == u' ')
        ++place;
    return place;
}

// Absent where there are no numbers of notes, as in «so.[1][2-3] Then».
std::optional<qsizetype> Sentences::endOfNotes(qsizetype start) const
{
    const auto isNumber
        = [](QChar c) { return c.isDigit() || QStringView(u", -\u2013").contains(c); };
    auto end = start;
    while (end < m_text.size() && m_text[end] == u'[') {
        auto note = end + 1;
        while (note < m_text.size() && note < end + longestNote && isNumber(m_text[note]))
            ++note;
        if (note == end + 1 || note == m_text.size() || m_text[note] != u']')
            return {};
        end = note + 1;
    }
    return end > start ? std::optional(end) : std::nullopt;
}

}

QList<QStringView> sentenceTokens(QStringView text)
{
    constexpr qsizetype most = std::numeric_limits<int32_t>::max();
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UBreakIterator, decltype(&ubrk_close)> breaks(
        ubrk_open(UBRK_SENTENCE, "", text.utf16(), int32_t(std::min(text.size(), most)), &status),
        &ubrk_close);
    Sentences sentences(text);
    for (int32_t end = 0; U_SUCCESS(status) && end != UBRK_DONE; end = ubrk_next(breaks.get()))
        sentences.breakAt(end);
    return sentences.take();
}
