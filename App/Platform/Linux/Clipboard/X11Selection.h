// The text that an X11 clipboard holds.
#pragma once

#include <QString>

class X11Conversation;

namespace X11Selection {

// Waits, and so is for threads that may. Empty where there is no text, and when the conversation
// is over before all of it is there.
QString readText(X11Conversation& conversation);

}
