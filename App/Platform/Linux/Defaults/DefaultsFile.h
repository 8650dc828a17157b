// The defaults file and the last good copy beside it, shared with other processes of the program.
#pragma once

#include "App/Platform/Linux/Defaults/DefaultsCodec.h"

#include <QString>

#include <optional>

class DefaultsFile final {
public:
    using Entries = DefaultsCodec::Entries;
    using Values = DefaultsCodec::Values;

    // A larger file is taken for damaged: one is read at start, which must cost neither time nor
    // memory. Ten thousand launcher buttons take some 4 MiB.
    static constexpr qint64 maximumSize = qint64 { 16 } * 1024 * 1024; // Bytes

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
    std::optional<Entries> merge(const Entries& changes, const Values& otherwise) const;

private:
    struct Base {
        Entries entries; // What the changes are laid over.
        Entries stored; // What the file holds by now.
    };

    std::optional<Base> base(const QString& target, const Values& otherwise) const;

    QString m_path;
};
