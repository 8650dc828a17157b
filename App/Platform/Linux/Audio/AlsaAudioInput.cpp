#include "App/Platform/Linux/Audio/AlsaAudioInput.h"

#include "App/Platform/Linux/Audio/AlsaControl.h"
#include "App/Platform/Linux/Audio/AudioInputModule.h"

#include <type_traits>
#include <utility>

namespace {

class AlsaDevice final : public AudioInputDevice {
public:
    explicit AlsaDevice(AlsaCard card)
        : m_card(std::move(card))
        , m_switch(AlsaControl::find(m_card.get(), "Capture Switch"))
        , m_volume(AlsaControl::find(m_card.get(), "Capture Volume"))
    {
    }

    bool hasControl(InputControl control, int element) const override
    {
        if (control == InputControl::mute)
            return m_switch && element == mainElement;
        return m_volume && m_volume->hasElement(element);
    }

    bool isSettable(InputControl control, int element) const override
    {
        const auto& found = control == InputControl::mute ? m_switch : m_volume;
        return hasControl(control, element) && found->isWritable();
    }

    // All channels together: one that goes on listening is no muted input.
    std::optional<quint32> mute(int element) const override
    {
        if (!hasControl(InputControl::mute, element))
            return {};
        const auto listening = m_switch->read(mainElement);
        return listening ? std::optional<quint32>(*listening == 0) : std::nullopt;
    }

    bool setMute(int element, quint32 value) override
    {
        return hasControl(InputControl::mute, element)
            && m_switch->write(mainElement, value == 0 ? 1 : 0);
    }

    std::optional<float> volume(int element) const override
    {
        if (!hasControl(InputControl::volume, element))
            return {};
        return m_volume->read(element);
    }

    bool setVolume(int element, float value) override
    {
        return hasControl(InputControl::volume, element) && m_volume->write(element, value);
    }

private:
    AlsaCard m_card;
    std::optional<AlsaControl> m_switch;
    std::optional<AlsaControl> m_volume;
};

}

std::unique_ptr<AudioInputDevice> AlsaAudioInput::defaultInput()
{
    auto card = openDefaultCard();
    return card ? std::make_unique<AlsaDevice>(std::move(card)) : nullptr;
}

extern "C" Q_DECL_EXPORT AudioInput* corvellaAudioInput(AudioInput*)
{
    return std::make_unique<AlsaAudioInput>().release();
}

static_assert(std::is_same_v<decltype(&corvellaAudioInput), AudioInputFactory>);
