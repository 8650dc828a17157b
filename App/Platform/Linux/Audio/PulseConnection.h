// One conversation with the sound server, PulseAudio or whatever speaks its protocol.
#pragma once

#include <QtGlobal>

#include <chrono>
#include <optional>
#include <pulse/pulseaudio.h>

class PulseConnection final {
public:
    using Deadline = std::chrono::steady_clock::time_point;

    struct Source {
        quint32 index = PA_INVALID_INDEX;
        bool isMonitor = false; // Of what is played: nobody speaks into it.
        bool isMuted = false;
        pa_cvolume volume = {};
    };

    // Connects to the running server, never starting one.
    explicit PulseConnection(Deadline deadline);
    ~PulseConnection();
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;

    bool isConnected() const;
    void setDeadline(Deadline deadline) { m_deadline = deadline; }

    std::optional<Source> defaultSource();
    bool setMuted(quint32 source, bool muted);
    bool setVolume(quint32 source, const pa_cvolume& volume);

private:
    bool turn();
    bool complete(pa_operation* operation);

    Deadline m_deadline;
    pa_mainloop* m_loop;
    pa_context* m_context;
};
