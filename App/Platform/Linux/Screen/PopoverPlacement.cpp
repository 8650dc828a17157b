#include "App/Platform/Linux/Screen/PopoverPlacement.h"

#include <algorithm>

namespace {

constexpr int gap = 6; // Between the panel and the popover, and from the screen's edges.

int within(int wanted, int length, int low, int high)
{
    return std::max(std::min(wanted, high - length), low);
}

QRect cornerOf(const ScreenSpace& screen)
{
    const bool panelIsBelow = screen.available.top() == screen.whole.top()
        && screen.available.bottom() < screen.whole.bottom();
    const int y = panelIsBelow ? screen.whole.bottom() : screen.whole.top();
    return { screen.whole.right(), y, 1, 1 };
}

}

QPoint popoverOrigin(const QRect& anchor, const QSize& size, const ScreenSpace& screen)
{
    const auto item = anchor.isNull() ? cornerOf(screen) : anchor;
    const auto& free = screen.available;
    const auto inner = free.adjusted(gap, gap, -gap, -gap);
    const auto centre = item.center();

    int x = centre.x() - size.width() / 2;
    int y = centre.y() - size.height() / 2;
    const bool besidePanel = centre.y() >= free.top() && centre.y() <= free.bottom()
        && (centre.x() < free.left() || centre.x() > free.right());
    if (besidePanel) {
        const bool panelIsLeft = centre.x() < free.left();
        x = panelIsLeft ? inner.left() : inner.right() + 1 - size.width();
    } else if (centre.y() < screen.whole.center().y()) {
        y = std::max(item.bottom() + 1, free.top()) + gap;
    } else {
        y = std::min(item.top(), free.bottom() + 1) - gap - size.height();
    }
    return { within(x, size.width(), inner.left(), inner.right() + 1),
        within(y, size.height(), inner.top(), inner.bottom() + 1) };
}
