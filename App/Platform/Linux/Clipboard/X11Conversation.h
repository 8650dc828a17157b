// A connection to an X11 server beside Qt's, on which nothing is waited for beyond a patience.
#pragma once

#include "App/Platform/Linux/Background/Patience.h"
#include "App/Platform/Linux/Screen/X11Connection.h"

#include <QByteArray>

#include <xcb/xcb.h>

class X11Conversation final {
public:
    using Event = std::unique_ptr<xcb_generic_event_t, decltype(&std::free)>;

    X11Conversation(const QByteArray& display, const Patience& patience);
    ~X11Conversation();
    Q_DISABLE_COPY_MOVE(X11Conversation)

    xcb_connection_t* connection() const { return m_x; }
    xcb_window_t root() const; // Of the display's own screen.
    // Once it is over nothing is waited for any more, and nothing comes.
    bool isOver() const { return m_isOver; }
    void end() { m_isOver = true; }
    void renew() { m_patience.renew(); } // The other side did something.

    // Null when the request fails.
    template <typename Reply>
    auto reply(unsigned sequence)
    {
        return X11Connection::owned(static_cast<Reply*>(rawReply(sequence)));
    }
    Event nextEvent(); // Null only when the conversation is over.

private:
    void* rawReply(unsigned sequence);
    void await();

    Patience m_patience;
    int m_screen = 0;
    xcb_connection_t* m_x;
    bool m_isOver;
};
