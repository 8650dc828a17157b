// Folders with all that is below them, as far as that is sensible.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSet>

namespace FolderTree {

constexpr int deepest = 16; // A root is at 0.

struct Plan {
    QList<QByteArray> readable; // Those of the roots that can be read.
    bool isWhole = true; // False where one of the roots is there but cannot be read.
    // By path: the roots and folders below, and of roots that are missing the folder where they
    // or what leads to them would appear, with the name there.
    QHash<QByteArray, QSet<QByteArray>> folders;
};

// Reads the disk, which may take its time. Follows links, and no folder twice.
Plan plan(const QList<QByteArray>& roots);

}
