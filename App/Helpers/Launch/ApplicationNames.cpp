#include "App/Helpers/Launch/ApplicationNames.h"

#include "App/Helpers/Launch/CommandLine.h"
#include "App/Helpers/Launch/Glib.h"

#include <algorithm>
#include <array>
#include <functional>
#include <numeric>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

namespace ApplicationNames {

namespace {

// What is longer is no name.
constexpr size_t longestName = 1000; // Bytes.
constexpr size_t mostSimilar = 3;
constexpr std::string_view suffix = ".desktop";

using Names = std::vector<std::string>;

Names localizedName(const Application& application)
{
    return { application.name };
}

Names plainName(const Application& application)
{
    return { application.plainName };
}

std::string stem(const std::string& id)
{
    return id.ends_with(suffix) ? id.substr(0, id.size() - suffix.size()) : id;
}

Names ids(const Application& application)
{
    const auto name = stem(application.id);
    return { name, application.id, name.substr(name.rfind('.') + 1) };
}

Names programs(const Application& application)
{
    return CommandLine::programs(CommandLine::split(application.command));
}

constexpr std::array kinds { localizedName, plainName, ids, programs };

std::string trimmed(std::string_view name)
{
    auto text = Glib::taken(g_utf8_make_valid(name.data(), static_cast<gssize>(name.size())));
    const char* begin = text.data();
    const char* end = begin + text.size();
    while (begin < end && g_unichar_isspace(g_utf8_get_char(begin)))
        begin = g_utf8_next_char(begin);
    while (begin < end && g_unichar_isspace(g_utf8_get_char(g_utf8_prev_char(end))))
        end = g_utf8_prev_char(end);
    return { begin, end };
}

std::string normalized(const std::string& text)
{
    return Glib::taken(g_utf8_normalize(text.c_str(), -1, G_NORMALIZE_NFKC));
}

// The shortest name, and of these the first by id.
class Best final {
public:
    void take(const Application& application)
    {
        const auto isBetter = [&] {
            return std::tuple(application.name.size(), std::string_view(application.id))
                < std::tuple(m_best->name.size(), std::string_view(m_best->id));
        };
        if (!m_best || isBetter())
            m_best = &application;
    }

    const Application* get() const { return m_best; }

private:
    const Application* m_best = nullptr;
};

using Matches = std::function<bool(const std::string&)>;

const Application* bestOf(const Applications& applications, bool shown,
    Names (*names)(const Application&), const Matches& matches)
{
    Best best;
    for (const auto& application : applications) {
        if (application.isShown == shown && std::ranges::any_of(names(application), matches))
            best.take(application);
    }
    return best.get();
}

// Where the last part of an id in reverse order of domains begins: all of org.gnome is no name.
size_t lastPart(const std::string& name)
{
    const auto text = stem(name);
    const bool isReverse
        = std::ranges::count(text, '.') >= 2 && text.find(' ') == std::string::npos;
    return isReverse ? text.rfind('.') + 1 : 0;
}

// Of letters put in, left out, replaced, or changed with their neighbour.
size_t distance(const std::u32string& one, const std::u32string& other)
{
    std::vector<size_t> before;
    std::vector<size_t> last(other.size() + 1);
    std::iota(last.begin(), last.end(), size_t(0));
    for (size_t row = 1; row <= one.size(); ++row) {
        std::vector<size_t> next { row };
        for (size_t column = 1; column <= other.size(); ++column) {
            const bool isSame = one[row - 1] == other[column - 1];
            auto least = std::min(
                { last[column] + 1, next[column - 1] + 1, last[column - 1] + (isSame ? 0 : 1) });
            if (row > 1 && column > 1 && one[row - 1] == other[column - 2]
                && one[row - 2] == other[column - 1])
                least = std::min(least, before[column - 2] + 1);
            next.push_back(least);
        }
        before = std::exchange(last, std::move(next));
    }
    return last.back();
}

std::u32string letters(const std::string& text)
{
    glong count = 0;
    auto* const all = g_utf8_to_ucs4_fast(text.c_str(), static_cast<glong>(text.size()), &count);
    std::u32string copy(all, all + count);
    g_free(all);
    return copy;
}

// Low for close; absent where nobody would take one for the other.
std::optional<size_t> farness(const std::string& wanted, const std::string& name)
{
    const auto one = letters(wanted);
    const auto other = letters(name);
    const auto longer = std::max(one.size(), other.size());
    if (one.size() >= 3 && other.size() >= 3
        && (one.starts_with(other) || (' ' + name).find(' ' + wanted) != std::string::npos))
        return 1;
    const auto changes = distance(one, other);
    return changes * 3 <= longer ? std::optional(changes) : std::nullopt;
}

}

std::string folded(std::string_view name)
{
    const auto text = normalized(trimmed(name));
    return normalized(Glib::taken(g_utf8_casefold(text.c_str(), -1)));
}

const Application* exact(const Applications& applications, std::string_view name, bool shown)
{
    if (name.size() > longestName)
        return nullptr;
    const auto wanted = trimmed(name);
    const auto key = folded(name);
    if (key.empty())
        return nullptr;
    for (const auto kind : kinds) {
        if (const auto* const found
            = bestOf(applications, shown, kind, [&](const auto& each) { return each == wanted; }))
            return found;
        if (const auto* const found = bestOf(applications, shown, kind, [&](const auto& each) {
                return each.size() <= longestName && folded(each) == key;
            }))
            return found;
    }
    return nullptr;
}

const Application* prefixed(const Applications& applications, std::string_view name, bool shown)
{
    if (name.size() > longestName)
        return nullptr;
    const auto key = folded(name);
    const auto matches = [&](const std::string& each) {
        return each.size() <= longestName && key.size() > lastPart(each)
            && folded(each).starts_with(key);
    };
    for (const auto kind : kinds) {
        if (const auto* const found = bestOf(applications, shown, kind, matches))
            return found;
    }
    return nullptr;
}

std::vector<std::string> similar(const Applications& applications, std::string_view name)
{
    if (name.size() > longestName)
        return {};
    const auto key = folded(name);
    std::set<std::pair<size_t, std::string>> close;
    for (const auto& application : applications) {
        const bool isName = application.isShown && application.name.size() <= longestName;
        if (const auto far = isName ? farness(key, folded(application.name)) : std::nullopt)
            close.emplace(*far, application.name);
    }
    std::vector<std::string> names;
    for (const auto& [far, each] : close) {
        if (names.size() < mostSimilar && std::ranges::find(names, each) == names.end())
            names.push_back(each);
    }
    return names;
}

}
