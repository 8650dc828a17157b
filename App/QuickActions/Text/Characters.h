// Walks over the characters of a text as a reader sees them: its extended grapheme clusters. ICU is
// asked only where code units may join.
#pragma once

#include "App/QuickActions/Text/Boundaries.h"

class Characters final {
public:
    explicit Characters(QStringView text = {}) { setText(text); }

    void setText(QStringView text); // Not copied.
    QStringView next(); // Empty after the last one.
    qsizetype position() const { return m_position; } // Behind the last one.
    // Only where it takes no look at what is between to know that a character begins there.
    void skipTo(qsizetype position);

private:
    static bool standsAlone(QChar unit) { return unit < u'\u0300' || isLaterLoner(unit); }
    static bool isLaterLoner(QChar unit);
    bool isSureToEnd(qsizetype position) const;
    QStringView take(qsizetype length);
    QStringView takeJoined();

    QStringView m_text;
    qsizetype m_position = 0;
    Boundaries m_boundaries { UBRK_CHARACTER };
    qsizetype m_partStart = 0;
    qsizetype m_partEnd = 0; // Of what ICU was given.
};

qsizetype characterCount(QStringView text);

inline QStringView Characters::next()
{
    if (m_position == m_text.size())
        return {};
    const bool isSingle = m_position >= m_partEnd && isSureToEnd(m_position + 1);
    return isSingle ? take(1) : takeJoined();
}

inline bool Characters::isSureToEnd(qsizetype position) const
{
    if (position == m_text.size())
        return true;
    const auto before = m_text[position - 1];
    const auto after = m_text[position];
    return standsAlone(before) && standsAlone(after) && !(before == u'\r' && after == u'\n');
}

inline QStringView Characters::take(qsizetype length)
{
    m_position += length;
    return m_text.sliced(m_position - length, length);
}
