// The text that a selection of an X11 server holds.
#pragma once

#include <QClipboard>
#include <QString>

class X11Conversation;

namespace X11Selection {

// Waits, and so is for threads that may. Empty where there is no text, and when the conversation
// is over before all of it is there.
QString readText(QClipboard::Mode mode, X11Conversation& conversation);

}
