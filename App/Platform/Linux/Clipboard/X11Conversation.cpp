#include "App/Platform/Linux/Clipboard/X11Conversation.h"

#include <xcb/xcbext.h>

X11Conversation::X11Conversation(const QByteArray& display, const Patience& patience)
    : m_patience(patience)
    , m_x(xcb_connect(display.isEmpty() ? nullptr : display.constData(), &m_screen))
    , m_isOver(xcb_connection_has_error(m_x) != 0)
{
    m_patience.begin();
}

X11Conversation::~X11Conversation()
{
    xcb_disconnect(m_x);
}

xcb_window_t X11Conversation::root() const
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_x));
    for (int number = 0; number < m_screen && screens.rem > 1; ++number)
        xcb_screen_next(&screens);
    return screens.data->root;
}

X11Conversation::Event X11Conversation::nextEvent()
{
    xcb_flush(m_x);
    while (!m_isOver) {
        auto event = X11Connection::owned(xcb_poll_for_event(m_x));
        // Whoever sends events without end is not to hold the reader for as long.
        if (event && !m_patience.isOver())
            return event;
        await();
    }
    return X11Connection::owned(static_cast<xcb_generic_event_t*>(nullptr));
}

void* X11Conversation::rawReply(unsigned sequence)
{
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    xcb_flush(m_x);
    while (!m_isOver && xcb_poll_for_reply(m_x, sequence, &reply, &error) == 0)
        await();
    std::free(error);
    return reply;
}

void X11Conversation::await()
{
    m_isOver = m_isOver || xcb_connection_has_error(m_x) != 0 || m_patience.isOver()
        || !m_patience.await(xcb_get_file_descriptor(m_x));
}
