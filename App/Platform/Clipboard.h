// The desktop's clipboard, as plain text.
#pragma once

#include <QClipboard>
#include <QString>

#include <functional>

class QObject;

class Clipboard {
public:
    virtual ~Clipboard() = default;
    static Clipboard& shared(); // Defined in App/Wiring.cpp.

    // The mode says whether what was copied is meant, or what is selected, which the middle mouse
    // button pastes. Hands over the text in a later turn of the event loop, or nothing at all once
    // the waiter is gone. Empty when there is no text, or when whoever has it does not hand it out
    // in time.
    virtual void readText(
        QClipboard::Mode mode, QObject* waiter, std::function<void(const QString& text)> done)
        = 0;
    // In place of all that was there.
    virtual void setText(const QString& text) = 0;
};
