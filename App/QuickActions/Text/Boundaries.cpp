#include "App/QuickActions/Text/Boundaries.h"

Boundaries::~Boundaries()
{
    ubrk_close(m_breaks);
}

void Boundaries::setText(QStringView text)
{
    UErrorCode status = U_ZERO_ERROR;
    if (!m_breaks)
        m_breaks = ubrk_open(m_type, "", nullptr, 0, &status);
    ubrk_setText(m_breaks, text.utf16(), static_cast<int32_t>(text.size()), &status);
    if (U_FAILURE(status))
        qFatal("ICU tells no boundaries: %s", u_errorName(status));
}
