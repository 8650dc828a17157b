// ICU's boundaries in a text, in the locale that has none of its own.
#pragma once

#include <QStringView>

#include <unicode/ubrk.h>

class Boundaries final {
public:
    explicit Boundaries(UBreakIteratorType type)
        : m_type(type)
    {
    }
    ~Boundaries();
    Q_DISABLE_COPY_MOVE(Boundaries)

    void setText(QStringView text); // Not copied; shorter than 2^31.
    // The one after the last one told, the first of them after 0; -1 behind the end.
    qsizetype next() { return ubrk_next(m_breaks); }
    // Whether a word ends here, not mere punctuation or space.
    bool endsWord() const { return ubrk_getRuleStatus(m_breaks) >= UBRK_WORD_NONE_LIMIT; }

private:
    UBreakIteratorType m_type;
    UBreakIterator* m_breaks = nullptr; // Opened for the first text, as that takes its time.
};
