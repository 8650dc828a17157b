// One unfolded line of iCalendar text, taken apart: NAME;PARAMETER=value:value.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// Views into the line it was made from.
struct ContentLine {
    static std::optional<ContentLine> parse(std::string_view line);

    // Names are the same in capitals and small letters.
    static bool isSame(std::string_view name, std::string_view upperCaseName);

    static std::string inCapitals(std::string_view text);

    bool isNamed(std::string_view upperCaseName) const { return isSame(name, upperCaseName); }
    // Without its quotes; empty where there is none of that name.
    std::string_view parameter(std::string_view upperCaseName) const;
    // The value with its escapes resolved.
    std::string text() const { return unescaped(value); }
    static std::string unescaped(std::string_view value);

    std::string_view name;
    std::string_view parameters; // With the semicolon before each.
    std::string_view value;
};
