#include "App/QuickActions/SentenceTokens.h"

#include <memory>
#include <unicode/ubrk.h>

QList<QStringView> sentenceTokens(QStringView text)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UBreakIterator, decltype(&ubrk_close)> breaks(
        ubrk_open(UBRK_SENTENCE, "", text.utf16(), int32_t(text.size()), &status), &ubrk_close);
    QList<QStringView> tokens;
    int32_t start = 0;
    while (true) {
        const int32_t end = ubrk_next(breaks.get());
        if (end == UBRK_DONE)
            return tokens;
        tokens.append(text.sliced(start, end - start));
        start = end;
    }
}
