// An application as its desktop entry describes it.
#pragma once

#include <string>
#include <vector>

struct Application {
    std::string id = {}; // As in org.gnome.Nautilus.desktop; empty for a program without an entry.
    std::string file = {}; // The entry's path.
    std::string name = {}; // In the user's language.
    std::string plainName = {};
    std::string command
        = {}; // Quoted and with field codes; empty for one started by a message only.
    std::string folder = {}; // Where to run; empty for the user's home.
    std::string icon = {};
    std::vector<std::string> categories = {};
    std::vector<std::string> keywords = {}; // In English and in the user's language.
    bool isShown = true;
    bool needsTerminal = false;
    bool takesMessages = false; // Started by a message on the session bus.
};

using Applications = std::vector<Application>;
