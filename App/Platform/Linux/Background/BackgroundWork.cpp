#include "App/Platform/Linux/Background/BackgroundWork.h"

#include "App/Platform/Linux/Background/SignalsBlocked.h"

#include <mutex>
#include <system_error>
#include <thread>

struct BackgroundWork::Desk {
    std::mutex mutex;
    BackgroundWork* owner;
};

BackgroundWork::BackgroundWork()
    : m_desk(std::make_shared<Desk>())
{
    m_desk->owner = this;
}

BackgroundWork::~BackgroundWork()
{
    const std::lock_guard lock(m_desk->mutex);
    m_desk->owner = nullptr;
}

void BackgroundWork::start(const std::function<Finish()>& work)
{
    if (m_isUnderWay)
        return;
    const SignalsBlocked blocked;
    try {
        std::thread(run, m_desk, work).detach();
        m_isUnderWay = true;
    } catch (const std::system_error&) {
        // No thread to be had now: the next start may have more luck.
    }
}

void BackgroundWork::run(const std::shared_ptr<Desk>& desk, const std::function<Finish()>& work)
{
    const auto rest = work();
    const std::lock_guard lock(desk->mutex);
    auto* owner = desk->owner;
    if (owner)
        QMetaObject::invokeMethod(owner, [owner, rest] { owner->finish(rest); });
}

void BackgroundWork::finish(const Finish& rest)
{
    m_isUnderWay = false;
    rest();
}
