// Levels of a recording. Decibels are relative to full scale; silence is -infinity.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "audio/Sound.h"

namespace zyl::audio {

double Decibels(double amplitude);
double FromDecibels(double decibels);

// 0 for an empty section.
double MeanSquare(Channel section);

// The largest magnitude of all channels; 0 for an empty sound.
double Peak(const Sound& sound);

// The mean square of all channels; 0 for an empty sound.
double Power(const Sound& sound);

// The loudest 400 ms in LUFS: K-weighted mean square, summed over the channels (ITU-R BS.1770-4,
// momentary loudness, without gating and channel weights). Shorter sounds are
// padded with silence. Requires a rate above 0.
double Loudness(const Sound& sound);

// First and last frame at which a channel exceeds `thresholdDb` relative to the peak.
struct FrameRange {
  size_t first;
  size_t last;
};
std::optional<FrameRange> SoundingFrames(const Sound& sound, double thresholdDb);

// The RMS amplitude of consecutive blocks over all channels; the last block may be shorter.
std::vector<float> BlockLevels(const Sound& sound, size_t blockFrames);

}  // namespace zyl::audio
