#include "App/Platform/Linux/Launch/ChildProcess.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>
#include <vector>

namespace {

class Actions final {
public:
    explicit Actions(const ChildProcess::Streams& streams)
    {
        posix_spawn_file_actions_init(&m_actions);
        // The streams first: where this program's own are closed, they may have those numbers.
        take(streams.input, STDIN_FILENO);
        take(streams.errors, STDERR_FILENO);
        drop(streams.input, STDIN_FILENO);
        drop(-1, STDOUT_FILENO);
        drop(streams.errors, STDERR_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
    }

    ~Actions() { posix_spawn_file_actions_destroy(&m_actions); }
    Q_DISABLE_COPY_MOVE(Actions)

    void enter(const QByteArray& folder)
    {
        posix_spawn_file_actions_addchdir_np(&m_actions, folder.constData());
    }

    const posix_spawn_file_actions_t* operator&() const { return &m_actions; }

private:
    void take(int descriptor, int number)
    {
        if (descriptor >= 0)
            posix_spawn_file_actions_adddup2(&m_actions, descriptor, number);
    }

    void drop(int descriptor, int number)
    {
        if (descriptor < 0)
            posix_spawn_file_actions_addopen(&m_actions, number, "/dev/null", O_RDWR, 0);
    }

    posix_spawn_file_actions_t m_actions {};
};

class Attributes final {
public:
    Attributes()
    {
        sigset_t signals;
        posix_spawnattr_init(&m_attributes);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
        posix_spawnattr_setflags(
            &m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }

    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }
    Q_DISABLE_COPY_MOVE(Attributes)

    const posix_spawnattr_t* operator&() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes {};
};

// Corvella may have been started in a folder that is in the way there.
QByteArray home()
{
    const auto folder = QDir::homePath();
    const auto name = QFile::encodeName(folder);
    return QDir(folder).exists() && ::access(name.constData(), X_OK) == 0 ? name : QByteArray("/");
}

}

ChildProcess::Started ChildProcess::start(
    const QString& path, const QStringList& arguments, const Streams& streams)
{
    QByteArrayList words { QFile::encodeName(path) };
    for (const auto& argument : arguments)
        words.append(QFile::encodeName(argument));
    // It would end there, unnoticed.
    if (std::ranges::any_of(words, [](const QByteArray& word) { return word.contains('\0'); }))
        return { -1, EINVAL };
    std::vector<char*> pointers;
    for (auto& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    Actions actions(streams);
    actions.enter(home());
    const Attributes attributes;
    Started started;
    started.error = posix_spawn(&started.process, words.first().constData(), &actions, &attributes,
        pointers.data(), environ);
    return started;
}
