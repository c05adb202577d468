#pragma once

#include <array>

#include "BiquadSection.h"
#include "PitchKernels.h"

namespace zyl {

// Sixth-order Butterworth low-pass in three sections, the tracker's anti-alias filter. Every output
// equals, bit by bit, that of running the sections in series, term by term in the order of their
// formula, in double precision.
class LowpassFilter {
 public:
  // Clears the state. `cutoff` is a fraction of the Nyquist frequency. For cutoffs outside (0, 1)
  // and for NaN the filter passes its input through (the design's limit at 1).
  void Design(double cutoff);

  // Filters `count` frames, a multiple of 4, and stores every fourth output in `out`.
  void Decimate(const double* in, int count, double* out, const PitchKernels& kernels);

 private:
  // The history of one stream, laid out as in FilterStreams.
  using History = std::array<std::array<double, 2>, 4>;

  static History StreamOf(const FilterStreams& streams, int stream);
  int DecimateStreams(const double* in, int count, double* out, const PitchKernels& kernels);
  void DecimateOne(const double* in, int count, double* out);

  std::array<BiquadSection, 3> sections_;
  History history_{};
  bool passThrough_ = true;
  int warmUpFrames_ = 0;
};

}  // namespace zyl
