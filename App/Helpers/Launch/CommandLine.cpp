#include "App/Helpers/Launch/CommandLine.h"

#include "App/Helpers/Launch/Glib.h"

#include <algorithm>
#include <string_view>

namespace CommandLine {

static std::string baseName(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

// The first from there on that is no option, nor a variable that is set.
static size_t nextWord(const Arguments& arguments, size_t from)
{
    static constexpr std::string_view takesAnother[] = { "-u", "-C", "--unset", "--chdir" };
    while (from < arguments.size()) {
        const auto& word = arguments[from];
        if (!word.starts_with('-') && word.find('=') == std::string::npos)
            break;
        from += std::ranges::find(takesAnother, word) == std::end(takesAnother) ? 1 : 2;
    }
    return from;
}

static std::vector<std::string> packaged(const Arguments& arguments, size_t run)
{
    static constexpr std::string_view command = "--command=";
    std::vector<std::string> names;
    if (run >= arguments.size() || arguments[run] != "run")
        return names;
    const auto package = nextWord(arguments, run + 1);
    for (auto each = run + 1; each < std::min(package, arguments.size()); ++each) {
        if (arguments[each].starts_with(command))
            names.push_back(baseName(arguments[each].substr(command.size())));
    }
    if (package < arguments.size())
        names.push_back(arguments[package]);
    return names;
}

Arguments split(const std::string& command)
{
    char** arguments = nullptr;
    g_shell_parse_argv(command.c_str(), nullptr, &arguments, nullptr);
    return Glib::taken(arguments);
}

std::vector<std::string> programs(const Arguments& arguments)
{
    static constexpr std::string_view shells[] = { "sh", "bash", "dash" };
    size_t at = 0;
    while (at < arguments.size()) {
        const auto name = baseName(arguments[at]);
        if (name == "flatpak" || name == "snap") {
            auto names = packaged(arguments, at + 1);
            return names.empty() ? std::vector { name } : names;
        }
        if (name != "env" && name != "pkexec") {
            const bool isShell = std::ranges::find(shells, name) != std::end(shells);
            return isShell && at + 1 < arguments.size() ? std::vector<std::string>()
                                                        : std::vector { name };
        }
        at = nextWord(arguments, at + 1);
    }
    return {};
}

static bool isAddress(char code)
{
    return std::string_view("fFuU").find(code) != std::string::npos;
}

static std::string value(char code, const Fields& fields)
{
    switch (code) {
    case 'f':
    case 'F':
        return fields.path.empty() ? fields.address : fields.path;
    case 'u':
    case 'U':
        return fields.address;
    case 'c':
        return fields.name;
    case 'k':
        return fields.file;
    case '%':
        return "%";
    default: // Those of old have no meaning any more.
        return {};
    }
}

Arguments expanded(const Arguments& arguments, const Fields& fields)
{
    Arguments all;
    bool isHandedOn = fields.address.empty();
    for (const auto& argument : arguments) {
        if (argument == "%i") {
            if (!fields.icon.empty())
                all.insert(all.end(), { "--icon", fields.icon });
            continue;
        }
        std::string text;
        for (size_t at = 0; at < argument.size(); ++at) {
            if (argument[at] != '%') {
                text += argument[at];
            } else if (++at < argument.size()) {
                isHandedOn = isHandedOn || isAddress(argument[at]);
                text += value(argument[at], fields);
            }
        }
        if (!text.empty() || argument.empty())
            all.push_back(std::move(text));
    }
    if (!isHandedOn)
        all.push_back(value('f', fields));
    return all;
}

}
