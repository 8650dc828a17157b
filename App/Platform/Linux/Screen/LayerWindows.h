// Windows above others on a compositor with layers.
#pragma once

#include "App/Platform/Linux/Screen/DesktopWindows.h"
#include "App/Platform/Linux/Screen/LayerShell.h"

class LayerWindows final : public DesktopWindows {
public:
    explicit LayerWindows(wl_display* display);

    bool areThere() const { return m_shell.isThere(); }

    std::unique_ptr<OverlayWindow> makeOverlay(std::unique_ptr<QWidget> content) override;
    std::unique_ptr<PopoverWindow> makePopover(BuildContent buildContent) override;

private:
    LayerShell m_shell;
};
