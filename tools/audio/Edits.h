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

// Raise the level from silence over the first `frames` frames of a range that starts at `first`, or
// lower it to silence over as many frames that end with `last`: sin^2 from 0 to a quarter turn. The
// frames are in the sound.
void FadeIn(Sound& sound, size_t first, size_t frames);
void FadeOut(Sound& sound, size_t last, size_t frames);

}  // namespace zyl::audio
