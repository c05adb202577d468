// Finds loops that join inaudibly and keep level and timbre.
//
// Ends are spread over the sustained part of the sound. For each, the sound around the end is
// compared with the sound around every possible start,
//
//   d(a) = 1 - 2 sum x[a + i] x[end + i] / (sum x[a + i]^2 + sum x[end + i]^2)
//
// summed over all channels, first on values averaged to a lower rate and then exactly around the
// minima of each range of lengths. That gives the length of a loop. Moving start and end together
// keeps the length, so the place is chosen where the prediction residual after the jump is smallest
// (see Seam.h). Candidates are ranked by
//
//   cost = seam + 1.5 |level step| + spectrum + 20 d + 3 octaves below 1 s + ...
//
// in decibels, where a seam below 0 counts as 0.
#pragma once

#include <cstddef>
#include <vector>

#include "audio/Seam.h"
#include "audio/Sound.h"

namespace zyl::audio {

struct LoopWish {
  size_t shortestFrames = 0;   // 0: 0.3 s, or a sixth of a shorter sound
  double periodFrames = 0;     // of the note; 0 if it has none
  size_t crossfadeFrames = 0;  // that the loop is to be crossfaded with; 0: none
  size_t most = 1;             // loops to return
};

struct FoundLoop {
  Loop loop;
  double seamDb;  // of the worst channel, without crossfade
  Steps steps;
  double likeness;  // 1 - d: of the sound around start and end, up to 1
  double cost;      // lower is better
};

// The best loops that differ from each other, best first; none for silence and for sounds shorter
// than the wanted loop. Requires a rate above 0.
std::vector<FoundLoop> FindLoops(const Sound& sound, const LoopWish& wish);

}  // namespace zyl::audio
