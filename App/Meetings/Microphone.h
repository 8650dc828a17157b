// Whether the machine listens. Mutes by the input's switch where it has one that can be set, else
// by turning its volume down, which is remembered.
#pragma once

#include <memory>
#include <optional>

class AudioInput;
class AudioInputDevice;
class UserDefaults;

namespace Microphone {

std::unique_ptr<AudioInputDevice> defaultInput(AudioInput& input);

// Absent when there is no input, or none that can be muted.
std::optional<bool> isMuted(AudioInput& input);

// False when there was nothing to set. True says nothing of success; ask isMuted().
bool setMuted(AudioInput& input, UserDefaults& defaults, bool mute);

}
