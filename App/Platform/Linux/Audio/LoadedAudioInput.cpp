#include "App/Platform/Linux/Audio/LoadedAudioInput.h"

#include "App/Platform/Linux/Audio/AudioInputModule.h"

#include <QLibrary>

#include <utility>

LoadedAudioInput::LoadedAudioInput(QString module, std::shared_ptr<AudioInput> otherwise)
    : m_module(std::move(module))
    , m_otherwise(std::move(otherwise))
{
}

std::unique_ptr<AudioInputDevice> LoadedAudioInput::defaultInput()
{
    if (!m_input)
        load();
    auto* input = m_input ? m_input.get() : m_otherwise.get();
    return input ? input->defaultInput() : nullptr;
}

void LoadedAudioInput::load()
{
    const auto symbol = QLibrary::resolve(m_module, audioInputFactory);
    const auto factory = reinterpret_cast<AudioInputFactory>(symbol);
    if (factory)
        m_input.reset(factory(m_otherwise.get()));
}
