// Sounds by a helper program that plays one and ends.
#pragma once

#include "App/Platform/SoundPlayer.h"

class HelperSoundPlayer final : public SoundPlayer {
public:
    // The helper takes the sound's name as its only argument.
    explicit HelperSoundPlayer(QString helper);

    void play(const QString& name) override;

private:
    QString m_helper;
};
