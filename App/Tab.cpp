#include "App/Tab.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QString rawValue(Tab tab)
{
    switch (tab) {
    case Tab::focus:
        return u"Focus"_s;
    case Tab::actions:
        return u"Actions"_s;
    case Tab::meetings:
        return u"Meetings"_s;
    case Tab::system:
        return u"System"_s;
    case Tab::shortcuts:
        return u"Shortcuts"_s;
    }
    Q_UNREACHABLE();
}

std::optional<Tab> tabFromRawValue(const QString& text)
{
    const auto found = std::ranges::find(allTabs, text, [](Tab tab) { return rawValue(tab); });
    return found == allTabs.end() ? std::nullopt : std::optional(*found);
}

QString symbolName(Tab tab)
{
    switch (tab) {
    case Tab::focus:
        return u"timer"_s;
    case Tab::actions:
        return u"wand.and.stars"_s;
    case Tab::meetings:
        return u"calendar"_s;
    case Tab::system:
        return u"gauge.with.dots.needle.33percent"_s;
    case Tab::shortcuts:
        return u"square.grid.2x2"_s;
    }
    Q_UNREACHABLE();
}
