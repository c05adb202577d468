#pragma once

#include <cstdint>
#include <vector>

#include "BiquadSection.h"

// The inner loops of the pitch tracker, in one version per vector width. The results of all
// versions are identical, bit by bit.
namespace zyl {

inline constexpr int kShortestSum = 32;   // products summed for the short lags
inline constexpr int kExactLags = 8;      // lags per call of exactSums
inline constexpr int kScreenLags = 32;    // lags per call of screen
inline constexpr int kScreenPeak = 2047;  // largest magnitude of a screen value

// One window of the screen: values rounded to integers q, see LagScreen.
struct ScreenWindow {
  const uint32_t* pairs;       // q[i] in the low half, q[i + 1] in the high half
  const uint32_t* energy;      // sum of q[j]^2 for j < i, modulo 2^32
  const uint32_t* evenEnergy;  // energy[2 i]
  float rms;  // any positive value is valid; the true one gives the tightest bounds
};

inline constexpr int kDecimation = 4;
inline constexpr int kFilterStreams = 4;

// The histories of four runs of the low-pass filter, indexed by level, age and stream. Level 0 is
// the input of the first section, level s the output of section s and the input of the next. Age 0
// is the newest value.
struct FilterStreams {
  double history[4][2][kFilterStreams] = {};
};

struct PitchKernels {
  const char* name;

  // Filters `steps` frames (a multiple of 4) of each stream; stream k starts at in + k * stride.
  // Stores the fourth output of the four frames from `step` in out[(k * stride + step) / 4].
  void (*filter)(const BiquadSection* sections, const double* in, int stride, int steps,
                 double* out, FilterStreams& streams);

  // Computes sums[k] for lag L = firstLag + k, k < kExactLags: the sum of x[j] x[j + L] over
  // j = 0 .. max(32, L) - 1, accumulated in this order from 0. Reads x up to index
  // max(32, L) + L - 1 of the last lag.
  void (*exactSums)(const double* x, int firstLag, double* sums);

  // Stores bounds of the normalised correlation of lags firstLag .. firstLag + 31 in `upper` and
  // `lower`, both indexed by lag; firstLag is a multiple of 32. Returns a set of bits, one for each
  // lag firstLag - 1 + bit that is not ruled out: its upper bound exceeds `floor` and the lower
  // bounds of both neighbours. Reads the entries firstLag - 2 and firstLag - 1, which the previous
  // call has stored.
  uint32_t (*screen)(const ScreenWindow& window, int firstLag, float floor, float* upper,
                     float* lower);
};

// The widest version that this processor supports.
const PitchKernels& BestPitchKernels();

// All versions that this processor supports, narrowest first.
std::vector<const PitchKernels*> RunnablePitchKernels();

}  // namespace zyl
