#pragma once

#include "App/Platform/PopoverWindow.h"

struct FakePopoverWindow final : PopoverWindow {
    bool isShown() const override { return shown; }

    void show(const QRect& at) override
    {
        shown = true;
        anchor = at;
        ++shows;
    }

    void close() override { shown = false; }

    bool shown = false;
    QRect anchor;
    int shows = 0;
};
