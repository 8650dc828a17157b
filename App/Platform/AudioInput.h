// The default audio input of the machine, and its controls.
#pragma once

#include <QtGlobal>

#include <memory>
#include <optional>

// Of an input's channels together.
constexpr int mainElement = 0;

enum class InputControl {
    mute, // A switch.
    volume,
};

class AudioInputDevice {
public:
    virtual ~AudioInputDevice() = default;

    // Element 0 is the main element, those from 1 on are single channels.
    virtual bool hasControl(InputControl control, int element) const = 0;
    // False also when it cannot be told.
    virtual bool isSettable(InputControl control, int element) const = 0;
    // 1 is muted, 0 is not; absent when it cannot be read.
    virtual std::optional<quint32> mute(int element) const = 0;
    virtual bool setMute(int element, quint32 value) = 0;
    // From 0 to 1; absent when it cannot be read.
    virtual std::optional<float> volume(int element) const = 0;
    virtual bool setVolume(int element, float value) = 0;
};

class AudioInput {
public:
    virtual ~AudioInput() = default;
    static AudioInput& shared(); // Defined in App/Wiring.cpp.

    // Null when there is none. Hold it for one operation only: finding it and all that is done with
    // it take 150 ms together at most, after which whatever is asked of it fails.
    virtual std::unique_ptr<AudioInputDevice> defaultInput() = 0;
};
