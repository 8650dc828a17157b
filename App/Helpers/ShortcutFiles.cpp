#include "App/Helpers/ShortcutFiles.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdlib>
#include <cwchar>
#include <cwctype>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr wchar_t replacement = L'\uFFFD';

// What cannot be decoded becomes one replacement a byte.
std::wstring decoded(const std::string& text)
{
    std::wstring characters;
    mbstate_t state {};
    for (size_t at = 0; at < text.size();) {
        wchar_t character = 0;
        const auto size = std::mbrtowc(&character, text.data() + at, text.size() - at, &state);
        const bool isValid = size <= text.size() - at; // Errors are the largest numbers.
        characters += isValid && size > 0 ? character : replacement;
        at += isValid ? std::max<size_t>(size, 1) : 1;
        if (!isValid)
            state = {};
    }
    return characters;
}

std::string encoded(const std::wstring& characters)
{
    std::string text;
    mbstate_t state {};
    std::array<char, 16> bytes {};
    for (const auto character : characters) {
        const auto size = std::wcrtomb(bytes.data(), character, &state);
        if (size <= bytes.size())
            text.append(bytes.data(), size);
        else
            text += '?';
    }
    return text;
}

// By way of the capitals, as letters may have two small forms.
std::wstring folded(const std::string& text)
{
    auto characters = decoded(text);
    for (auto& character : characters)
        character
            = static_cast<wchar_t>(std::towlower(std::towupper(static_cast<wint_t>(character))));
    return characters;
}

std::string stem(const std::string& name)
{
    const auto dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

bool isFile(const std::string& path)
{
    struct stat status { };
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool isExecutable(const std::string& path)
{
    return faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

std::vector<std::string> sortedFiles(const std::string& folder)
{
    std::vector<std::string> files;
    const std::unique_ptr<DIR, int (*)(DIR*)> opened(opendir(folder.c_str()), closedir);
    while (const auto* const entry = opened ? readdir(opened.get()) : nullptr) {
        if (isFile(folder + '/' + entry->d_name))
            files.emplace_back(entry->d_name);
    }
    std::ranges::sort(files);
    return files;
}

// The better of two has the lower rank; absent names have none.
int rank(const std::string& file, const std::string& name, const std::wstring& foldedName)
{
    if (file == name)
        return 0;
    if (folded(file) == foldedName)
        return 1;
    if (file.front() == '.')
        return -1;
    if (stem(file) == name)
        return 2;
    return folded(stem(file)) == foldedName ? 3 : -1;
}

ShortcutFiles::Found findInFolder(const std::string& name)
{
    constexpr size_t ranks = 4;
    const auto folder = ShortcutFiles::folder() + '/';
    const auto foldedName = folded(name);
    std::array<ShortcutFiles::Found, 2 * ranks> found;
    for (const auto& file : sortedFiles(folder)) {
        const int rankOfIt = rank(file, name, foldedName);
        if (rankOfIt < 0)
            continue;
        const auto path = folder + file;
        const bool runs = isExecutable(path);
        auto& place = found.at(static_cast<size_t>(rankOfIt) + (runs ? 0 : ranks));
        if (place.path.empty())
            place = { path, runs };
    }
    const auto best
        = std::ranges::find_if(found, [](const auto& each) { return !each.path.empty(); });
    return best == found.end() ? ShortcutFiles::Found() : *best;
}

std::vector<std::string> programFolders()
{
    std::vector<std::string> folders { ShortcutFiles::home() + "/.local/bin/" };
    auto rest = variable("PATH");
    if (rest.empty())
        rest = "/usr/local/bin:/usr/bin:/bin";
    while (!rest.empty()) {
        const auto colon = std::min(rest.find(':'), rest.size());
        // A relative one would depend on where Corvella was started.
        if (rest.front() == '/')
            folders.push_back(rest.substr(0, colon) + '/');
        rest.erase(0, colon + 1);
    }
    return folders;
}

}

void ShortcutFiles::useUnicode()
{
    std::setlocale(LC_CTYPE, "C.UTF-8");
}

ShortcutFiles::Found ShortcutFiles::find(const std::string& name)
{
    auto found = findInFolder(name);
    if (!found.path.empty())
        return found;
    for (const auto& folder : programFolders()) {
        const auto path = folder + name;
        if (!isFile(path))
            continue;
        if (isExecutable(path))
            return { path, true };
        if (found.path.empty())
            found = { path, false };
    }
    return found;
}

bool ShortcutFiles::isName(const std::string& name)
{
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

std::vector<std::string> ShortcutFiles::names()
{
    auto files = sortedFiles(folder());
    std::erase_if(files, [](const std::string& file) {
        return file.front() == '.' || !isExecutable(folder() + '/' + file);
    });
    return files;
}

std::string ShortcutFiles::home()
{
    auto home = variable("HOME");
    if (!home.empty() && home.front() == '/')
        return home;
    const auto* const user = getpwuid(getuid());
    return user ? user->pw_dir : "/";
}

std::string ShortcutFiles::folder()
{
    const auto data = variable("XDG_DATA_HOME");
    const bool isAbsolute = !data.empty() && data.front() == '/';
    return (isAbsolute ? data : home() + "/.local/share") + "/corvella/shortcuts";
}

std::string ShortcutFiles::shown(const std::string& path)
{
    const auto start = home() + '/';
    const auto text = path.starts_with(start) ? "~/" + path.substr(start.size()) : path;
    return printable(text, text.size());
}

std::string ShortcutFiles::typed(const std::string& path)
{
    constexpr auto plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-+/";
    auto text = shown(path);
    const size_t start = text.starts_with("~/") ? 2 : 0;
    if (text.find_first_not_of(plain, start) == std::string::npos)
        return text;
    auto word = text.substr(0, start) + '\'';
    for (const char character : text.substr(start))
        word += character == '\'' ? "'\\''" : std::string(1, character);
    return word + '\'';
}

std::string ShortcutFiles::printable(const std::string& text, size_t most)
{
    auto characters = decoded(text);
    std::ranges::replace_if(
        characters,
        [](wchar_t character) { return !std::iswprint(static_cast<wint_t>(character)); },
        replacement);
    if (characters.size() > most)
        characters = characters.substr(0, most - 1) + L'…';
    return encoded(characters);
}
