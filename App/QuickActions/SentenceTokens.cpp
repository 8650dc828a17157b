#include "App/QuickActions/SentenceTokens.h"

#include "App/QuickActions/SentenceRules.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <unicode/ubrk.h>

namespace {

class Sentences final {
public:
    explicit Sentences(QStringView text)
        : m_text(text)
    {
    }

    // To be called for each break of Unicode's rules, in order.
    void breakAt(qsizetype place);
    QList<QStringView> take() { return std::move(m_sentences); }

private:
    void endAt(qsizetype place);
    void endEarly(qsizetype place);
    bool isInAddress(qsizetype place);
    qsizetype afterNotes(qsizetype place) const;

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
    if (const auto notes = afterNotes(place); notes > place)
        place = notes;
    else if (SentenceRules::goesOn(m_text.sliced(m_start, place - m_start), m_text.sliced(place))
        || isInAddress(place))
        return;
    endAt(place);
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
        auto end = stop + 1;
        while (end < place && text[end] == u' ')
            ++end;
        if (end < place
            && SentenceRules::endsEarly(text.sliced(m_start, end - m_start), text.sliced(end))) {
            m_sentences.append(text.sliced(m_start, end - m_start));
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

// Where a sentence ends whose full stop has the numbers of notes after it: "so.[1][2] Then".
qsizetype Sentences::afterNotes(qsizetype place) const
{
    auto end = place - 1;
    while (end < m_text.size() && m_text[end] == u'[') {
        const auto inner
            = m_text.sliced(end + 1).first(std::min<qsizetype>(m_text.size() - end - 1, 12));
        const auto close = std::ranges::find_if_not(
            inner, [](QChar c) { return c.isDigit() || QStringView(u",-\u2013 ").contains(c); });
        if (close == inner.begin() || close == inner.end() || *close != u']')
            return place;
        end += close - inner.begin() + 2;
    }
    if (end < place || end == m_text.size() || m_text[end] != u' ')
        return place;
    while (end < m_text.size() && m_text[end] == u' ')
        ++end;
    return end;
}

}

QList<QStringView> sentenceTokens(QStringView text)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UBreakIterator, decltype(&ubrk_close)> breaks(
        ubrk_open(UBRK_SENTENCE, "", text.utf16(), int32_t(text.size()), &status), &ubrk_close);
    Sentences sentences(text);
    for (auto end = ubrk_next(breaks.get()); end != UBRK_DONE; end = ubrk_next(breaks.get()))
        sentences.breakAt(end);
    return sentences.take();
}
