#include "App/Platform/Linux/BoundedAudioInput.h"

#include <utility>

namespace {

// What it stands for is made, asked and destroyed on the thread only.
class BoundedDevice final : public AudioInputDevice {
public:
    using Shared = std::shared_ptr<std::unique_ptr<AudioInputDevice>>;

    BoundedDevice(std::shared_ptr<DeadlineThread> thread, DeadlineThread::Deadline deadline)
        : m_thread(std::move(thread))
        , m_deadline(deadline)
    {
    }

    ~BoundedDevice() override
    {
        m_thread->leave([device = m_device] { device->reset(); });
    }

    Q_DISABLE_COPY_MOVE(BoundedDevice)

    bool find(const std::shared_ptr<AudioInput>& input)
    {
        const auto search = [input, device = m_device] { *device = input->defaultInput(); };
        return m_thread->run(search, m_deadline) && *m_device;
    }

    bool hasControl(InputControl control, int element) const override
    {
        return ask<bool>([=](auto& device) { return device.hasControl(control, element); });
    }
    bool isSettable(InputControl control, int element) const override
    {
        return ask<bool>([=](auto& device) { return device.isSettable(control, element); });
    }
    std::optional<quint32> mute(int element) const override
    {
        return ask<std::optional<quint32>>([=](auto& device) { return device.mute(element); });
    }
    bool setMute(int element, quint32 value) override
    {
        return ask<bool>([=](auto& device) { return device.setMute(element, value); });
    }
    std::optional<float> volume(int element) const override
    {
        return ask<std::optional<float>>([=](auto& device) { return device.volume(element); });
    }
    bool setVolume(int element, float value) override
    {
        return ask<bool>([=](auto& device) { return device.setVolume(element, value); });
    }

private:
    // False or nothing when there is no answer in time.
    template <typename Answer, typename Question>
    Answer ask(Question question) const
    {
        const auto answer = std::make_shared<Answer>();
        const auto work = [=, device = m_device] { *answer = question(**device); };
        return m_thread->run(work, m_deadline) ? *answer : Answer();
    }

    std::shared_ptr<DeadlineThread> m_thread;
    DeadlineThread::Deadline m_deadline;
    Shared m_device = std::make_shared<std::unique_ptr<AudioInputDevice>>();
};

}

BoundedAudioInput::BoundedAudioInput(
    std::shared_ptr<AudioInput> input, std::chrono::milliseconds longest)
    : m_input(std::move(input))
    , m_longest(longest)
    , m_thread(std::make_shared<DeadlineThread>())
{
}

std::unique_ptr<AudioInputDevice> BoundedAudioInput::defaultInput()
{
    const auto deadline = std::chrono::steady_clock::now() + m_longest;
    auto device = std::make_unique<BoundedDevice>(m_thread, deadline);
    return device->find(m_input) ? std::move(device) : nullptr;
}
