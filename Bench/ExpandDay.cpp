// Has the helper list a day out of files, as Corvella does, and prints what that was: how many
// events, the processor's milliseconds and the most megabytes. expand-day HELPER START END PATH...,
// in seconds.
#include "App/Platform/Linux/Calendar/ExpanderPipe.h"

#include <QFile>
#include <QStringList>

#include <cstdio>
#include <cstdlib>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

[[noreturn]] void fail(const char* why)
{
    std::fprintf(stderr, "expand-day: %s\n", why);
    std::exit(1);
}

EventExpander::Request requestFrom(int argc, char** argv)
{
    EventExpander::Request request;
    request.start = Moment(std::chrono::seconds(std::atoll(argv[2])));
    request.end = Moment(std::chrono::seconds(std::atoll(argv[3])));
    for (int i = 4; i < argc; ++i)
        request.paths << QFile::decodeName(argv[i]);
    return request;
}

struct Pipe {
    int ends[2];

    Pipe()
    {
        if (pipe(ends) < 0)
            fail("no pipe");
    }
};

pid_t start(char* helper, const Pipe& input, const Pipe& output)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.ends[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.ends[1], STDOUT_FILENO);
    for (const int end : { input.ends[1], output.ends[0] })
        posix_spawn_file_actions_addclose(&actions, end);
    char* arguments[] = { helper, nullptr };
    pid_t pid = 0;
    if (posix_spawn(&pid, helper, &actions, nullptr, arguments, environ) != 0)
        fail("no helper");
    posix_spawn_file_actions_destroy(&actions);
    close(input.ends[0]);
    close(output.ends[1]);
    return pid;
}

QByteArray readAll(int end)
{
    QFile file;
    if (!file.open(end, QIODevice::ReadOnly))
        fail("no answer");
    return file.readAll();
}

double milliseconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

}

int main(int argc, char** argv)
{
    if (argc < 5)
        fail("give a helper, two times and paths");
    const Pipe input;
    const Pipe output;
    const auto pid = start(argv[1], input, output);
    const auto head = ExpanderPipe::head(requestFrom(argc, argv));
    if (write(input.ends[1], head.constData(), static_cast<std::size_t>(head.size())) < 0)
        fail("the helper does not listen");
    close(input.ends[1]);
    const auto result = ExpanderPipe::result(readAll(output.ends[0]));
    rusage used {};
    wait4(pid, nullptr, 0, &used);
    if (!result || !result->isComplete)
        fail("the answer is not complete");
    std::printf("%d %.2f %.2f\n", static_cast<int>(result->events.size()),
        milliseconds(used.ru_utime) + milliseconds(used.ru_stime),
        static_cast<double>(used.ru_maxrss) / 1024);
    return 0;
}
