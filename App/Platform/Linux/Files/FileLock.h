// One process at a time, for as long as this lives; the system lets go when the process dies.
#pragma once

#include <QString>

#include <chrono>

class FileLock final {
public:
    // Waits no longer than patience. Blocks: not for the main thread.
    FileLock(const QString& path, std::chrono::milliseconds patience);
    ~FileLock();
    Q_DISABLE_COPY_MOVE(FileLock)

    bool isHeld() const { return m_held; }

private:
    bool acquire(std::chrono::milliseconds patience) const;

    int m_descriptor;
    bool m_held;
};
