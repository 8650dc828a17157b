#pragma once

#include "App/Platform/AudioInput.h"

#include <QMap>

#include <utility>

struct FakeAudioInput final : AudioInput {
    struct Control {
        float value = 0;
        bool isSettable = true;
        bool canBeRead = true;
        bool canBeWritten = true;
    };
    using Controls = QMap<int, Control>; // By element.

    struct Device final : AudioInputDevice {
        explicit Device(FakeAudioInput& input)
            : fake(input)
        {
        }

        const Controls& controls(InputControl control) const
        {
            return control == InputControl::mute ? fake.switches : fake.volumes;
        }
        bool hasControl(InputControl control, int element) const override
        {
            return controls(control).contains(element);
        }
        bool isSettable(InputControl control, int element) const override
        {
            return controls(control).value(element).isSettable;
        }
        static std::optional<float> read(const Controls& controls, int element)
        {
            const auto control = controls.value(element);
            return control.canBeRead ? std::optional(control.value) : std::nullopt;
        }
        bool write(InputControl control, int element, float value)
        {
            fake.writes.append({ control, element });
            auto& written = (control == InputControl::mute ? fake.switches : fake.volumes)[element];
            if (written.canBeWritten)
                written.value = value;
            return written.canBeWritten;
        }
        std::optional<quint32> mute(int element) const override
        {
            const auto value = read(fake.switches, element);
            return value ? std::optional(static_cast<quint32>(*value)) : std::nullopt;
        }
        bool setMute(int element, quint32 value) override
        {
            return write(InputControl::mute, element, static_cast<float>(value));
        }
        std::optional<float> volume(int element) const override
        {
            return read(fake.volumes, element);
        }
        bool setVolume(int element, float value) override
        {
            return write(InputControl::volume, element, value);
        }

        FakeAudioInput& fake;
    };

    std::unique_ptr<AudioInputDevice> defaultInput() override
    {
        return isThere ? std::make_unique<Device>(*this) : nullptr;
    }

    bool isThere = true;
    Controls switches = {};
    Controls volumes = {};
    QList<std::pair<InputControl, int>> writes = {};
};
