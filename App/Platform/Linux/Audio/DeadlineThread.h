// A thread whose work is waited for, though never beyond a deadline.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

class DeadlineThread final {
public:
    using Work = std::function<void()>;
    using Deadline = std::chrono::steady_clock::time_point;

    DeadlineThread() = default;
    // Work that is under way goes on, and nobody waits for it.
    ~DeadlineThread();
    DeadlineThread(const DeadlineThread&) = delete;
    DeadlineThread& operator=(const DeadlineThread&) = delete;

    // Work is done in turn and must own all that it touches: it may be late, and is never taken
    // back. False when it was not done in time, or when earlier work is late even now.
    bool run(const Work& work, Deadline deadline);
    // Without waiting.
    void leave(const Work& work);

private:
    struct Desk;

    static void serve(const std::shared_ptr<Desk>& desk);
    bool isStarted();

    std::shared_ptr<Desk> m_desk; // Shared with the thread, which may outlive this object.
};
