#include "App/Platform/Linux/Files/FolderWatch.h"

#include "App/Platform/Linux/Files/InotifyEvents.h"

#include <QFile>
#include <QSet>

#include <unistd.h>
#include <utility>

namespace {

// Creation counts because a file that is linked into the folder is never written there.
constexpr uint32_t events
    = IN_CLOSE_WRITE | IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_ONLYDIR;

}

FolderWatch::FolderWatch()
    : m_descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    if (m_descriptor < 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &FolderWatch::drain);
}

FolderWatch::~FolderWatch()
{
    m_notifier.reset();
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool FolderWatch::watch(const QString& folder)
{
    return inotify_add_watch(m_descriptor, QFile::encodeName(folder).constData(), events) >= 0;
}

void FolderWatch::drain()
{
    QSet<QString> names;
    eachInotifyEvent(m_descriptor, [&](const inotify_event& event) {
        if (event.len > 0)
            names.insert(QFile::decodeName(event.name));
        else if ((event.mask & IN_Q_OVERFLOW) != 0)
            names.insert(QString());
    });
    for (const auto& name : std::as_const(names))
        Q_EMIT changed(name);
}
