// The pitch of a recorded note.
//
// The period is the median of the pitch track's blocks that have one. If the fundamental is weak,
// or outside the tracker's range, this is a multiple or a fraction of the true period. So the sound
// is checked at some places where the track agrees with the median: the likeness of the sound to
// itself at lag L,
//
//   s(L) = 2 sum x[j] x[j + L] / (sum x[j]^2 + sum x[j + L]^2)
//
// is computed at the best lag near each multiple and fraction. The period is the shortest of these
// with nearly the highest likeness. A parabola through s gives this lag more precisely than the
// track, so steady notes are tuned by it. For other notes the median of the track is used, because
// the places show only single moments.
//
// Above the tracker's range (2 kHz) a track has multiples of the period, or none. There the period
// is the first peak of s(L) at places soon after the loudest one, since high notes fade quickly.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "audio/Sound.h"

namespace zyl::audio {

struct RootPitch {
  double hertz;
  double voiced;       // share of the track that has a pitch, 0 to 1
  double spreadCents;  // between the 16th and the 84th percentile of the track, halved
  double likeness;     // of neighbouring periods, up to 1
  bool sure;           // repeats well and steadily enough to be reliable
};

// Frames per value of a pitch track.
constexpr size_t kTrackBlock = 128;
constexpr size_t kFewestPitchFrames = 4096;

// `track` holds a period in frames for each block of kTrackBlock frames, 0 where there is none.
// Returns nothing and sets `reason` if there is no pitch.
std::optional<RootPitch> FindRootPitch(const Sound& sound, std::span<const float> track,
                                       std::string& reason);

}  // namespace zyl::audio
