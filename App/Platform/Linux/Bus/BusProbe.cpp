#include "App/Platform/Linux/Bus/BusProbe.h"

#include <QList>

#include <algorithm>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr auto pathPrefix = "unix:path=";

bool connects(int socket, const QByteArray& path)
{
    sockaddr_un place {};
    place.sun_family = AF_UNIX;
    if (path.size() >= static_cast<qsizetype>(sizeof place.sun_path))
        return false;
    std::ranges::copy(path, place.sun_path);
    return connect(socket, reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0;
}

// A bus tells anyone who asks which ways it knows to prove who one is.
bool repliesWithin(int socket, std::chrono::milliseconds patience)
{
    constexpr char question[] = "\0AUTH\r\n";
    constexpr auto length = sizeof question - 1;
    if (send(socket, question, length, MSG_NOSIGNAL) != static_cast<ssize_t>(length))
        return false;
    pollfd answer { socket, POLLIN, 0 };
    return poll(&answer, 1, static_cast<int>(patience.count())) == 1;
}

}

QByteArray BusProbe::systemBusAddress()
{
    const auto told = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    return told.isEmpty() ? QByteArray("unix:path=/var/run/dbus/system_bus_socket") : told;
}

bool BusProbe::answers(const QByteArray& address, std::chrono::milliseconds patience)
{
    if (!address.startsWith(pathPrefix))
        return true;
    const auto path = address.mid(static_cast<qsizetype>(qstrlen(pathPrefix)))
                          .split(';')
                          .first()
                          .split(',')
                          .first();
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0)
        return false;
    const bool isAlive = connects(socket, path) && repliesWithin(socket, patience);
    close(socket);
    return isAlive;
}
