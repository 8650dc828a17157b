#include "App/Platform/Linux/Machine/NetlinkCounters.h"

#include "App/Platform/Linux/Machine/LinkDump.h"

#include <array>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int attempts = 2;
constexpr std::size_t largestDatagram = 32768; // The kernel fills no more at a time.

struct Request {
    nlmsghdr head;
    ifinfomsg link;
    rtattr filterHead;
    std::uint32_t filter;
};

}

int NetlinkCounters::openSocket()
{
    const int descriptor
        = ::socket(AF_NETLINK, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, NETLINK_ROUTE);
    sockaddr_nl kernel {};
    kernel.nl_family = AF_NETLINK;
    // Once connected, nobody else gets a word in.
    const auto* const address = reinterpret_cast<const sockaddr*>(&kernel);
    if (descriptor < 0 || ::connect(descriptor, address, sizeof kernel) == 0)
        return descriptor;
    ::close(descriptor);
    return -1;
}

NetlinkCounters::NetlinkCounters(std::function<int()> open)
    : m_open(std::move(open))
{
}

NetlinkCounters::~NetlinkCounters()
{
    hangUp();
}

std::optional<NetworkBytes> NetlinkCounters::read()
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto dump = ask();
        if (dump.state() == LinkDump::State::whole)
            return dump.counters();
        // Half an answer may still be on its way.
        if (dump.state() != LinkDump::State::interrupted)
            hangUp();
    }
    return {};
}

LinkDump NetlinkCounters::ask()
{
    LinkDump dump(++m_sequence);
    if (!sendRequest())
        return dump;
    std::array<std::byte, largestDatagram> datagram;
    while (dump.state() == LinkDump::State::unfinished) {
        const auto size
            = ::recv(m_socket, datagram.data(), datagram.size(), MSG_DONTWAIT | MSG_TRUNC);
        const auto received = static_cast<std::size_t>(size);
        if (size <= 0 || received > datagram.size())
            break;
        dump.take(std::span(datagram).first(received));
    }
    return dump;
}

bool NetlinkCounters::sendRequest()
{
    if (m_socket < 0)
        m_socket = m_open();
    Request request {};
    request.head.nlmsg_len = sizeof request;
    request.head.nlmsg_type = RTM_GETLINK;
    request.head.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    request.head.nlmsg_seq = m_sequence;
    // Leaves out what is summed up over all processors for IPv6 alone.
    request.filterHead = { RTA_LENGTH(sizeof request.filter), IFLA_EXT_MASK };
    request.filter = RTEXT_FILTER_SKIP_STATS;
    return m_socket >= 0
        && ::send(m_socket, &request, sizeof request, MSG_DONTWAIT | MSG_NOSIGNAL)
        == static_cast<ssize_t>(sizeof request);
}

void NetlinkCounters::hangUp()
{
    if (m_socket >= 0)
        ::close(std::exchange(m_socket, -1));
}
