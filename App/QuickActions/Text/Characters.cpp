#include "App/QuickActions/Text/Characters.h"

#include <algorithm>

// Long enough for what it takes to hand a part to ICU.
static constexpr qsizetype shortestPart = 32;

void Characters::setText(QStringView text)
{
    m_text = text;
    m_position = 0;
    m_partEnd = 0;
}

void Characters::skipTo(qsizetype position)
{
    if (position == m_position || !isSureToEnd(position))
        return;
    m_position = position;
    m_partEnd = 0;
}

// Takes nothing before or behind it, whatever the version of Unicode.
bool Characters::isLaterLoner(QChar unit)
{
    const auto isBetween = [unit](char16_t first, char16_t last) {
        return unit.unicode() >= first && unit.unicode() <= last;
    };
    const bool isHan = isBetween(u'一', u'\u9FFF');
    const bool isHangul = isBetween(u'가', u'힣');
    const bool isGreekOrCyrillic = isBetween(u'Α', u'\u0482');
    const bool isKana = isBetween(u'ぁ', u'ゖ') || isBetween(u'゠', u'ヿ');
    const bool isFullWidth = isBetween(u'！', u'～');
    const bool isPunctuation = isBetween(u'\u2010', u'\u2027') || isBetween(u'\u3000', u'\u3029');
    return isHan || isHangul || isGreekOrCyrillic || isKana || isFullWidth || isPunctuation;
}

QStringView Characters::takeJoined()
{
    if (m_position >= m_partEnd) {
        if (m_text.sliced(m_position).startsWith(u"\r\n"))
            return take(2);
        m_partStart = m_position;
        m_partEnd = std::min(m_position + shortestPart, m_text.size());
        while (!isSureToEnd(m_partEnd))
            ++m_partEnd;
        m_boundaries.setText(m_text.sliced(m_partStart, m_partEnd - m_partStart));
    }
    return take(m_partStart + m_boundaries.next() - m_position);
}

qsizetype characterCount(QStringView text)
{
    Characters characters(text);
    qsizetype count = 0;
    while (!characters.next().isEmpty())
        ++count;
    return count;
}
