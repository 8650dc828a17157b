// What Qt's screens and windows are to the compositor.
#pragma once

#include <wayland-client-protocol.h>

class QScreen;
class QWindow;

// Each is null where there is none.
namespace WaylandHandles {

wl_display* display();
wl_compositor* compositor();
wl_output* output(QScreen& screen);
wl_surface* surface(QWindow& window); // While it is shown.

// Lets Qt choose now, and for good, what its windows are painted with.
void chooseHardware();

}
