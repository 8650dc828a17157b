// The tabs of the popover, in the order of the tab bar.
#pragma once

#include <QString>

#include <array>
#include <optional>

enum class Tab { focus, actions, meetings, system, shortcuts };

inline constexpr std::array allTabs {
    Tab::focus,
    Tab::actions,
    Tab::meetings,
    Tab::system,
    Tab::shortcuts,
};

// The tab's title, and the text it is known by.
QString rawValue(Tab tab);
std::optional<Tab> tabFromRawValue(const QString& text);
QString symbolName(Tab tab);
