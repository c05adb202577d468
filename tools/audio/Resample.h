// Converts a sound to another sample rate.
//
// Interpolation with the longest sinc filter of libsamplerate. Frame n of the result is the sound
// at the time n / rate, so nothing is delayed, and there are round(frames * rate / old rate)
// frames.
//
// The filter needs the sound on both sides of a frame. Outside the file that is silence, but where
// a loop starts with the first frame or ends with the last one, it is what the loop plays there.
// Otherwise such a loop would click: its ends would contain the filter's response to the edge.
#pragma once

#include <optional>

#include "audio/Seam.h"
#include "audio/Sound.h"

namespace zyl::audio {

// Whether the ratio of the rates is one that the filter supports: 1/256 to 256.
bool CanResample(double fromHz, double toHz);

// Both rates are whole numbers with a supported ratio; the loop is one of the sound.
Sound Resampled(const Sound& sound, double rateHz, const std::optional<Loop>& loop);

}  // namespace zyl::audio
