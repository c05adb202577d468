#pragma once

#include <cstdint>
#include <vector>

#include "BiquadSection.h"

// The inner loops of the pitch tracker, in one version per vector width of the processor. All
// versions give the same results, bit by bit.
namespace zyl {

inline constexpr int kShortestSum = 32;   // products summed for the short lags
inline constexpr int kExactLags = 8;      // lags that one exact call computes
inline constexpr int kScreenLags = 32;    // lags that one screen call bounds
inline constexpr int kScreenPeak = 2047;  // largest magnitude of a screen value

// One window of the screen: values rounded to integers q, see LagScreen.
struct ScreenWindow {
  const uint32_t* pairs;       // q[i] in the low half, q[i + 1] in the high half
  const uint32_t* energy;      // sum of q[j]^2 for j < i, modulo 2^32
  const uint32_t* evenEnergy;  // energy[2 i]
  float rms;                   // any positive figure is right, one near the true one bounds best
};

inline constexpr int kDecimation = 4;
inline constexpr int kFilterStreams = 4;

// Histories of four runs of the low-pass filter. Level 0 is the input of the first section, level s
// the output of section s and input of the next; age 0 is the newest value.
struct FilterStreams {
  double history[4][2][kFilterStreams] = {};
};

struct PitchKernels {
  const char* name;

  // Filters `steps` frames (a multiple of 4) of each stream; stream k starts at in + k * stride.
  // Every fourth output goes to out[(k * stride + step) / 4], rising steps, streams side by side.
  void (*filter)(const BiquadSection* sections, const double* in, int stride, int steps,
                 double* out, FilterStreams& streams);

  // sums[k] for lag L = firstLag + k: the sum of x[j] x[j + L] over j = 0 .. max(32, L) - 1, added
  // up in rising order of j from 0. Reads x up to index max(32, L) + L - 1 of the last lag.
  void (*exactSums)(const double* x, int firstLag, double* sums);

  // Bounds of the normalised correlation of lags firstLag .. firstLag + 31 (a multiple of 32) into
  // `upper` and `lower`, both indexed by lag. Answers the lags firstLag - 1 + bit that are not
  // ruled out: their upper bound exceeds `floor` and both neighbours' lower bounds. The entries at
  // firstLag - 2 and firstLag - 1 are read, from the call before.
  uint32_t (*screen)(const ScreenWindow& window, int firstLag, float floor, float* upper,
                     float* lower);
};

// The widest version that this processor runs.
const PitchKernels& BestPitchKernels();

// All versions that this processor runs, narrowest first.
std::vector<const PitchKernels*> RunnablePitchKernels();

}  // namespace zyl
