// Changes of a sound's level and channels.
#pragma once

#include <cstddef>

#include "audio/Sound.h"

namespace zyl::audio {

// One channel.
Sound OnlyChannel(const Sound& sound, size_t channel);
// The mean of all channels. The sound has at least one.
Sound Mixed(const Sound& sound);

void Scale(Sound& sound, double factor);

// Fade in from silence over `frames` frames from `first`, or out to silence over `frames` frames up
// to `last`, with a gain of sin^2 from 0 to a quarter turn. The frames must be within the sound.
void FadeIn(Sound& sound, size_t first, size_t frames);
void FadeOut(Sound& sound, size_t last, size_t frames);

}  // namespace zyl::audio
