#include "App/Platform/Linux/Machine/LinkDump.h"

#include <algorithm>
#include <cstring>
#include <linux/if_link.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

namespace {

using Bytes = std::span<const std::byte>;

// Copied out, since nothing says that what lies in a datagram is aligned.
template <typename T>
std::optional<T> valueAt(Bytes bytes, std::size_t offset = 0)
{
    if (bytes.size() < offset + sizeof(T))
        return {};
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

Bytes afterPadded(Bytes bytes, std::size_t size)
{
    return bytes.subspan(std::min(std::size_t { NLMSG_ALIGN(size) }, bytes.size()));
}

struct Link {
    QString name;
    std::optional<InterfaceBytes> counters;
};

template <typename Count>
std::optional<InterfaceBytes> countersAt(Bytes bytes, std::size_t received, std::size_t sent)
{
    const auto in = valueAt<Count>(bytes, received);
    const auto out = valueAt<Count>(bytes, sent);
    if (!in || !out)
        return {};
    return InterfaceBytes { static_cast<std::uint32_t>(*in), static_cast<std::uint32_t>(*out) };
}

QString nameIn(Bytes text)
{
    const auto end = std::ranges::find(text, std::byte { 0 });
    return QString::fromUtf8(reinterpret_cast<const char*>(text.data()), end - text.begin());
}

void takeAttribute(Link& link, int type, Bytes value)
{
    if (type == IFLA_IFNAME)
        link.name = nameIn(value);
    else if (type == IFLA_STATS64)
        link.counters = countersAt<std::uint64_t>(
            value, offsetof(rtnl_link_stats64, rx_bytes), offsetof(rtnl_link_stats64, tx_bytes));
    else if (type == IFLA_STATS && !link.counters)
        link.counters = countersAt<std::uint32_t>(
            value, offsetof(rtnl_link_stats, rx_bytes), offsetof(rtnl_link_stats, tx_bytes));
}

std::optional<Link> linkIn(Bytes attributes)
{
    Link link;
    while (!attributes.empty()) {
        const auto head = valueAt<rtattr>(attributes);
        if (!head || head->rta_len < sizeof *head || head->rta_len > attributes.size())
            return {};
        takeAttribute(link, head->rta_type & NLA_TYPE_MASK,
            attributes.first(head->rta_len).subspan(sizeof *head));
        attributes = afterPadded(attributes, head->rta_len);
    }
    return link;
}

}

void LinkDump::take(Bytes datagram)
{
    while (!datagram.empty() && m_state == State::unfinished)
        datagram = takeMessage(datagram);
}

std::optional<NetworkBytes> LinkDump::counters() const
{
    if (m_state != State::whole || !m_hasLinks)
        return {};
    return m_counters;
}

LinkDump::Bytes LinkDump::takeMessage(Bytes rest)
{
    const auto head = valueAt<nlmsghdr>(rest);
    if (!head || head->nlmsg_len < sizeof *head || head->nlmsg_len > rest.size()) {
        m_state = State::broken;
        return {};
    }
    if (head->nlmsg_seq == m_sequence) {
        m_isInterrupted = m_isInterrupted || (head->nlmsg_flags & NLM_F_DUMP_INTR);
        m_state = stateAfter(head->nlmsg_type, rest.first(head->nlmsg_len).subspan(sizeof *head));
    }
    return afterPadded(rest, head->nlmsg_len);
}

LinkDump::State LinkDump::stateAfter(std::uint16_t type, Bytes content)
{
    switch (type) {
    case RTM_NEWLINK:
        return stateAfterLink(content);
    case NLMSG_DONE:
        if (valueAt<int>(content).value_or(0) < 0)
            return State::broken; // The kernel gave up halfway.
        return m_isInterrupted ? State::interrupted : State::whole;
    case NLMSG_ERROR:
    case NLMSG_OVERRUN:
        return State::broken;
    default:
        return State::unfinished;
    }
}

LinkDump::State LinkDump::stateAfterLink(Bytes content)
{
    const auto head = valueAt<ifinfomsg>(content);
    const auto link = head ? linkIn(afterPadded(content, sizeof *head)) : std::nullopt;
    if (!link)
        return State::broken;
    m_hasLinks = true;
    const bool counts = (head->ifi_flags & (IFF_UP | IFF_LOOPBACK)) == IFF_UP;
    if (counts && link->counters)
        m_counters.insert(link->name + u'#' + QString::number(head->ifi_index), *link->counters);
    return State::unfinished;
}
