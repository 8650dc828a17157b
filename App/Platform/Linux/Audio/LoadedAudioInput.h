// An audio input out of a module that is loaded when it is first asked for, as are the libraries
// that nothing else needs.
#pragma once

#include "App/Platform/AudioInput.h"

#include <QString>

class LoadedAudioInput final : public AudioInput {
public:
    // The other is asked where the module is missing, or finds nobody to ask.
    explicit LoadedAudioInput(QString module, std::shared_ptr<AudioInput> otherwise = nullptr);

    std::unique_ptr<AudioInputDevice> defaultInput() override;

private:
    void load();

    QString m_module;
    std::shared_ptr<AudioInput> m_otherwise;
    std::unique_ptr<AudioInput> m_input; // Its module is never unloaded.
};
