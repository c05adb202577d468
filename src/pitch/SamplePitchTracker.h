#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "PitchTracker.h"

namespace zyl {

// Sound data to analyse: one buffer per channel, frames consecutive, values signed little-endian of
// 1 to 4 bytes. The buffers belong to the caller and stay valid and unchanged during a run.
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
  int findPitchLen = 10;   // blocks to each side in which octave errors are judged
  double rmsThres = 1e-5;  // mean square of silence
};

}  // namespace zyl

// Tracks the sum of a sample's channels, full scale 1 each. A source without channels or buffers,
// or of another width, is one without frames.
class SamplePitchTracker : public PitchTracker {
 public:
  explicit SamplePitchTracker(const zyl::PitchSource& source, double processingRateHz = 44100.0);

  double ReadFrame() override;
  bool AtEnd() override;
  void StoreValue(int index, double value) override;

  const zyl::PitchSource& Source() const { return source_; }

  // The track, frameCount / 128 + 1 values, all 0 before the analysis.
  std::vector<float> output;

 protected:
  int ReadFrames(double* frames, int count) override;

 private:
  zyl::PitchSource source_;
  int32_t cursor_ = 0;  // next frame
};

namespace zyl {

// The whole job for one sample: settings, analysis, two passes of octave correction, and smoothing
// if asked for. Answers the tracker's output, or nothing when the tracker was aborted. The tracker
// is the caller's, so that other threads can be given it before the analysis and robbed of it
// after.
std::optional<std::vector<float>> AnalyzePitch(SamplePitchTracker& tracker,
                                               const PitchSettings& settings,
                                               PitchProgress* progress);

}  // namespace zyl
