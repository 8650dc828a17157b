// Qt's own connection to the X server, for the few requests that Qt has no call for.
#pragma once

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace X11Connection {

xcb_connection_t* connection(); // Null where Qt does not draw through X11.
bool isBehindWayland(); // Whether the server shows its windows through a Wayland compositor.
xcb_window_t root();
xcb_atom_t atom(const char* name); // Asked of the server once a name.
xcb_window_t selectionOwner(xcb_atom_t selection); // None also when the server does not answer.
// Asks the window manager, or whoever listens at the root, for something done to a window.
void sendToRoot(xcb_window_t window, const char* type, const uint32_t (&values)[5]);

// Replies come from malloc; null ones mean that the request failed.
template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply)
{
    return { reply, &std::free };
}

}
