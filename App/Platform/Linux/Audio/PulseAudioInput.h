// The default source of the sound server, PulseAudio or PipeWire.
#pragma once

#include "App/Platform/AudioInput.h"

class PulseAudioInput final : public AudioInput {
public:
    // The other, if there is one, is asked where no server answers.
    explicit PulseAudioInput(AudioInput* withoutServer);

    // Mutes by the main element, which every source has. Connects each time: a connection that is
    // kept would wake this program up for what others do.
    std::unique_ptr<AudioInputDevice> defaultInput() override;

private:
    AudioInput* m_withoutServer;
};
