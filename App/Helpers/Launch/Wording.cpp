#include "App/Helpers/Launch/Wording.h"

#include "App/Helpers/Launch/Glib.h"

#include <algorithm>

namespace Wording {

// Characters.
static constexpr size_t longestName = 60;
static constexpr size_t longestAddress = 500;

static bool isReadable(gunichar character)
{
    switch (g_unichar_type(character)) {
    case G_UNICODE_CONTROL:
    case G_UNICODE_FORMAT: // Such as those that turn the direction of what follows.
    case G_UNICODE_LINE_SEPARATOR:
    case G_UNICODE_PARAGRAPH_SEPARATOR:
        return false;
    default:
        return true;
    }
}

static std::string readable(std::string_view text, size_t most)
{
    // Enough for any characters that are kept, and no more work than that for a long text.
    text = text.substr(0, std::min(text.size(), most * 8));
    const auto valid
        = Glib::taken(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    std::string all;
    size_t count = 0;
    for (const char* at = valid.c_str(); *at != '\0'; at = g_utf8_next_char(at)) {
        if (++count > most)
            return all + "…";
        if (isReadable(g_utf8_get_char(at)))
            all.append(at, static_cast<size_t>(g_utf8_next_char(at) - at));
        else if (!all.ends_with(' '))
            all += ' ';
    }
    return all;
}

static bool isBlank(std::string_view text)
{
    return readable(text, longestName).find_first_not_of(' ') == std::string::npos;
}

std::string quoted(std::string_view text)
{
    return "“" + readable(text, longestName) + "”";
}

std::string notFound(std::string_view name, const std::vector<std::string>& similar)
{
    if (isBlank(name))
        return "Unable to find an application without a name.";
    auto text = "Unable to find an application named " + quoted(name) + ".";
    for (size_t at = 0; at < similar.size(); ++at) {
        const bool isLast = at + 1 == similar.size();
        text += at == 0 ? " Did you mean " : isLast ? " or " : ", ";
        text += quoted(similar[at]);
    }
    return similar.empty() ? text : text + '?';
}

std::string notStarted(std::string_view name, std::string_view reason)
{
    return quoted(name) + " could not be started: " + std::string(reason);
}

std::string notOpened(std::string_view address, std::string_view reason)
{
    return readable(address, longestAddress) + ": " + std::string(reason);
}

}
