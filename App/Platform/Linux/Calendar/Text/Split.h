// Lists in iCalendar values.
#pragma once

#include <algorithm>
#include <string_view>

// Calls with what stands between the separators.
template <typename Visit>
void split(std::string_view text, char separator, Visit visit)
{
    while (!text.empty()) {
        const auto size = std::min(text.find(separator), text.size());
        visit(text.substr(0, size));
        text.remove_prefix(std::min(size + 1, text.size()));
    }
}
