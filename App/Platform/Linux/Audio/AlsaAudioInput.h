// The capture controls of the default sound card, where no sound server has it in hand.
#pragma once

#include "App/Platform/AudioInput.h"

class AlsaAudioInput final : public AudioInput {
public:
    // Waits as long as the card takes.
    std::unique_ptr<AudioInputDevice> defaultInput() override;
};
