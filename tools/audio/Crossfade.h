// Rewrites a sound before a loop's end so that the loop joins without a click.
#pragma once

#include <cstddef>

#include "audio/Seam.h"
#include "audio/Sound.h"

namespace zyl::audio {

// The longest possible crossfade; it needs that number of frames before the loop's start.
size_t LongestCrossfade(const Loop& loop);

// Over the last `frames` frames of the loop, fades from the sound before its end to the sound
// before its start. After the loop, fades from the sound after its start to the sound after its
// end, as far as the file continues, so that playing on after the loop doesn't click either. The
// weights keep the level: depending on the correlation of the two sections in each channel, their
// sum is 1 (similar sounds, equal gain) or the sum of their squares (unrelated sounds, equal
// power). `frames` is at most LongestCrossfade. Returns the number of changed frames, which start
// at loop.last + 1 - frames.
size_t CrossfadeLoop(Sound& sound, const Loop& loop, size_t frames);

}  // namespace zyl::audio
