#include "App/Platform/Linux/Calendar/Text/ContentLine.h"

#include <algorithm>

namespace {

constexpr char upper(char letter)
{
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

// Where it stands outside quotes; the text's size where it does not. A quote that is never closed
// is taken for a plain character.
std::size_t findUnquoted(std::string_view text, char wanted)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == wanted)
            return i;
        const auto closing = text[i] == '"' ? text.find('"', i + 1) : std::string_view::npos;
        if (closing != std::string_view::npos)
            i = closing;
    }
    return text.size();
}

}

std::optional<ContentLine> ContentLine::parse(std::string_view line)
{
    const auto nameSize = line.find_first_of(";:");
    if (nameSize == std::string_view::npos)
        return {};
    const auto rest = line.substr(nameSize);
    const auto colon = findUnquoted(rest, ':');
    if (colon == rest.size())
        return {};
    return ContentLine { line.substr(0, nameSize), rest.substr(0, colon), rest.substr(colon + 1) };
}

bool ContentLine::isSame(std::string_view name, std::string_view upperCaseName)
{
    return std::ranges::equal(name, upperCaseName, {}, upper);
}

std::string ContentLine::inCapitals(std::string_view text)
{
    std::string capitals(text);
    std::ranges::transform(capitals, capitals.begin(), upper);
    return capitals;
}

std::string_view ContentLine::parameter(std::string_view upperCaseName) const
{
    auto rest = parameters;
    while (!rest.empty()) {
        rest.remove_prefix(1);
        const auto one = rest.substr(0, findUnquoted(rest, ';'));
        rest.remove_prefix(one.size());
        const auto equalSign = one.find('=');
        if (equalSign == std::string_view::npos || !isSame(one.substr(0, equalSign), upperCaseName))
            continue;
        const auto given = one.substr(equalSign + 1);
        const bool isQuoted = given.size() >= 2 && given.front() == '"' && given.back() == '"';
        return isQuoted ? given.substr(1, given.size() - 2) : given;
    }
    return {};
}

std::string ContentLine::unescaped(std::string_view value)
{
    std::string plain;
    plain.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        const bool isEscape = value[i] == '\\' && i + 1 < value.size();
        const char next = isEscape ? value[i + 1] : '\0';
        const bool isLineBreak = next == 'n' || next == 'N';
        if (isLineBreak || next == ',' || next == ';' || next == '\\') {
            plain += isLineBreak ? '\n' : next;
            ++i;
        } else {
            plain += value[i];
        }
    }
    return plain;
}
