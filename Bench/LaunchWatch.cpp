// Starts a program and prints "PID MILLISECONDS CPU_MILLISECONDS" as soon as its item is in the
// status bar: docked into the tray, or registered with its watcher. Ends the program when its own
// input ends.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDir>
#include <QFile>
#include <QSocketNotifier>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;
using Clock = std::chrono::steady_clock;

class LaunchWatch final : public QObject {
    Q_OBJECT

public:
    LaunchWatch();

    bool launch(char** command);

private Q_SLOTS:
    void registered(const QString& item);

private:
    void readEvents();
    void report();
    void end();

    xcb_connection_t* m_x = xcb_connect(nullptr, nullptr);
    xcb_window_t m_root = xcb_setup_roots_iterator(xcb_get_setup(m_x)).data->root;
    QSocketNotifier m_events { xcb_get_file_descriptor(m_x), QSocketNotifier::Read };
    QSocketNotifier m_input { STDIN_FILENO, QSocketNotifier::Read };
    Clock::time_point m_start;
    pid_t m_pid = 0;
    bool m_reported = false;
};

LaunchWatch::LaunchWatch()
{
    const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_x, m_root, XCB_CW_EVENT_MASK, &mask);
    // An answer means that the server has taken the wish above.
    std::free(xcb_get_input_focus_reply(m_x, xcb_get_input_focus(m_x), nullptr));
    QDBusConnection::sessionBus().connect({}, u"/StatusNotifierWatcher"_s,
        u"org.kde.StatusNotifierWatcher"_s, u"StatusNotifierItemRegistered"_s, this,
        SLOT(registered(QString)));
    connect(&m_events, &QSocketNotifier::activated, this, &LaunchWatch::readEvents);
    connect(&m_input, &QSocketNotifier::activated, this, &LaunchWatch::end);
}

bool LaunchWatch::launch(char** command)
{
    m_start = Clock::now();
    m_pid = fork();
    if (m_pid == 0) {
        execv(command[0], command);
        _exit(127);
    }
    return m_pid > 0;
}

void LaunchWatch::registered(const QString&)
{
    report();
}

// A tray takes an item by making it a child of a window of its own.
void LaunchWatch::readEvents()
{
    while (const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event {
        xcb_poll_for_event(m_x), &std::free }) {
        const auto type = event->response_type & 0x7f;
        if (type == XCB_CREATE_NOTIFY) {
            const auto* made = reinterpret_cast<xcb_create_notify_event_t*>(event.get());
            const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
            xcb_change_window_attributes(m_x, made->window, XCB_CW_EVENT_MASK, &mask);
            xcb_flush(m_x);
        } else if (type == XCB_REPARENT_NOTIFY) {
            const auto* moved = reinterpret_cast<xcb_reparent_notify_event_t*>(event.get());
            if (moved->parent != m_root && m_pid > 0)
                report();
        }
    }
}

static double cpuMilliseconds(pid_t pid)
{
    const QDir threads(u"/proc/%1/task"_s.arg(pid));
    double nanoseconds = 0;
    for (const auto& thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(threads.filePath(thread) + u"/schedstat"_s);
        if (file.open(QIODevice::ReadOnly))
            nanoseconds += file.readAll().split(' ').constFirst().toDouble();
    }
    return nanoseconds / 1e6;
}

void LaunchWatch::report()
{
    if (m_reported)
        return;
    m_reported = true;
    const std::chrono::duration<double, std::milli> taken = Clock::now() - m_start;
    std::printf("%d %.2f %.2f\n", m_pid, taken.count(), cpuMilliseconds(m_pid));
    std::fflush(stdout);
}

void LaunchWatch::end()
{
    kill(m_pid, SIGTERM);
    waitpid(m_pid, nullptr, 0);
    QCoreApplication::quit();
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    LaunchWatch watch;
    if (argc < 2 || !watch.launch(argv + 1))
        return 2;
    return QCoreApplication::exec();
}

#include "LaunchWatch.moc"
