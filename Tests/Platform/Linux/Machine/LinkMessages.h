// Messages of the kernel about network links, put together by hand.
#pragma once

#include <QByteArray>

#include <cerrno>
#include <cstdint>
#include <linux/if_link.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

namespace LinkMessages {

template <typename T>
QByteArray bytes(const T& value)
{
    return { reinterpret_cast<const char*>(&value), sizeof value };
}

inline QByteArray padded(QByteArray bytes)
{
    bytes.append(-bytes.size() & 3, '\0');
    return bytes;
}

inline QByteArray attribute(int type, const QByteArray& value)
{
    const rtattr head { static_cast<std::uint16_t>(RTA_LENGTH(value.size())),
        static_cast<std::uint16_t>(type) };
    return padded(bytes(head) + value);
}

inline QByteArray name(const QByteArray& text)
{
    return attribute(IFLA_IFNAME, text + '\0');
}

inline QByteArray counters(std::uint64_t received, std::uint64_t sent)
{
    rtnl_link_stats64 figures {};
    figures.rx_packets = 1;
    figures.tx_packets = 2;
    figures.rx_bytes = received;
    figures.tx_bytes = sent;
    return attribute(IFLA_STATS64, bytes(figures));
}

inline QByteArray oldCounters(std::uint32_t received, std::uint32_t sent)
{
    rtnl_link_stats figures {};
    figures.rx_packets = 3;
    figures.tx_packets = 4;
    figures.rx_bytes = received;
    figures.tx_bytes = sent;
    return attribute(IFLA_STATS, bytes(figures));
}

inline QByteArray message(int type, std::uint32_t sequence, int flags, const QByteArray& content)
{
    nlmsghdr head {};
    head.nlmsg_len = static_cast<std::uint32_t>(NLMSG_LENGTH(content.size()));
    head.nlmsg_type = static_cast<std::uint16_t>(type);
    head.nlmsg_flags = static_cast<std::uint16_t>(NLM_F_MULTI | flags);
    head.nlmsg_seq = sequence;
    return padded(bytes(head) + content);
}

inline QByteArray link(
    std::uint32_t sequence, int index, unsigned linkFlags, const QByteArray& attributes)
{
    ifinfomsg head {};
    head.ifi_index = index;
    head.ifi_flags = linkFlags;
    return message(RTM_NEWLINK, sequence, 0, bytes(head) + attributes);
}

// An interface that is up.
inline QByteArray upLink(std::uint32_t sequence, std::uint64_t received, std::uint64_t sent)
{
    return link(sequence, 2, IFF_UP, name("eth0") + counters(received, sent));
}

inline QByteArray done(std::uint32_t sequence, int flags = 0, int error = 0)
{
    return message(NLMSG_DONE, sequence, flags, bytes(error));
}

inline QByteArray error(std::uint32_t sequence)
{
    const nlmsgerr content { -EBUSY, {} };
    return message(NLMSG_ERROR, sequence, 0, bytes(content));
}

}
