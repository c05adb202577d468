// Rewrites a sound before a loop's end so that the loop joins without a click.
#pragma once

#include <cstddef>

#include "audio/Seam.h"
#include "audio/Sound.h"

namespace zyl::audio {

// The longest crossfade that fits: the loop's start needs as many frames before it.
size_t LongestCrossfade(const Loop& loop);

// Fades from the sound before the loop's end to the sound before its start over the last `frames`
// frames of the loop, and back from the sound after its start to the sound after its end, as far as
// the file continues there, so that playing on after the loop does not click either. The weights
// keep the level: they add up to 1 for similar sounds (equal gain), their squares for unrelated
// ones (equal power), by the correlation of the two sections in each channel. `frames` is at most
// LongestCrossfade. Returns the frames that changed: from loop.last + 1 - frames on, as many as
// returned.
size_t CrossfadeLoop(Sound& sound, const Loop& loop, size_t frames);

}  // namespace zyl::audio
