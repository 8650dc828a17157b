#include "App/Platform/Linux/Launch/PosixCommandRunner.h"

#include "App/Platform/Linux/Launch/ChildProcess.h"
#include "App/Platform/Linux/Launch/RunningCommand.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <iterator>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

static QString inWords(int error)
{
    return QString::fromLocal8Bit(std::generic_category().message(error));
}

static std::string encoded(const QString& text)
{
    return QFile::encodeName(text).toStdString();
}

// To ignore the ends of programs is inherited; the system then tells nobody how they ended.
PosixCommandRunner::PosixCommandRunner()
{
    struct sigaction current { };
    if (sigaction(SIGCHLD, nullptr, &current) == 0 && current.sa_handler == SIG_IGN)
        signal(SIGCHLD, SIG_DFL);
}

std::optional<QString> PosixCommandRunner::run(const QString& path, const QStringList& arguments,
    QObject* waiter, std::function<void(CommandEnd)> ended)
{
    int errors[2];
    if (pipe2(errors, O_CLOEXEC) != 0)
        return inWords(errno);
    std::vector<std::string> words { encoded(path) };
    std::ranges::transform(arguments, std::back_inserter(words), encoded);
    const auto started = ChildProcess::start(encoded(path), words, { -1, errors[1] });
    ::close(errors[1]);
    if (started.error != 0) {
        ::close(errors[0]);
        return inWords(started.error);
    }
    auto* command = new RunningCommand(QCoreApplication::instance());
    command->follow(started.process, errors[0], waiter, std::move(ended));
    return std::nullopt;
}
