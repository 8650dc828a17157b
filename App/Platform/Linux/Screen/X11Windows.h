// Windows above others on an X11 desktop.
#pragma once

#include "App/Platform/Linux/Screen/DesktopWindows.h"

class Compositor;

class X11Windows final : public DesktopWindows {
public:
    explicit X11Windows(const Compositor& compositor);

    std::unique_ptr<OverlayWindow> makeOverlay(std::unique_ptr<QWidget> content) override;
    std::unique_ptr<PopoverWindow> makePopover(BuildContent buildContent) override;

private:
    const Compositor& m_compositor;
};
