#pragma once

#include "App/Platform/Compositor.h"

struct FakeCompositor final : Compositor {
    bool isRunning() const override { return running; }

    bool running = true;
};
