// Short alert sounds.
#pragma once

#include <QString>

class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;

    // Starts the sound of that name and returns at once; a sound nobody knows is not played.
    virtual void play(const QString& name) = 0;
};
