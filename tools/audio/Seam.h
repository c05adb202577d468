// Rates how a loop sounds: its seam, and the steps of level and spectrum there.
#pragma once

#include <cstddef>
#include <vector>

#include "audio/Prediction.h"
#include "audio/Sound.h"

namespace zyl::audio {

// First and last frame played.
struct Loop {
  size_t first;
  size_t last;

  size_t Length() const { return last - first + 1; }
};

// Values after the jump that a discontinuity at it affects.
constexpr size_t kSeamFrames = kPredictionOrder + 1;

// The largest prediction residual within kSeamFrames values after the jump from the last to the
// first frame, in dB relative to the 99.5th percentile of the residual elsewhere in the loop. The
// predictor is fitted to 0.1 s before the jump and 0.1 s after it. 0 and less is inaudible: the
// jump is no less predictable than the sound itself. Independent of the level of the sound.
// The loop has at least 2 * kSeamFrames frames, all of them in the channel.
double SeamDecibels(Channel channel, double rateHz, const Loop& loop);
// Of the worst channel.
double SeamDecibels(const Sound& sound, const Loop& loop);
// The same, with the residual of at most 0.3 s of the loop: for comparing many loops.
double RoughSeamDecibels(const Sound& sound, const Loop& loop);

// How the sound after the loop's start differs from the sound before its end.
struct Steps {
  double levelDb;     // level at the start minus level at the end, of the channel that differs most
  double spectrumDb;  // mean difference of the octave levels, without the difference of the level
};
Steps StepsOf(const Sound& sound, const Loop& loop);

}  // namespace zyl::audio
