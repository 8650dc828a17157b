#include "App/Platform/Linux/Launch/PosixCommandRunner.h"

#include "App/Platform/Linux/Launch/ChildProcess.h"
#include "App/Platform/Linux/Launch/RunningCommand.h"

#include <QCoreApplication>

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <utility>

static QString inWords(int error)
{
    return QString::fromLocal8Bit(std::generic_category().message(error));
}

std::optional<QString> PosixCommandRunner::run(const QString& path, const QStringList& arguments,
    QObject* waiter, std::function<void(CommandEnd)> ended)
{
    int errors[2];
    if (pipe2(errors, O_CLOEXEC) != 0)
        return inWords(errno);
    const auto started = ChildProcess::start(path, arguments, { -1, errors[1] });
    ::close(errors[1]);
    if (started.error != 0) {
        ::close(errors[0]);
        return inWords(started.error);
    }
    auto* command = new RunningCommand(QCoreApplication::instance());
    command->follow(started.process, errors[0], waiter, std::move(ended));
    return std::nullopt;
}
