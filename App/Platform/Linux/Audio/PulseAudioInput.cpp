#include "App/Platform/Linux/Audio/PulseAudioInput.h"

#include "App/Platform/Linux/Audio/AudioInputModule.h"
#include "App/Platform/Linux/Audio/PulseConnection.h"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>

using namespace std::chrono_literals;

namespace {

// A server that hangs leaves time to ask whatever there is without one.
constexpr auto longestConnecting = 100ms;
constexpr auto longestOperation = 150ms;

class PulseDevice final : public AudioInputDevice {
public:
    PulseDevice(std::unique_ptr<PulseConnection> connection, const PulseConnection::Source& source)
        : m_connection(std::move(connection))
        , m_source(source)
    {
    }

    bool hasControl(InputControl control, int element) const override
    {
        return control == InputControl::mute ? element == mainElement : isVolume(element);
    }

    bool isSettable(InputControl control, int element) const override
    {
        // Sources mute in the server where the device cannot, whatever their flags say.
        return hasControl(control, element);
    }

    std::optional<quint32> mute(int element) const override
    {
        return element == mainElement ? std::optional<quint32>(m_source.isMuted) : std::nullopt;
    }

    bool setMute(int element, quint32 value) override
    {
        const bool muted = value != 0;
        if (element != mainElement || !m_connection->setMuted(m_source.index, muted))
            return false;
        m_source.isMuted = muted;
        return true;
    }

    std::optional<float> volume(int element) const override
    {
        if (!isVolume(element))
            return {};
        const auto value = element == mainElement ? pa_cvolume_max(&m_source.volume)
                                                  : m_source.volume.values[element - 1];
        return std::min(static_cast<float>(value) / PA_VOLUME_NORM, 1.0F);
    }

    bool setVolume(int element, float value) override
    {
        if (!isVolume(element))
            return false;
        auto volume = m_source.volume;
        const auto level = std::lround(std::clamp(value, 0.0F, 1.0F) * PA_VOLUME_NORM);
        if (element == mainElement)
            pa_cvolume_set(&volume, volume.channels, static_cast<pa_volume_t>(level));
        else
            volume.values[element - 1] = static_cast<pa_volume_t>(level);
        if (!m_connection->setVolume(m_source.index, volume))
            return false;
        m_source.volume = volume;
        return true;
    }

private:
    // Two channels have no volume but their own. More than two have one together as well: whoever
    // knows of the first two only must not leave the others listening.
    bool isVolume(int element) const
    {
        const int channels = m_source.volume.channels;
        return element == mainElement ? channels == 1 || channels > 2
                                      : channels > 1 && element > 0 && element <= channels;
    }

    std::unique_ptr<PulseConnection> m_connection;
    PulseConnection::Source m_source;
};

}

PulseAudioInput::PulseAudioInput(AudioInput* withoutServer)
    : m_withoutServer(withoutServer)
{
}

std::unique_ptr<AudioInputDevice> PulseAudioInput::defaultInput()
{
    const auto start = std::chrono::steady_clock::now();
    auto connection = std::make_unique<PulseConnection>(start + longestConnecting);
    if (!connection->isConnected())
        return m_withoutServer ? m_withoutServer->defaultInput() : nullptr;
    connection->setDeadline(start + longestOperation);
    const auto source = connection->defaultSource();
    if (!source || source->isMonitor)
        return nullptr;
    return std::make_unique<PulseDevice>(std::move(connection), *source);
}

extern "C" Q_DECL_EXPORT AudioInput* corvellaAudioInput(AudioInput* otherwise)
{
    return std::make_unique<PulseAudioInput>(otherwise).release();
}

static_assert(std::is_same_v<decltype(&corvellaAudioInput), AudioInputFactory>);
