#include "App/Platform/Linux/Screen/X11Windows.h"

#include "App/Platform/Linux/Screen/X11OverlayWindow.h"
#include "App/Platform/Linux/Screen/X11PopoverWindow.h"

#include <QWidget>

#include <utility>

X11Windows::X11Windows(const Compositor& compositor)
    : m_compositor(compositor)
{
}

std::unique_ptr<OverlayWindow> X11Windows::makeOverlay(std::unique_ptr<QWidget> content)
{
    return std::make_unique<X11OverlayWindow>(m_compositor, std::move(content));
}

std::unique_ptr<PopoverWindow> X11Windows::makePopover(BuildContent buildContent)
{
    return std::make_unique<X11PopoverWindow>(std::move(buildContent));
}
