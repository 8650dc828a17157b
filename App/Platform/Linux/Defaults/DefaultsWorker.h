// Takes changes to the defaults file on a thread of its own that lives only while there are any.
#pragma once

#include "App/Platform/Linux/Defaults/DefaultsCodec.h"

#include <QString>

#include <chrono>
#include <functional>
#include <memory>

class DefaultsFile;

class DefaultsWorker final {
public:
    using Values = DefaultsCodec::Values;

    // Calls arrived, on the worker's thread, once there is something to collect.
    DefaultsWorker(const DefaultsFile& file, const Values& values, std::function<void()> arrived);
    // Leaves off after a second at most; a disk that hangs longer keeps the old values.
    ~DefaultsWorker();
    Q_DISABLE_COPY_MOVE(DefaultsWorker)

    // Tried again, ever more rarely, for as long as the disk refuses.
    void store(const QString& key, const UserDefaults::Value& value);
    void reread();
    // Moves a damaged file aside and puts the last known values in its place.
    void repair();

    // What the file held last, under the changes that have not reached it; absent when not new.
    std::optional<Values> collect();

private:
    struct Shared;

    static void run(const std::shared_ptr<Shared>& shared);
    void start();

    // Shared with the thread, which outlives this object when the disk hangs.
    std::shared_ptr<Shared> m_shared;
};
