// The windows above others, of one kind of desktop.
#pragma once

#include <QString>

#include <functional>
#include <memory>

class OverlayWindow;
class PopoverWindow;
class QWidget;

class DesktopWindows {
public:
    using BuildContent = std::function<std::unique_ptr<QWidget>()>;

    // Milliseconds. A click on the item takes the keyboard away, which closes the popover, and is
    // reported by the item only then: within this time it does not open the popover again.
    static constexpr int sameClickMs = 250;

    virtual ~DesktopWindows() = default;

    virtual std::unique_ptr<OverlayWindow> makeOverlay(std::unique_ptr<QWidget> content) = 0;
    // The content is built when the popover is first shown, and kept. Its contents margins are
    // taken as its shadow: they may hang over the screen's edges, and clicks go through them.
    virtual std::unique_ptr<PopoverWindow> makePopover(BuildContent buildContent) = 0;
};
