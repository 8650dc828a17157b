#include "App/Platform/Linux/Screen/LayerWindows.h"

#include "App/Platform/Linux/Screen/LayerOverlayWindow.h"
#include "App/Platform/Linux/Screen/LayerPopoverWindow.h"
#include "App/Platform/Linux/Screen/LayerShellModule.h"
#include "App/Platform/Linux/Screen/WaylandHandles.h"

#include <type_traits>
#include <utility>

LayerWindows::LayerWindows(wl_display* display)
    : m_shell(display)
{
}

std::unique_ptr<OverlayWindow> LayerWindows::makeOverlay(std::unique_ptr<QWidget> content)
{
    return std::make_unique<LayerOverlayWindow>(m_shell, std::move(content));
}

std::unique_ptr<PopoverWindow> LayerWindows::makePopover(BuildContent buildContent)
{
    return std::make_unique<LayerPopoverWindow>(m_shell, std::move(buildContent));
}

extern "C" Q_DECL_EXPORT DesktopWindows* corvellaLayerShell()
{
    // For Qt to leave it to others what a surface is; it asks more than once.
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
    auto* const display = WaylandHandles::display();
    if (!display)
        return nullptr;
    auto windows = std::make_unique<LayerWindows>(display);
    return windows->areThere() ? windows.release() : nullptr;
}

static_assert(std::is_same_v<decltype(&corvellaLayerShell), LayerShellFactory>);
