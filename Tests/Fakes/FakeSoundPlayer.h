#pragma once

#include "App/Platform/SoundPlayer.h"

#include <QStringList>

struct FakeSoundPlayer final : SoundPlayer {
    void play(const QString& name) override { played << name; }

    QStringList played;
};
