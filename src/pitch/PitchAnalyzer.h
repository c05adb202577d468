#pragma once

#include <atomic>
#include <cstdint>

namespace zyl {

// Receives the number of input frames analysed since the last report. Called on the analysing
// thread, once per 12800 frames and at the end of a run for the rest.
class PitchProgress {
 public:
  virtual ~PitchProgress() = default;
  virtual void AddDone(uint32_t frames) = 0;
};

}  // namespace zyl

// Computes the pitch track of one signal. Subclasses implement the source (`ReadFrame`, `AtEnd`),
// the destination (`StoreValue`) and the method (`Analyze`). An object analyses one signal, once.
// Only the analysing thread may use members other than `abort`.
class PitchAnalyzer {
 public:
  // Any thread may set this to stop `Analyze` at the next block boundary.
  std::atomic<bool> abort{false};

  PitchAnalyzer() = default;
  PitchAnalyzer(const PitchAnalyzer&) = delete;
  PitchAnalyzer& operator=(const PitchAnalyzer&) = delete;
  virtual ~PitchAnalyzer() = default;

  // Returns false if stopped by `abort`; the stored values are then incomplete. `progress` may be
  // null.
  virtual bool Analyze(zyl::PitchProgress* progress) = 0;

  // Returns the next input frame, full scale 1. Called only while `AtEnd` is false.
  virtual double ReadFrame() = 0;
  virtual bool AtEnd() = 0;

  // Stores value `index` of the track: a period in input frames, or 0 for unvoiced blocks.
  virtual void StoreValue(int index, double value) = 0;

  // The limits are frequencies: the highest expected pitch gives the shortest period.
  virtual void SetMinPeriod(int /*frequencyHz*/, double /*sampleRateHz*/) {}
  virtual void SetMaxPeriod(int /*frequencyHz*/, double /*sampleRateHz*/) {}

  // The mean square below which a block is silent.
  virtual void SetThreshold(double /*meanSquare*/) {}
};
