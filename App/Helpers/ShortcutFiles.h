// The executables that are the user's shortcuts, by their names.
#pragma once

#include <string>
#include <vector>

namespace ShortcutFiles {

// For the letters of all languages, whatever the user's own is.
void useUnicode();

struct Found {
    std::string path; // Empty: none.
    bool isExecutable = false;
};

// An executable in the shortcuts folder: of that very name, else of a name that differs in case
// only, else of the name with some extension, else of one that differs in both; the first in order
// where several do. Else of that very name in ~/.local/bin or on the PATH. A file that would be the
// one, were it executable, in the shortcuts folder hides those elsewhere.
Found find(const std::string& name);
// False for what would lead elsewhere.
bool isName(const std::string& name);
// The executables in the shortcuts folder, sorted, without hidden ones.
std::vector<std::string> names();

std::string home();
std::string folder();
// A path as people write it, with ~ for the home folder.
std::string shown(const std::string& path);
// The same, so that a shell understands it.
std::string typed(const std::string& path);
// What a terminal or a label would not show as a character is replaced; no more than that many
// characters are left.
std::string printable(const std::string& text, size_t most);

}
