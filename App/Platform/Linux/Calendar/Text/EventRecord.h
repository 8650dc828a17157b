// What a calendar says of one event, or of one change to a repeated event.
#pragma once

#include "App/Platform/Linux/Calendar/Text/CivilTime.h"

#include <optional>
#include <string>
#include <vector>

struct EventRecord {
    // A start besides those of the rules; it may have an end of its own.
    struct ExtraStart {
        StatedTime start;
        std::optional<StatedTime> end = {};
        std::optional<StatedLength> length = {};
    };

    bool repeats() const { return !rules.empty() || !extraStarts.empty(); }

    std::string uid; // UTF-8 with faults, as all texts here.
    std::string title;
    std::string location;
    std::string notes;
    std::string url;
    StatedTime start;
    std::optional<StatedTime> end;
    std::optional<StatedLength> length;
    std::optional<StatedTime> replaces; // The start of the occurrence that this is instead of.
    bool replacesFollowing = false; // And of all after it.
    int sequence = 0; // The greater, the newer.
    std::vector<std::string> rules; // In capitals.
    std::vector<std::string> exceptionRules;
    std::vector<ExtraStart> extraStarts;
    std::vector<StatedTime> exceptions;
};
