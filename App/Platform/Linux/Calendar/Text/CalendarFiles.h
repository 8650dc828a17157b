// Files of calendars, found in folders and read piece by piece.
#pragma once

#include "App/Platform/Linux/Calendar/Text/TimeBudget.h"

#include <QStringList>

#include <functional>
#include <string_view>
#include <vector>

namespace CalendarFiles {

// False ends the reading of the file.
using TakePiece = std::function<bool(std::string_view bytes)>;

struct Found {
    std::vector<QByteArray> files;
    bool isComplete = true; // False where something may not be looked at, or was too much.
};

// The files themselves, and *.ics in folders and their folders, but nothing hidden there. Small
// files first: what a huge one takes up is then not taken from them.
Found find(const QStringList& paths, const TimeBudget& budget);

// False for what is no regular file or cannot be read. Never waits for a writer.
bool read(const QByteArray& file, const TakePiece& take);

}
