#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "PitchTracker.h"

namespace zyl {

// Sound data to analyse: one buffer per channel with consecutive frames; values are signed
// little-endian integers of 1 to 4 bytes. The caller owns the buffers and must keep them valid and
// unchanged during a run.
struct PitchSource {
  const std::byte* const* channelBuffers = nullptr;
  int channelCount = 0;  // the first 16 are used
  int bytesPerSample = 0;
  int32_t frameCount = 0;
  double rateHz = 0;
};

struct PitchSettings {
  int minPeriodHz = 2000;  // highest expected pitch
  int maxPeriodHz = 50;    // lowest expected pitch
  int smoothLength = 0;    // blocks to each side, 0 for no smoothing
  int findPitchLen = 10;   // blocks to each side that octave correction considers
  double rmsThres = 1e-5;  // mean square of silence
};

}  // namespace zyl

// Tracks the pitch of the sum of a sample's channels, each with full scale 1. A source without
// channels, with a null buffer or with another width is treated as empty.
class SamplePitchTracker : public PitchTracker {
 public:
  explicit SamplePitchTracker(const zyl::PitchSource& source, double processingRateHz = 44100.0);

  double ReadFrame() override;
  bool AtEnd() override;
  void StoreValue(int index, double value) override;

  const zyl::PitchSource& Source() const { return source_; }

  // The track: frameCount / 128 + 1 values, all 0 before the analysis.
  std::vector<float> output;

 protected:
  int ReadFrames(double* frames, int count) override;

 private:
  zyl::PitchSource source_;
  int32_t cursor_ = 0;  // next frame
};

namespace zyl {

// Runs the complete job for one sample: settings, analysis, two passes of octave correction, and
// smoothing if requested. Returns the track, or nullopt if aborted. The caller owns the tracker, so
// that other threads can set its `abort` during the call.
std::optional<std::vector<float>> AnalyzePitch(SamplePitchTracker& tracker,
                                               const PitchSettings& settings,
                                               PitchProgress* progress);

}  // namespace zyl
