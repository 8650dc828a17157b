#include "App/QuickActions/WordTokens.h"

#include <unicode/ubrk.h>

WordTokens::WordTokens()
{
    UErrorCode status = U_ZERO_ERROR;
    m_breaks = ubrk_open(UBRK_WORD, "", nullptr, 0, &status);
}

WordTokens::~WordTokens()
{
    ubrk_close(m_breaks);
}

void WordTokens::setText(QStringView text)
{
    UErrorCode status = U_ZERO_ERROR;
    m_text = text;
    ubrk_setText(m_breaks, text.utf16(), int32_t(text.size()), &status);
}

std::optional<QStringView> WordTokens::next()
{
    int32_t start = ubrk_current(m_breaks);
    for (int32_t end = ubrk_next(m_breaks); end != UBRK_DONE; end = ubrk_next(m_breaks)) {
        if (ubrk_getRuleStatus(m_breaks) >= UBRK_WORD_NONE_LIMIT)
            return m_text.sliced(start, end - start);
        start = end;
    }
    return {};
}
