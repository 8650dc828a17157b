// The byte counters of the network interfaces, through a kept netlink socket.
#pragma once

#include "App/Platform/MachineCounters.h"

#include <functional>

class LinkDump;

class NetlinkCounters final {
public:
    // A socket that talks to the kernel only; -1 where there is none.
    static int openSocket();

    // Whatever is opened is closed here.
    explicit NetlinkCounters(std::function<int()> open = openSocket);
    ~NetlinkCounters();
    Q_DISABLE_COPY_MOVE(NetlinkCounters)

    // None where the kernel does not answer, which it does at once, or knows of no interface.
    std::optional<NetworkBytes> read();

private:
    LinkDump ask();
    bool sendRequest();
    void hangUp();

    std::function<int()> m_open;
    int m_socket = -1;
    std::uint32_t m_sequence = 0;
};
