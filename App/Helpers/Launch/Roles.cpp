#include "App/Helpers/Launch/Roles.h"

#include "App/Helpers/Launch/ApplicationNames.h"
#include "App/Helpers/Launch/Surroundings.h"
#include "App/Helpers/Launch/Terminals.h"

#include <algorithm>

namespace Roles {

// Sticky notes and plain notebooks before outliners, drawing pads and what needs an account.
static constexpr std::string_view notesPrograms[] = {
    "org.gnome.Notes.desktop",
    "bijiben.desktop",
    "org.gnome.Gnote.desktop",
    "gnote.desktop",
    "org.kde.knotes.desktop",
    "xfce4-notes.desktop",
    "sticky.desktop",
    "com.vixalien.sticky.desktop",
    "indicator-stickynotes.desktop",
    "xpad.desktop",
    "tomboy-ng.desktop",
    "tomboy.desktop",
    "org.kde.marknote.desktop",
    "io.posidon.Paper.desktop",
    "com.toolstack.Folio.desktop",
    "org.qownnotes.QOwnNotes.desktop",
    "PBE.QOwnNotes.desktop",
    "org.zim_wiki.Zim.desktop",
    "zim.desktop",
    "net.giuspen.cherrytree.desktop",
    "cherrytree.desktop",
    "org.kde.basket.desktop",
    "net.cozic.joplin_desktop.desktop",
    "joplin.desktop",
    "md.obsidian.Obsidian.desktop",
    "obsidian.desktop",
    "obsidian_obsidian.desktop",
    "com.simplenote.Simplenote.desktop",
    "simplenote.desktop",
    "org.standardnotes.standardnotes.desktop",
    "standard-notes.desktop",
    "com.logseq.Logseq.desktop",
    "com.github.flxzt.rnote.desktop",
    "com.github.xournalpp.xournalpp.desktop",
};

static const Application* withId(const Applications& applications, std::string_view id)
{
    const auto found = std::ranges::find(applications, id, &Application::id);
    return !id.empty() && found != applications.end() ? &*found : nullptr;
}

static bool isBrowser(const Application& application)
{
    return std::ranges::find(application.categories, "WebBrowser") != application.categories.end();
}

static bool isForNotes(const Application& application)
{
    static constexpr std::string_view words[] = { "note", "notes", "notebook", "note-taking",
        "notetaking", "note taking", "sticky notes" };
    const auto says = [](const std::string& word) {
        return std::ranges::find(words, ApplicationNames::folded(word)) != std::end(words);
    };
    return std::ranges::any_of(application.keywords, says)
        || std::ranges::any_of(application.categories, says);
}

static const Application* firstShown(
    const Applications& applications, bool (*fits)(const Application&))
{
    const auto found = std::ranges::find_if(
        applications, [&](const Application& each) { return each.isShown && fits(each); });
    return found != applications.end() ? &*found : nullptr;
}

static const Application* browser(const Applications& applications, const Surroundings& around)
{
    for (const char* const type : { "x-scheme-handler/https", "x-scheme-handler/http" }) {
        if (const auto* const found = withId(applications, around.defaultFor(type)))
            return found;
    }
    // An editor opens pages too, and is no browser for that.
    const auto* const ofPages = withId(applications, around.defaultFor("text/html"));
    return ofPages && isBrowser(*ofPages) ? ofPages : firstShown(applications, isBrowser);
}

static const Application* notes(const Applications& applications, const Surroundings& around)
{
    for (const auto id : notesPrograms) {
        const auto* const found = withId(applications, id);
        if (found && found->isShown)
            return found;
    }
    const auto* const any = firstShown(applications, isForNotes);
    return any ? any : withId(applications, around.defaultFor("text/plain"));
}

std::optional<Application> player(
    std::string_view name, const Applications& applications, const Surroundings& around)
{
    const auto part = ApplicationNames::folded(name);
    const Application* found = nullptr;
    if (part == "safari")
        found = browser(applications, around);
    else if (part == "notes")
        found = notes(applications, around);
    else if (part == "terminal")
        return Terminals::best(applications, around);
    return found ? std::optional(*found) : std::nullopt;
}

}
