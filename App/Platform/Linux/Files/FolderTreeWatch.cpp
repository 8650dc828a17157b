#include "App/Platform/Linux/Files/FolderTreeWatch.h"

#include "App/Platform/Linux/Files/InotifyEvents.h"

#include <QFile>

#include <chrono>
#include <unistd.h>
#include <utility>

namespace {

// Creation counts because a file that is linked into the folder is never written there.
constexpr uint32_t anything = IN_CLOSE_WRITE | IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE
    | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr uint32_t appearance = IN_CREATE | IN_MOVED_TO | IN_ATTRIB;

}

class FolderTreeWatch::Descriptor final {
public:
    Descriptor() = default;
    Q_DISABLE_COPY_MOVE(Descriptor)

    ~Descriptor()
    {
        if (number >= 0)
            ::close(number);
    }

    const int number = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
};

FolderTreeWatch::FolderTreeWatch(const QStringList& roots)
    : m_descriptor(std::make_shared<Descriptor>())
{
    for (const auto& root : roots)
        m_roots.append(QFile::encodeName(root));
    m_soon.setSingleShot(true);
    m_soon.setInterval(std::chrono::milliseconds(200));
    m_soon.callOnTimeout(this, &FolderTreeWatch::look);
    if (m_descriptor->number < 0)
        return;
    connect(&m_notifier, &QSocketNotifier::activated, this, &FolderTreeWatch::drain);
    m_notifier.setSocket(m_descriptor->number);
    m_notifier.setEnabled(true);
}

FolderTreeWatch::~FolderTreeWatch()
{
    m_notifier.setEnabled(false);
}

void FolderTreeWatch::look()
{
    m_isStale = m_work.isUnderWay();
    m_work.start([this, roots = m_roots, descriptor = m_descriptor,
                     before = m_watches]() -> BackgroundWork::Finish {
        return [this, found = walk(roots, descriptor->number, before)] { learn(found); };
    });
}

// What appears while the folders are walked must not be missed: they are walked until all that is
// there was watched before.
FolderTreeWatch::Found FolderTreeWatch::walk(
    const QList<QByteArray>& roots, int descriptor, const Watches& before)
{
    constexpr int mostWalks = 5;
    auto plan = FolderTree::plan(roots);
    auto watches = watchAll(plan, descriptor);
    for (int walks = 1; walks < mostWalks; ++walks) {
        const auto again = FolderTree::plan(roots);
        const bool isSame = again.folders == plan.folders;
        plan = again;
        if (isSame)
            break;
        watches.insert(watchAll(plan, descriptor));
    }
    QStringList readable;
    for (const auto& root : std::as_const(plan.readable))
        readable.append(QFile::decodeName(root));
    for (auto watch = before.cbegin(); watch != before.cend(); ++watch) {
        if (!watches.contains(watch.key()))
            inotify_rm_watch(descriptor, watch.key());
    }
    return { readable, plan.isWhole, watches };
}

FolderTreeWatch::Watches FolderTreeWatch::watchAll(const FolderTree::Plan& plan, int descriptor)
{
    Watches watches;
    for (auto folder = plan.folders.cbegin(); folder != plan.folders.cend(); ++folder) {
        const auto events = folder->isEmpty() ? anything : appearance;
        const int watch
            = inotify_add_watch(descriptor, folder.key().constData(), events | IN_ONLYDIR);
        if (watch >= 0)
            watches.insert(watch, *folder);
    }
    return watches;
}

void FolderTreeWatch::learn(const Found& found)
{
    m_readable = found.readable;
    m_isWhole = found.isWhole;
    m_watches = found.watches;
    if (std::exchange(m_isStale, false))
        m_soon.start();
    Q_EMIT looked();
}

void FolderTreeWatch::drain()
{
    bool isOther = false;
    eachInotifyEvent(m_descriptor->number, [&](const inotify_event& event) {
        const QByteArray name(event.len > 0 ? event.name : "");
        isOther = isOther || isOfInterest(event.wd, event.mask, name);
    });
    if (isOther && !m_soon.isActive())
        m_soon.start();
}

bool FolderTreeWatch::isOfInterest(int watch, quint32 events, const QByteArray& name) const
{
    if ((events & IN_Q_OVERFLOW) != 0)
        return true;
    if ((events & IN_IGNORED) != 0)
        return false;
    const auto known = m_watches.constFind(watch);
    // Begun by the walk that is under way.
    if (known == m_watches.cend())
        return m_work.isUnderWay();
    if (!known->isEmpty())
        return known->contains(name);
    // Others are the temporary names under which programs write.
    return (events & IN_ISDIR) != 0 || name.isEmpty() || name.toLower().endsWith(".ics")
        || (!name.startsWith('.') && (events & IN_CLOSE_WRITE) == 0);
}
