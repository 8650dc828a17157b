#include "App/Platform/Linux/Time/ZoneWatch.h"

#include "App/Platform/Linux/Files/InotifyEvents.h"

#include <QFile>
#include <QFileInfo>

#include <ctime>
#include <unistd.h>

ZoneWatch::ZoneWatch(const QString& link)
    : m_link(QFile::encodeName(link))
{
    if (!qEnvironmentVariableIsSet("TZ"))
        m_descriptor = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_descriptor < 0)
        return;
    arm();
    connect(&m_notifier, &QSocketNotifier::activated, this, &ZoneWatch::drain);
    m_notifier.setSocket(m_descriptor);
    m_notifier.setEnabled(true);
}

ZoneWatch::~ZoneWatch()
{
    m_notifier.setEnabled(false);
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

// A link that is replaced takes its watch with it.
void ZoneWatch::arm()
{
    if (m_watch >= 0)
        inotify_rm_watch(m_descriptor, m_watch);
    constexpr auto replacement = IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_CLOSE_WRITE;
    m_watch = inotify_add_watch(m_descriptor, m_link.constData(), replacement | IN_DONT_FOLLOW);
    m_isMissing = m_watch < 0;
    if (m_isMissing) {
        const auto folder = QFile::encodeName(QFileInfo(QFile::decodeName(m_link)).path());
        m_watch = inotify_add_watch(
            m_descriptor, folder.constData(), IN_CREATE | IN_MOVED_TO | IN_ONLYDIR);
    }
}

void ZoneWatch::drain()
{
    bool isOther = false;
    eachInotifyEvent(m_descriptor, [&](const inotify_event& event) {
        isOther = isOther || (event.wd == m_watch && (event.mask & IN_IGNORED) == 0);
    });
    if (!isOther)
        return;
    const bool wasMissing = m_isMissing;
    arm();
    // Something else was made beside it.
    if (wasMissing && m_isMissing)
        return;
    ::tzset();
    Q_EMIT zoneChanged();
}
