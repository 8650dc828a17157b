#include "App/QuickActions/Characters.h"

#include <unicode/ubrk.h>

Characters::Characters(QStringView text)
    : m_text(text)
{
    UErrorCode status = U_ZERO_ERROR;
    m_breaks = ubrk_open(UBRK_CHARACTER, "", text.utf16(), int32_t(text.size()), &status);
}

Characters::~Characters()
{
    ubrk_close(m_breaks);
}

QStringView Characters::next()
{
    const int32_t start = ubrk_current(m_breaks);
    const int32_t end = ubrk_next(m_breaks);
    return end == UBRK_DONE ? QStringView() : m_text.sliced(start, end - start);
}

qsizetype characterCount(QStringView text)
{
    Characters characters(text);
    qsizetype count = 0;
    while (!characters.next().isEmpty())
        ++count;
    return count;
}
