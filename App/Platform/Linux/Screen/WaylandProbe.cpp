#include "App/Platform/Linux/Screen/WaylandProbe.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <array>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

// The protocol itself, of which two requests and three events do: its library would be loaded here
// only to be of no use on X11.
enum Object : uint32_t { display = 1, registry, callback };
enum Request : uint32_t { sync = 0, getRegistry = 1 };
constexpr qsizetype headerSize = 8;

class Descriptor final {
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return m_number; }

private:
    int m_number;
};

int connectedTo(const QByteArray& path)
{
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || size_t(path.size()) >= sizeof address.sun_path)
        return -1;
    std::memcpy(address.sun_path, path.constData(), size_t(path.size()));
    const int number = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (number < 0
        || ::connect(number, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return number;
    ::close(number);
    return -1;
}

bool ask(int socket)
{
    constexpr uint32_t size = 12;
    constexpr std::array<uint32_t, 6> questions {
        display, size << 16 | getRegistry, registry, // What is there?
        display, size << 16 | sync, callback, // Is that all?
    };
    return ::send(socket, questions.data(), sizeof questions, MSG_NOSIGNAL) == sizeof questions;
}

uint32_t wordAt(const QByteArray& bytes, qsizetype place)
{
    uint32_t word = 0;
    std::memcpy(&word, bytes.constData() + place, sizeof word);
    return word;
}

// The interface in an event of the registry: a number, the name's length, the name with its zero.
QByteArray interfaceIn(const QByteArray& event)
{
    constexpr qsizetype start = headerSize + 8;
    if (event.size() < start)
        return {};
    const auto length = qsizetype(wordAt(event, headerSize + 4));
    return event.mid(start, std::max<qsizetype>(length - 1, 0));
}

enum class Answer { yes, no, unfinished };

Answer read(QByteArray& bytes, const QByteArray& interface)
{
    while (bytes.size() >= headerSize) {
        const auto size = qsizetype(wordAt(bytes, 4) >> 16);
        if (size < headerSize)
            return Answer::no;
        if (bytes.size() < size)
            return Answer::unfinished;
        const auto event = bytes.first(size);
        bytes.remove(0, size);
        const auto object = wordAt(event, 0);
        const bool isFirstKind = (wordAt(event, 4) & 0xffff) == 0;
        if (object == registry && isFirstKind && interfaceIn(event) == interface)
            return Answer::yes;
        if (object != registry && isFirstKind) // The end of the list, or of the connection.
            return Answer::no;
    }
    return Answer::unfinished;
}

}

QByteArray WaylandProbe::socket()
{
    const auto name = qgetenv("WAYLAND_DISPLAY");
    if (name.isEmpty() || name.startsWith('/'))
        return name;
    const auto folder = qgetenv("XDG_RUNTIME_DIR");
    return folder.isEmpty() ? QByteArray() : folder + '/' + name;
}

bool WaylandProbe::offers(
    const QByteArray& socket, const QByteArray& interface, std::chrono::milliseconds limit)
{
    const Descriptor compositor(connectedTo(socket));
    if (compositor.number() < 0 || !ask(compositor.number()))
        return false;
    const QDeadlineTimer deadline(limit);
    QByteArray bytes;
    std::array<char, 4096> part;
    auto answer = Answer::unfinished;
    while (answer == Answer::unfinished && !deadline.hasExpired()) {
        pollfd waiting { compositor.number(), POLLIN, 0 };
        if (::poll(&waiting, 1, int(deadline.remainingTime())) <= 0)
            return false;
        const auto count = ::recv(compositor.number(), part.data(), part.size(), 0);
        if (count <= 0)
            return false;
        bytes.append(part.data(), count);
        answer = read(bytes, interface);
    }
    return answer == Answer::yes;
}
