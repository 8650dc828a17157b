// Prints what one whole sample of the machine's counters costs, beside the least that asking the
// kernel for the same can cost: a line for each way with its least and its median in microseconds.
#include "App/Platform/Linux/Machine/LinuxCounters.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int samples = 20'000;

[[noreturn]] void fail(const char* why)
{
    std::fprintf(stderr, "%s\n", why);
    std::exit(1);
}

// The kernel's side alone: everything is read and nothing is understood.
class RawSources final {
public:
    RawSources();
    ~RawSources();
    RawSources(const RawSources&) = delete;
    RawSources& operator=(const RawSources&) = delete;

    void read();

private:
    void readFile(int file);
    void readLinks();
    bool isLastPart(int length) const;

    int m_stat = open("/proc/stat", O_RDONLY | O_CLOEXEC);
    int m_memory = open("/proc/meminfo", O_RDONLY | O_CLOEXEC);
    int m_netlink = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
    alignas(nlmsghdr) std::array<char, 65536> m_buffer;
};

RawSources::RawSources()
{
    if (m_stat < 0 || m_memory < 0 || m_netlink < 0)
        fail("sample-cost: the kernel does not tell its counters");
}

RawSources::~RawSources()
{
    close(m_stat);
    close(m_memory);
    close(m_netlink);
}

void RawSources::read()
{
    readFile(m_stat);
    readFile(m_memory);
    struct statvfs volume { };
    statvfs("/", &volume);
    readLinks();
}

void RawSources::readFile(int file)
{
    if (pread(file, m_buffer.data(), m_buffer.size(), 0) <= 0)
        fail("sample-cost: a file of the kernel's is empty");
}

void RawSources::readLinks()
{
    struct {
        nlmsghdr header { sizeof(nlmsghdr) + sizeof(ifinfomsg), RTM_GETLINK,
            NLM_F_REQUEST | NLM_F_DUMP, 0, 0 };
        ifinfomsg link {};
    } request;
    send(m_netlink, &request, sizeof request, 0);
    for (ssize_t got = 1; got > 0;) {
        got = recv(m_netlink, m_buffer.data(), m_buffer.size(), 0);
        if (isLastPart(static_cast<int>(got)))
            return;
    }
}

bool RawSources::isLastPart(int length) const
{
    const auto* part = reinterpret_cast<const nlmsghdr*>(m_buffer.data());
    for (; NLMSG_OK(part, static_cast<unsigned>(length)); part = NLMSG_NEXT(part, length)) {
        if (part->nlmsg_type == NLMSG_DONE || part->nlmsg_type == NLMSG_ERROR)
            return true;
    }
    return false;
}

void readAll(MachineCounters& counters)
{
    const bool all = counters.processorTicks() && counters.memoryUse() && counters.startupVolume()
        && counters.networkBytes();
    if (!all)
        fail("sample-cost: a counter has no answer");
}

class Times final {
public:
    template <typename Action>
    void add(Action action)
    {
        const auto start = Clock::now();
        action();
        const std::chrono::duration<double, std::micro> taken = Clock::now() - start;
        m_microseconds.push_back(taken.count());
    }

    void print(const char* name)
    {
        std::sort(m_microseconds.begin(), m_microseconds.end());
        std::printf("%s %.2f %.2f\n", name, m_microseconds.front(),
            m_microseconds[m_microseconds.size() / 2]);
    }

private:
    std::vector<double> m_microseconds;
};

}

int main()
{
    LinuxCounters counters;
    RawSources kept;
    Times own;
    Times least;
    Times reopened;
    // In turns, so that a machine that slows down does so for each.
    for (int i = 0; i < samples; ++i) {
        own.add([&] { readAll(counters); });
        least.add([&] { kept.read(); });
        reopened.add([] { RawSources().read(); });
    }
    own.print("corvella");
    least.print("kept");
    reopened.print("reopened");
    return 0;
}
