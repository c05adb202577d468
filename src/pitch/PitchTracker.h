#pragma once

#include <array>
#include <vector>

#include "LagScreen.h"
#include "LowpassFilter.h"
#include "PitchAnalyzer.h"
#include "PitchKernels.h"

// Time-domain period tracker. The input is low-pass filtered and decimated by 4; for every hop of
// 128 frames the normalised autocorrelation of the 1024 decimated values is scanned for its first
// strong peak. Subclasses provide the source and the destination of the values.
//
// For every signal, each stored value equals, bit by bit, the result of evaluating the formulas
// term by term in double precision. See docs/pitch.md for the formulas and PitchKernels.cpp for the
// shortcuts.
class PitchTracker : public PitchAnalyzer {
 public:
  // The initial period limits are 0.5 ms and 20 ms at `processingRateHz`.
  explicit PitchTracker(double processingRateHz = 44100.0);

  bool Analyze(zyl::PitchProgress* progress) override;

  // Both limits are rate / frequency frames, 0 for a frequency of 0. With a shortest period of 2
  // frames or less (including 0 and negative ones) the low-pass filter is off and the scan starts
  // at its shortest lag. With a longest period not above the shortest one nothing is scanned.
  void SetMinPeriod(int frequencyHz, double sampleRateHz) override;
  void SetMaxPeriod(int frequencyHz, double sampleRateHz) override;

  // With a threshold that is NaN or not above 0, no block is silent.
  void SetThreshold(double meanSquare) override;

  // For tests and benchmarks: the vector width to use instead of the widest.
  void UseKernels(const zyl::PitchKernels& kernels) { kernels_ = &kernels; }

 protected:
  // Reads up to `count` frames, fewer only at the end, and returns their number. The default calls
  // `AtEnd` and `ReadFrame` for each; sources with a faster way override it.
  virtual int ReadFrames(double* frames, int count);

 private:
  static constexpr double kFirstBest = 0.5;
  static constexpr int kBoundsBefore = 2;  // entries before lag 0 that the screen may read

  // The highest peak found by a scan; its period is in decimated values.
  struct Peak {
    double value = kFirstBest;
    double period = 1.0;
  };

  int ReadDecimated(double* values, int count);
  void PrepareScreen(const double* values, int first, int windows);
  double EstimatePeriod(const double* window, int screenStart);
  bool TryLag(int lag, Peak& best);
  void PrepareLag(int lag);
  double Correlation(int lag) const;
  void ExtendEnergy(int count);

  double minPeriodFrames_;
  double maxPeriodFrames_;
  double silenceThreshold_ = 1e-5;
  int minLag_ = 0;
  int maxLag_ = 0;
  const zyl::PitchKernels* kernels_;
  zyl::LowpassFilter filter_;
  zyl::LagScreen screen_;
  bool screened_ = false;
  std::vector<double> frames_;

  // For the current window: the running sums of squares, computed as far as needed, the sums of
  // products of lags sumsFrom_ to sumsTo_ - 1, and the screen's bounds of the correlations.
  const double* window_ = nullptr;
  int energyCount_ = 0;
  int sumsFrom_ = 0;
  int sumsTo_ = 0;
  std::array<double, 1024> cumEnergy_{};
  std::array<double, 512 + zyl::kExactLags> sums_{};
  std::array<float, 512 + kBoundsBefore> upper_{};
  std::array<float, 512 + kBoundsBefore> lower_{};
};
