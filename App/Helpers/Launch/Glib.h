// What GLib hands out, owned or copied.
#pragma once

#include <glib.h>

#include <memory>
#include <string>
#include <vector>

namespace Glib {

struct Freed {
    void operator()(char* text) const { g_free(text); }
    void operator()(char** texts) const { g_strfreev(texts); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
};
using Error = std::unique_ptr<GError, Freed>;
using KeyFile = std::unique_ptr<GKeyFile, Freed>;

// Empty for none.
inline std::string taken(char* text)
{
    const std::unique_ptr<char, Freed> owned(text);
    return text ? std::string(text) : std::string();
}

inline std::vector<std::string> taken(char** texts)
{
    const std::unique_ptr<char*, Freed> owned(texts);
    std::vector<std::string> copies;
    for (auto** each = texts; each && *each; ++each)
        copies.emplace_back(*each);
    return copies;
}

}
