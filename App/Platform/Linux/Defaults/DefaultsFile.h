// The defaults file and the last good copy beside it, shared with other processes of the program.
#pragma once

#include "App/Platform/Linux/Defaults/DefaultsCodec.h"

#include <QString>

#include <optional>

class DefaultsFile final {
public:
    using Entries = DefaultsCodec::Entries;

    explicit DefaultsFile(const QString& path);

    QString path() const { return m_path; }

    // The file as it stands; absent when it is missing, damaged or out of reach.
    std::optional<Entries> read() const;
    // Something stands in the file's place that cannot be read as defaults.
    bool isDamaged() const;
    std::optional<Entries> readLastGood() const;

    // Lays the changes over the file (a lost one: over the last good copy, failing that over
    // otherwise) and returns what the file holds then; absent when the disk still holds the old.
    // A damaged file is kept aside. Blocks for the disk and the lock: not for the main thread.
    std::optional<Entries> merge(const Entries& changes, const Entries& otherwise) const;

private:
    std::optional<Entries> base(const QString& target, const Entries& otherwise) const;

    QString m_path;
};
