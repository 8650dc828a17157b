#include "App/Platform/Linux/Launch/RunningCommand.h"

#include "App/Platform/Linux/Launch/ChildProcess.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr qsizetype mostKept = qsizetype { 64 } * 1024; // Bytes

// Absent while it runs. What is unknown counts as failed.
std::optional<bool> success(pid_t process, int options)
{
    siginfo_t info {};
    while (waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | options) != 0) {
        if (errno != EINTR)
            return false;
    }
    if (info.si_pid == 0)
        return std::nullopt;
    return info.si_code == CLD_EXITED && info.si_status == 0;
}

// A character that was cut in two would keep all before it from being read as UTF-8.
QByteArray withoutHalfCharacter(QByteArray text)
{
    if (text.size() < mostKept || (text.back() & 0x80) == 0)
        return text;
    while (!text.isEmpty() && (text.back() & 0xc0) == 0x80)
        text.chop(1);
    text.chop(1);
    return text;
}

}

RunningCommand::RunningCommand(QObject* parent)
    : QObject(parent)
{
    connect(&m_gone, &QSocketNotifier::activated, this, &RunningCommand::reap);
    connect(&m_written, &QSocketNotifier::activated, this, &RunningCommand::readErrors);
}

// A write to a pipe that nobody reads ends the writer, be it the program or what it has left
// running; so the pipe is left to a process that reads it to its end.
RunningCommand::~RunningCommand()
{
    closeHandle();
    if (isWrittenTo()) {
        fcntl(m_errors, F_SETFL, 0); // Which does not expect to be told to come back later.
        ChildProcess::start("/bin/cat", { "cat" }, { m_errors, -1 });
    }
    closeErrors();
}

void RunningCommand::follow(
    pid_t process, int errors, QObject* waiter, std::function<void(CommandEnd)> ended)
{
    m_process = process;
    m_errors = errors;
    m_waiter = waiter;
    m_ended = std::move(ended);
    fcntl(m_errors, F_SETFL, O_NONBLOCK);
    m_written.setSocket(m_errors);
    m_written.setEnabled(true);
    awaitEnd();
}

void RunningCommand::awaitEnd()
{
    // By its number: the header of glibc 2.36 declares it for C only.
    m_handle = static_cast<int>(syscall(SYS_pidfd_open, m_process, 0));
    if (m_handle < 0) {
        awaitEndBeside();
        return;
    }
    m_gone.setSocket(m_handle);
    m_gone.setEnabled(true);
}

void RunningCommand::awaitEndBeside()
{
    m_wait.start([this, process = m_process]() -> BackgroundWork::Finish {
        return [this, succeeded = success(process, 0)] { end(succeeded.value_or(false)); };
    });
}

void RunningCommand::reap()
{
    closeHandle();
    const auto succeeded = success(m_process, WNOHANG);
    if (succeeded)
        end(*succeeded);
    else
        awaitEndBeside(); // A debugger has it still.
}

void RunningCommand::closeHandle()
{
    m_gone.setEnabled(false);
    if (m_handle >= 0)
        ::close(std::exchange(m_handle, -1));
}

void RunningCommand::end(bool succeeded)
{
    readRest();
    m_hasEnded = true;
    if (m_errors < 0)
        deleteLater();
    const auto ended = std::exchange(m_ended, nullptr);
    if (m_waiter && ended)
        ended({ succeeded, withoutHalfCharacter(std::exchange(m_kept, {})) });
}

// Also after the end, for no one: what the program has left running may write as long as it likes.
void RunningCommand::readErrors()
{
    char block[mostKept];
    const auto count = ::read(m_errors, block, sizeof block);
    if (count > 0 && !m_hasEnded)
        m_kept.append(block, std::min<qsizetype>(count, mostKept - m_kept.size()));
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
        closeErrors();
}

// No more than is there by now: others may write faster than it is read, or keep the pipe for ever.
void RunningCommand::readRest()
{
    int size = 0;
    if (m_errors < 0 || ioctl(m_errors, FIONREAD, &size) != 0)
        return;
    for (qsizetype rest = size; rest > 0 && m_errors >= 0; rest -= mostKept)
        readErrors();
}

void RunningCommand::closeErrors()
{
    m_written.setEnabled(false);
    if (m_errors >= 0)
        ::close(std::exchange(m_errors, -1));
    if (m_hasEnded)
        deleteLater();
}

bool RunningCommand::isWrittenTo() const
{
    pollfd pipe { m_errors, POLLIN, 0 };
    return m_errors >= 0 && poll(&pipe, 1, 0) >= 0 && (pipe.revents & POLLHUP) == 0;
}
