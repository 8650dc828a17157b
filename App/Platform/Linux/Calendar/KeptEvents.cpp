#include "App/Platform/Linux/Calendar/KeptEvents.h"

bool KeptEvents::take(const EventExpander::Result& result, const TimeSpan& span, Retry& retry)
{
    if (result.isComplete) {
        retry.succeeded();
        m_known = span;
    } else if (retry.later() && m_known == span) {
        return false;
    }
    const bool isOther = result.events != m_events;
    m_events = result.events;
    m_events.squeeze();
    return isOther;
}
