// The kernel's answer to a request for all network links, taken datagram by datagram.
#pragma once

#include "App/Platform/MachineCounters.h"

#include <cstddef>
#include <span>

class LinkDump final {
public:
    enum class State {
        unfinished,
        whole,
        interrupted, // Whole, but links came or went meanwhile: some may be missing.
        broken,
    };

    explicit LinkDump(std::uint32_t sequence)
        : m_sequence(sequence)
    {
    }

    // Answers to other requests are passed over.
    void take(std::span<const std::byte> datagram);

    State state() const { return m_state; }

    // None unless the answer is whole and tells of any link, up or down.
    std::optional<NetworkBytes> counters() const;

private:
    using Bytes = std::span<const std::byte>;

    Bytes takeMessage(Bytes rest);
    State stateAfter(std::uint16_t type, Bytes content);
    State stateAfterLink(Bytes content);

    std::uint32_t m_sequence;
    State m_state = State::unfinished;
    bool m_isInterrupted = false;
    bool m_hasLinks = false;
    NetworkBytes m_counters;
};
