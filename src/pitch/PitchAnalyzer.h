#pragma once

#include <atomic>
#include <cstdint>

namespace zyl {

// Receives the count of input frames analysed since the last report. Called on the analysing
// thread, at most once per 12800 frames and once at the end of a run.
class PitchProgress {
 public:
  virtual ~PitchProgress() = default;
  virtual void AddDone(uint32_t frames) = 0;
};

}  // namespace zyl

// Computes the pitch track of one signal: source (`ReadFrame`, `AtEnd`), result (`StoreValue`) and
// method (`Analyze`) are all left to subclasses. One object serves one signal and one run. All
// members but `abort` belong to the analysing thread.
class PitchAnalyzer {
 public:
  // Set by any thread to stop `Analyze` at its next block boundary.
  std::atomic<bool> abort{false};

  PitchAnalyzer() = default;
  PitchAnalyzer(const PitchAnalyzer&) = delete;
  PitchAnalyzer& operator=(const PitchAnalyzer&) = delete;
  virtual ~PitchAnalyzer() = default;

  // True when the run ended without `abort`; after false the stored values are incomplete.
  // `progress` may be null.
  virtual bool Analyze(zyl::PitchProgress* progress) = 0;

  // The next input frame, full scale 1. Called only while `AtEnd` is false.
  virtual double ReadFrame() = 0;
  virtual bool AtEnd() = 0;

  // Takes value `index` of the track: a period in input frames, or 0.
  virtual void StoreValue(int index, double value) = 0;

  // Limits are given as pitches: the highest expected one bounds the period from below.
  virtual void SetMinPeriod(int /*frequencyHz*/, double /*sampleRateHz*/) {}
  virtual void SetMaxPeriod(int /*frequencyHz*/, double /*sampleRateHz*/) {}

  // Mean square below which a block counts as silent.
  virtual void SetThreshold(double /*meanSquare*/) {}
};
