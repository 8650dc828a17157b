// Files that are read whole and replaced whole, or not at all.
#pragma once

#include <QByteArray>
#include <QString>

namespace WholeFile {

enum class State {
    whole,
    missing,
    unfit, // Not a regular file, too large, or not ours to read.
    unreachable, // The disk or the system refuses; may pass.
};

struct Content {
    State state = State::missing;
    QByteArray bytes;
};

// Never waits for a writer, whatever stands in the file's place. A file of more than most bytes is
// unfit.
Content read(const QString& path, qint64 most);

// The old file stays as it is unless the new one is wholly on the disk; otherwise errno says why.
// A symbolic link is replaced itself. Readable by the user only.
bool replace(const QString& path, const QByteArray& bytes);

// Renames to path.bad, path.bad-1 and so on, never over another file.
bool setAside(const QString& path);

// Creates missing folders, the last one for the user only.
bool makeFolder(const QString& folder);

// The file that symbolic links lead to, there or not; path itself where they lead to no file.
QString behindLinks(const QString& path);

}
