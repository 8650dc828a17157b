// The compositor of a Wayland session, which is always there.
#pragma once

#include "App/Platform/Compositor.h"

class WaylandCompositor final : public Compositor {
public:
    bool isRunning() const override { return true; }
};
