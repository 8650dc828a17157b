// What a module with an audio input exports, and whoever loads it looks for.
#pragma once

class AudioInput;

// The new input is the caller's. The other, if there is one, is asked where the module finds nobody
// to ask.
using AudioInputFactory = AudioInput* (*)(AudioInput* otherwise);

constexpr auto audioInputFactory = "corvellaAudioInput";
