// The little that must be known of iCalendar text before it is understood.
#pragma once

#include <QString>

namespace ICalendarText {

// Of the first component that has one; empty when none has.
QString uid(const QString& text);

// Whether the text is one of several of the same UID, or may stand for several events.
bool isRecurring(const QString& text);

}
