#include "App/Platform/Linux/Defaults/DefaultsWorker.h"

#include "App/Platform/Linux/Background/SignalsBlocked.h"
#include "App/Platform/Linux/Defaults/DefaultsFile.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto firstPause = std::chrono::milliseconds(1s);
constexpr auto longestPause = std::chrono::milliseconds(60s);
constexpr auto farewell = 1s;

void lay(DefaultsCodec::Values& values, const DefaultsCodec::Values& over)
{
    for (auto value = over.begin(); value != over.end(); ++value)
        values.insert(value.key(), value.value());
}

}

struct DefaultsWorker::Shared {
    Shared(const DefaultsFile& defaults, const Values& values, std::function<void()> notify)
        : file(defaults)
        , known(values)
        , arrived(std::move(notify))
    {
    }

    bool hasWork() const { return !pending.isEmpty() || rereads || repairs; }
    bool work(std::unique_lock<std::mutex>& lock);
    bool write(std::unique_lock<std::mutex>& lock);
    void look(std::unique_lock<std::mutex>& lock);
    void sort(const DefaultsFile::Entries& changes, const DefaultsFile::Entries& entries);
    void deliver(const Values& values);

    const DefaultsFile file; // All else only under the mutex.
    std::mutex mutex;
    std::condition_variable wake;
    std::condition_variable rested;
    Values pending;
    Values writing;
    Values known;
    Values unstorable; // Too large for the file: good for as long as the program runs.
    std::optional<Values> latest;
    std::function<void()> arrived;
    bool rereads = false;
    bool repairs = false;
    bool nudged = false;
    bool closing = false;
    bool running = false;
};

DefaultsWorker::DefaultsWorker(
    const DefaultsFile& file, const Values& values, std::function<void()> arrived)
    : m_shared(std::make_shared<Shared>(file, values, std::move(arrived)))
{
}

DefaultsWorker::~DefaultsWorker()
{
    std::unique_lock lock(m_shared->mutex);
    m_shared->closing = true;
    m_shared->arrived = nullptr;
    m_shared->wake.notify_all();
    m_shared->rested.wait_for(lock, farewell, [this] { return !m_shared->running; });
}

void DefaultsWorker::store(const QString& key, const UserDefaults::Value& value)
{
    const std::lock_guard lock(m_shared->mutex);
    m_shared->pending.insert(key, value);
    m_shared->known.insert(key, value);
    start();
}

void DefaultsWorker::reread()
{
    const std::lock_guard lock(m_shared->mutex);
    m_shared->rereads = true;
    start();
}

void DefaultsWorker::repair()
{
    const std::lock_guard lock(m_shared->mutex);
    m_shared->repairs = true;
    start();
}

std::optional<DefaultsWorker::Values> DefaultsWorker::collect()
{
    const std::lock_guard lock(m_shared->mutex);
    auto values = std::exchange(m_shared->latest, std::nullopt);
    if (values) {
        lay(*values, m_shared->unstorable);
        lay(*values, m_shared->writing);
        lay(*values, m_shared->pending);
    }
    return values;
}

void DefaultsWorker::start()
{
    m_shared->nudged = true;
    m_shared->wake.notify_all();
    if (m_shared->running)
        return;
    const SignalsBlocked blocked;
    try {
        std::thread(run, m_shared).detach();
        m_shared->running = true;
    } catch (const std::system_error&) {
        // No thread to be had now: what is pending goes with the next change.
    }
}

void DefaultsWorker::run(const std::shared_ptr<Shared>& shared)
{
    std::unique_lock lock(shared->mutex);
    auto pause = firstPause;
    while (shared->hasWork()) {
        shared->nudged = false;
        if (shared->work(lock)) {
            pause = firstPause;
            continue;
        }
        if (shared->closing)
            break;
        shared->wake.wait_for(lock, pause, [&shared] { return shared->nudged || shared->closing; });
        pause = std::min(pause * 2, longestPause);
    }
    shared->running = false;
    shared->rested.notify_all();
}

bool DefaultsWorker::Shared::work(std::unique_lock<std::mutex>& lock)
{
    if (rereads)
        look(lock);
    return (pending.isEmpty() && !repairs) || write(lock);
}

bool DefaultsWorker::Shared::write(std::unique_lock<std::mutex>& lock)
{
    writing = std::exchange(pending, {});
    const bool repairing = std::exchange(repairs, false);
    const auto values = writing;
    const auto otherwise = known;
    // What is large takes its time also where no disk is waited for.
    lock.unlock();
    const auto changes = DefaultsCodec::encodeAll(values);
    const auto entries = file.merge(changes, otherwise);
    const auto stored = entries ? DefaultsCodec::decodeAll(*entries) : Values();
    lock.lock();
    if (entries) {
        sort(changes, *entries);
        deliver(stored);
        return true;
    }
    lay(writing, pending); // What was set meanwhile is newer.
    pending = std::exchange(writing, {});
    repairs = repairs || repairing;
    return false;
}

void DefaultsWorker::Shared::sort(
    const DefaultsFile::Entries& changes, const DefaultsFile::Entries& entries)
{
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        if (entries.value(change.key()) == change.value())
            unstorable.remove(change.key());
        else
            unstorable.insert(change.key(), *writing.constFind(change.key()));
    }
    writing.clear();
}

void DefaultsWorker::Shared::look(std::unique_lock<std::mutex>& lock)
{
    rereads = false;
    lock.unlock();
    const auto entries = file.read();
    const auto stored = entries ? DefaultsCodec::decodeAll(*entries) : Values();
    lock.lock();
    if (entries)
        deliver(stored);
}

void DefaultsWorker::Shared::deliver(const Values& values)
{
    latest = values;
    known = values;
    lay(known, pending);
    if (arrived)
        arrived();
}
