// The sound server's store of short sounds, which it plays on its own once they are there.
#pragma once

#include "App/Helpers/AlertSounds.h"

#include <string>

struct pa_context;
struct pa_mainloop;

class SampleCache final {
public:
    // Connects to the running server, never starting one; waits as long as the server takes.
    SampleCache();
    ~SampleCache();
    SampleCache(const SampleCache&) = delete;
    SampleCache& operator=(const SampleCache&) = delete;

    bool isConnected() const;
    // False when no sample of that name is stored.
    bool play(const std::string& name);
    bool store(const std::string& name, const AlertSounds::Samples& samples);

private:
    bool turn();

    pa_mainloop* m_loop;
    pa_context* m_context = nullptr;
};
