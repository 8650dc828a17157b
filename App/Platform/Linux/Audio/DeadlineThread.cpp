#include "App/Platform/Linux/Audio/DeadlineThread.h"

#include "App/Platform/Linux/Background/SignalsBlocked.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

struct DeadlineThread::Desk {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Work> works;
    unsigned long left = 0; // How many were ever left here.
    unsigned long done = 0;
    bool isLate = false;
    bool isClosed = false;

    unsigned long take(const Work& work)
    {
        works.push_back(work);
        changed.notify_all();
        return ++left;
    }
};

DeadlineThread::~DeadlineThread()
{
    if (!m_desk)
        return;
    const std::lock_guard lock(m_desk->mutex);
    m_desk->isClosed = true;
    m_desk->changed.notify_all();
}

bool DeadlineThread::run(const Work& work, Deadline deadline)
{
    if (!isStarted())
        return false;
    auto& desk = *m_desk;
    std::unique_lock lock(desk.mutex);
    if (desk.isLate || std::chrono::steady_clock::now() >= deadline)
        return false;
    const auto number = desk.take(work);
    const bool inTime
        = desk.changed.wait_until(lock, deadline, [&] { return desk.done >= number; });
    desk.isLate = !inTime;
    return inTime;
}

void DeadlineThread::leave(const Work& work)
{
    if (!isStarted())
        return;
    const std::lock_guard lock(m_desk->mutex);
    m_desk->take(work);
}

void DeadlineThread::serve(const std::shared_ptr<Desk>& desk)
{
    std::unique_lock lock(desk->mutex);
    while (true) {
        desk->changed.wait(lock, [&] { return desk->isClosed || !desk->works.empty(); });
        if (desk->works.empty())
            return;
        // What the work owns ends here, like the work, and while nobody has to wait for it.
        auto work = std::move(desk->works.front());
        desk->works.pop_front();
        lock.unlock();
        work();
        work = nullptr;
        lock.lock();
        ++desk->done;
        desk->isLate = desk->isLate && !desk->works.empty();
        desk->changed.notify_all();
    }
}

bool DeadlineThread::isStarted()
{
    if (m_desk)
        return true;
    const SignalsBlocked blocked;
    try {
        auto desk = std::make_shared<Desk>();
        std::thread(serve, desk).detach();
        m_desk = std::move(desk);
    } catch (const std::system_error&) {
        // No thread to be had now: the next attempt may have more luck.
    }
    return m_desk != nullptr;
}
