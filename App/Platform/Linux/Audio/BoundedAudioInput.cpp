#include "App/Platform/Linux/Audio/BoundedAudioInput.h"

#include <utility>

namespace {

// What is made, asked and destroyed on the thread only, and in this order.
struct Held {
    std::shared_ptr<AudioInput> input;
    std::unique_ptr<AudioInputDevice> device = nullptr;
};

class BoundedDevice final : public AudioInputDevice {
public:
    BoundedDevice(std::shared_ptr<DeadlineThread> thread, DeadlineThread::Deadline deadline,
        const std::shared_ptr<AudioInput>& input)
        : m_thread(std::move(thread))
        , m_deadline(deadline)
        , m_held(std::make_shared<Held>(Held { input }))
    {
    }

    ~BoundedDevice() override
    {
        m_thread->leave([held = m_held] { held->device.reset(); });
    }

    Q_DISABLE_COPY_MOVE(BoundedDevice)

    bool find()
    {
        const auto search = [held = m_held] { held->device = held->input->defaultInput(); };
        return m_thread->run(search, m_deadline) && m_held->device;
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
        const auto work = [=, held = m_held] { *answer = question(*held->device); };
        return m_thread->run(work, m_deadline) ? *answer : Answer();
    }

    std::shared_ptr<DeadlineThread> m_thread;
    DeadlineThread::Deadline m_deadline;
    std::shared_ptr<Held> m_held;
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
    auto device = std::make_unique<BoundedDevice>(m_thread, deadline, m_input);
    return device->find() ? std::move(device) : nullptr;
}
