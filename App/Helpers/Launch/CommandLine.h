// The command line of a desktop entry.
#pragma once

#include <string>
#include <vector>

namespace CommandLine {

using Arguments = std::vector<std::string>;

// With the quotes taken away; empty when they do not match.
Arguments split(const std::string& command);

// The names of the program that is meant, and of the package that it is in: what is only there to
// start another program has none.
std::vector<std::string> programs(const Arguments& arguments);

struct Fields {
    std::string address = {}; // What to open; empty for nothing.
    std::string path = {}; // The same as a path; empty where it has none.
    std::string name = {};
    std::string icon = {};
    std::string file = {}; // The entry's own.
};

// With the field codes replaced.
Arguments expanded(const Arguments& arguments, const Fields& fields);

}
