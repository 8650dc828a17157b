#include "App/Meetings/Microphone.h"

#include "App/Platform/AudioInput.h"
#include "App/Platform/UserDefaults.h"

#include <QList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr double usualVolume = 0.75;
constexpr quint32 muted = 1;
constexpr quint32 unmuted = 0;
const auto volumeKey = u"micVolumeBeforeMute"_s;

// A control that can only be read does not count, not even for reading.
QList<int> usableElements(const AudioInputDevice& device, InputControl control)
{
    QList<int> usable;
    for (const int element : { mainElement, 1, 2 }) {
        if (device.hasControl(control, element) && device.isSettable(control, element))
            usable << element;
    }
    return usable;
}

// Others may have written there what is no volume.
float rememberedVolume(const UserDefaults& defaults)
{
    const auto stored = defaults.real(volumeKey).value_or(usualVolume);
    return static_cast<float>(std::clamp(stored, 0.0, 1.0));
}

void rememberVolume(UserDefaults& defaults, const AudioInputDevice& device, int element)
{
    const auto volume = device.volume(element);
    if (volume && *volume > 0)
        defaults.setReal(volumeKey, *volume);
}

bool setSilent(AudioInputDevice& device, UserDefaults& defaults, bool silent)
{
    const auto elements = usableElements(device, InputControl::volume);
    if (elements.isEmpty())
        return false;
    if (silent)
        rememberVolume(defaults, device, elements.first());
    const auto volume = silent ? 0 : rememberedVolume(defaults);
    for (const int element : elements)
        device.setVolume(element, volume);
    return true;
}

}

std::unique_ptr<AudioInputDevice> Microphone::defaultInput(AudioInput& input)
{
    return input.defaultInput();
}

std::optional<bool> Microphone::isMuted(AudioInput& input)
{
    const auto device = defaultInput(input);
    if (!device)
        return {};
    const auto switches = usableElements(*device, InputControl::mute);
    if (!switches.isEmpty()) {
        return std::ranges::all_of(
            switches, [&](int element) { return device->mute(element) == muted; });
    }
    const auto volumes = usableElements(*device, InputControl::volume);
    if (volumes.isEmpty())
        return {};
    return std::ranges::all_of(
        volumes, [&](int element) { return device->volume(element) == 0.0F; });
}

bool Microphone::setMuted(AudioInput& input, UserDefaults& defaults, bool mute)
{
    const auto device = defaultInput(input);
    if (!device)
        return false;
    const auto switches = usableElements(*device, InputControl::mute);
    for (const int element : switches)
        device->setMute(element, mute ? muted : unmuted);
    return !switches.isEmpty() || setSilent(*device, defaults, mute);
}
