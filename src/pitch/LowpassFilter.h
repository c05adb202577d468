#pragma once

#include <array>

#include "BiquadSection.h"
#include "PitchKernels.h"

namespace zyl {

// Sixth-order Butterworth low-pass in three sections, the tracker's anti-alias filter. Every
// output has the value that running the sections one after the other, term by term in the order of
// their formula, gives in double precision.
class LowpassFilter {
 public:
  // Clears the state. `cutoff` is a fraction of the Nyquist frequency; at 1 and above, at 0 and
  // below, and for NaN the filter passes its input through (the design's limit at 1).
  void Design(double cutoff);

  // Filters `count` frames, a multiple of 4, and keeps every fourth output.
  void Decimate(const double* in, int count, double* out, const PitchKernels& kernels);

 private:
  // One stream's histories, as in FilterStreams.
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
