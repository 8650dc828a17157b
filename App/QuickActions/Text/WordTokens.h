// Walks over the words of a text, leaving out punctuation and white space. ICU is asked only for
// what is not plain Latin or Cyrillic.
#pragma once

#include "App/QuickActions/Text/Boundaries.h"

#include <optional>

class WordTokens final {
public:
    void setText(QStringView text); // Not copied.
    std::optional<QStringView> next(); // Absent after the last one.

private:
    void skipGap();
    qsizetype plainEnd() const;
    void openPart();
    QStringView takeTo(qsizetype end);

    QStringView m_text;
    qsizetype m_position = 0;
    Boundaries m_boundaries { UBRK_WORD };
    qsizetype m_partStart = 0;
    qsizetype m_partEnd = 0; // Of what ICU was given.
};

qsizetype wordCount(QStringView text);
