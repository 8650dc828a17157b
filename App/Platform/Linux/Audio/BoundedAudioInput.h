// Another audio input, held to the time that an operation on an input may take, whatever it waits
// for: a sound server, a device, a library that is loaded.
#pragma once

#include "App/Platform/AudioInput.h"
#include "App/Platform/Linux/Audio/DeadlineThread.h"

#include <chrono>

class BoundedAudioInput final : public AudioInput {
public:
    // The other is asked on a thread, one question at a time.
    explicit BoundedAudioInput(std::shared_ptr<AudioInput> input,
        std::chrono::milliseconds longest = std::chrono::milliseconds(150));

    std::unique_ptr<AudioInputDevice> defaultInput() override;

private:
    std::shared_ptr<AudioInput> m_input;
    std::chrono::milliseconds m_longest;
    std::shared_ptr<DeadlineThread> m_thread;
};
