#include "App/Platform/Linux/Session/EndSignals.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

constexpr int endings[] = { SIGTERM, SIGINT, SIGHUP };

// The only way for a handler to reach the event loop.
int wakeUp = -1;

void note(int)
{
    const int before = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(wakeUp, &one, sizeof one);
    errno = before;
}

bool isIgnored(int signal)
{
    struct sigaction current { };
    return sigaction(signal, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

// A program that hangs must still be ended by a second signal, without a chance to be in order.
void takeOnce(int signal)
{
    struct sigaction once { };
    once.sa_handler = note;
    once.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigaction(signal, &once, nullptr);
}

}

EndSignals::EndSignals()
{
    wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeUp < 0)
        return;
    connect(&m_notifier, &QSocketNotifier::activated, this, &EndSignals::wake);
    m_notifier.setSocket(wakeUp);
    m_notifier.setEnabled(true);
    for (const int signal : endings) {
        if (!isIgnored(signal))
            takeOnce(signal);
    }
}

EndSignals::~EndSignals()
{
    if (wakeUp < 0)
        return;
    for (const int signal : endings) {
        if (!isIgnored(signal))
            std::signal(signal, SIG_DFL);
    }
    m_notifier.setEnabled(false);
    close(wakeUp);
    wakeUp = -1;
}

void EndSignals::wake()
{
    std::uint64_t count = 0;
    if (read(wakeUp, &count, sizeof count) == sizeof count)
        Q_EMIT received();
}
