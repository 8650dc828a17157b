#include "App/Platform/Linux/Files/FileLock.h"

#include <QDeadlineTimer>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;

FileLock::FileLock(const QString& path, std::chrono::milliseconds patience)
    : m_descriptor(::open(QFile::encodeName(path).constData(),
        O_RDWR | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, S_IRUSR | S_IWUSR))
    , m_held(m_descriptor >= 0 && acquire(patience))
{
}

FileLock::~FileLock()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

// Asks again and again, since a blocking flock() knows no deadline and its holder may be stopped.
bool FileLock::acquire(std::chrono::milliseconds patience) const
{
    const QDeadlineTimer deadline(patience);
    while (flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            return true; // A file system without locks is better written to than not.
        if (deadline.hasExpired())
            return false;
        std::this_thread::sleep_for(5ms);
    }
    return true;
}
