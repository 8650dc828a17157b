#include "App/Helpers/Launch/Terminals.h"

#include "App/Helpers/Launch/ApplicationNames.h"
#include "App/Helpers/Launch/CommandLine.h"
#include "App/Helpers/Launch/Surroundings.h"

#include <algorithm>

namespace Terminals {

struct OfDesktop {
    std::string_view desktop;
    std::string_view entry;
};

static constexpr OfDesktop ofDesktops[] = {
    { "GNOME", "org.gnome.Ptyxis.desktop" },
    { "GNOME", "org.gnome.Console.desktop" },
    { "GNOME", "org.gnome.Terminal.desktop" },
    { "KDE", "org.kde.konsole.desktop" },
    { "XFCE", "xfce4-terminal.desktop" },
    { "XFCE", "org.xfce.terminal.desktop" },
    { "MATE", "mate-terminal.desktop" },
    { "X-Cinnamon", "org.gnome.Terminal.desktop" },
    { "LXQt", "qterminal.desktop" },
    { "LXDE", "lxterminal.desktop" },
    { "Budgie", "com.gexperts.Tilix.desktop" },
    { "Budgie", "org.gnome.Terminal.desktop" },
    { "Unity", "org.gnome.Terminal.desktop" },
    { "Pantheon", "io.elementary.terminal.desktop" },
    { "Deepin", "deepin-terminal.desktop" },
    { "COSMIC", "com.system76.CosmicTerm.desktop" },
    { "Enlightenment", "terminology.desktop" },
    { "sway", "foot.desktop" },
};

struct Known {
    std::string_view program;
    std::string_view option;
};

static constexpr std::string_view usualOption = "-e";
static constexpr Known knownOnes[] = {
    { "xdg-terminal-exec", "" },
    { "alacritty", usualOption },
    { "foot", "" },
    { "footclient", "" },
    { "gnome-terminal", "--" },
    { "io.elementary.terminal", "-x" },
    { "kgx", "--" },
    { "kitty", "" },
    { "konsole", usualOption },
    { "lxterminal", usualOption },
    { "mate-terminal", "-x" },
    { "ptyxis", "--" },
    { "qterminal", usualOption },
    { "terminator", "-x" },
    { "tilix", usualOption },
    { "uxterm", usualOption },
    { "wezterm", usualOption },
    { "xfce4-terminal", "-x" },
    { "xterm", usualOption },
};

static const Known* known(const Application& terminal)
{
    for (const auto& name : CommandLine::programs(CommandLine::split(terminal.command))) {
        // A package has a name such as org.gnome.Ptyxis.
        const auto last = ApplicationNames::folded(name.substr(name.rfind('.') + 1));
        const auto* const found = std::ranges::find_if(knownOnes,
            [&](const Known& each) { return each.program == name || each.program == last; });
        if (found != std::end(knownOnes))
            return found;
    }
    return nullptr;
}

static const Application* ofDesktop(const Applications& applications, std::string_view desktop)
{
    for (const auto& each : ofDesktops) {
        const auto found = std::ranges::find(applications, each.entry, &Application::id);
        if (each.desktop == desktop && found != applications.end())
            return &*found;
    }
    return nullptr;
}

// Rather one of which we know how it runs a program.
static const Application* anyOther(const Applications& applications)
{
    const Application* found = nullptr;
    for (const auto& each : applications) {
        const bool isTerminal = each.isShown && !each.needsTerminal
            && std::ranges::find(each.categories, "TerminalEmulator") != each.categories.end();
        if (isTerminal && known(each))
            return &each;
        if (isTerminal && !found)
            found = &each;
    }
    return found;
}

static Application bare(const std::string& program)
{
    return { .name = program, .plainName = program, .command = program };
}

std::optional<Application> best(const Applications& applications, const Surroundings& around)
{
    static const std::string standard = "xdg-terminal-exec";
    static const std::string alternative = "x-terminal-emulator";
    if (around.hasProgram(standard))
        return bare(standard);
    for (std::string_view desktops = around.desktops; !desktops.empty();) {
        const auto desktop = desktops.substr(0, desktops.find(':'));
        if (const auto* const found = ofDesktop(applications, desktop))
            return *found;
        desktops.remove_prefix(std::min(desktops.size(), desktop.size() + 1));
    }
    if (const auto* const found = anyOther(applications))
        return *found;
    return around.hasProgram(alternative) ? std::optional(bare(alternative)) : std::nullopt;
}

std::string_view executeOption(const Application& terminal)
{
    const auto* const found = known(terminal);
    return found ? found->option : usualOption;
}

}
