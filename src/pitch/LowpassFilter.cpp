// Butterworth sections from the cutoff f (fraction of Nyquist), for k = 1..3 with N = 3:
//   d = 2 sin((2k - 1) pi / 4N)    w = f pi    t = d sin w
//   a2 = (t - 2) / (t + 2)    a1 = cos w (1 - a2)    b0 = b2 = (1 - a1 - a2) / 4    b1 = 2 b0
//
// A recursion cannot be split among the lanes of a vector, but four streams of the input can run in
// parallel. Only the first stream starts from the true state; the others start from rest and warm
// up on the frames before their part. The filter's response decays, and because values are rounded,
// two runs over the same input reach bit-identical states and stay identical from there. Every
// stream is checked for this; until its state matches, its frames are filtered again from the final
// state of the stream before. The outputs therefore always equal those of a single run.

#include "LowpassFilter.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyl {
namespace {

constexpr double kPi = 3.14159265359;  // the value that the design uses, not full precision
constexpr int kSnapshotFrames = 256;

// The number of frames after which two runs from different states mostly agree to the last bit:
// measured as about 700 for 2 kHz at 44.1 kHz, increasing slightly faster than 1 / cutoff.
int WarmUpFrames(double cutoff) {
  const double frames = std::min(92.0 / cutoff, 1e6);
  return static_cast<int>(frames) / kDecimation * kDecimation + kDecimation;
}

template <class History>
bool SameBits(const History& a, const History& b) {
  using Bits = std::array<uint64_t, sizeof(History) / sizeof(uint64_t)>;
  return std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b);
}

}  // namespace

void LowpassFilter::Design(double cutoff) {
  sections_ = {};
  history_ = {};
  passThrough_ = !(cutoff > 0.0 && cutoff < 1.0);
  if (passThrough_) return;
  warmUpFrames_ = WarmUpFrames(cutoff);
  const double sectionCount = static_cast<double>(sections_.size());
  const double w = cutoff * kPi;
  double oddNumber = 1;  // 2k - 1
  for (BiquadSection& section : sections_) {
    const double d = 2.0 * std::sin(oddNumber * kPi / (4.0 * sectionCount));
    const double t = d * std::sin(w);
    const double g = (t - 2.0) / (t + 2.0);
    const double h = std::cos(w) * (1.0 - g);
    const double m = (1.0 - h - g) * 0.25;
    section.b0 = m;
    section.b1 = 2.0 * m;
    section.b2 = m;
    section.a1 = h;
    section.a2 = g;
    oddNumber += 2;
  }
}

void LowpassFilter::Decimate(const double* in, int count, double* out,
                             const PitchKernels& kernels) {
  if (passThrough_) {
    for (int i = 0; i < count / kDecimation; ++i) out[i] = in[(i + 1) * kDecimation - 1];
    return;
  }
  const int done = DecimateStreams(in, count, out, kernels);
  DecimateOne(in + done, count - done, out + done / kDecimation);
}

void LowpassFilter::DecimateOne(const double* in, int count, double* out) {
  // Local copies of the state let the three recursions overlap in the processor's pipeline.
  const std::array<BiquadSection, 3> sections = sections_;
  History history = history_;
  for (int i = 0; i < count; i += kDecimation) {
    double value = 0;
    for (int phase = 0; phase < kDecimation; ++phase) {
      value = in[i + phase];
      for (size_t s = 0; s < sections.size(); ++s) {
        const BiquadSection& c = sections[s];
        const double next = c.b0 * value + c.b1 * history[s][0] + c.b2 * history[s][1] +
                            c.a1 * history[s + 1][0] + c.a2 * history[s + 1][1];
        history[s] = {value, history[s][0]};
        value = next;
      }
      history[3] = {value, history[3][0]};
    }
    out[i / kDecimation] = value;
  }
  history_ = history;
}

LowpassFilter::History LowpassFilter::StreamOf(const FilterStreams& streams, int stream) {
  History history;
  for (size_t level = 0; level < history.size(); ++level) {
    for (size_t age = 0; age < 2; ++age) {
      history[level][age] = streams.history[level][age][stream];
    }
  }
  return history;
}

int LowpassFilter::DecimateStreams(const double* in, int count, double* out,
                                   const PitchKernels& kernels) {
  const int stride = (count - warmUpFrames_) / kFilterStreams / kDecimation * kDecimation;
  if (stride < warmUpFrames_) return 0;

  // Every stream filters stride + warm-up frames: the first from the current state, the others from
  // rest. The stream before it overwrites what a stream outputs during its warm-up.
  FilterStreams streams;
  for (size_t level = 0; level < history_.size(); ++level) {
    for (size_t age = 0; age < 2; ++age) {
      streams.history[level][age][0] = history_[level][age];
    }
  }
  std::vector<FilterStreams> snapshots;
  std::vector<int> snapshotSteps;
  const int steps = stride + warmUpFrames_;
  for (int step = 0, next = warmUpFrames_; step < steps;
       step = next, next = std::min(step + kSnapshotFrames, steps)) {
    kernels.filter(sections_.data(), in + step, stride, next - step, out + step / kDecimation,
                   streams);
    snapshots.push_back(streams);
    snapshotSteps.push_back(next);
  }

  history_ = StreamOf(streams, 0);
  for (int k = 1; k < kFilterStreams; ++k) {
    // Filter again from the true state until it equals the stream's state.
    size_t met = 0;
    while (!SameBits(history_, StreamOf(snapshots[met], k)) && met + 1 < snapshots.size()) {
      const int from = k * stride + snapshotSteps[met];
      const int frames = snapshotSteps[met + 1] - snapshotSteps[met];
      DecimateOne(in + from, frames, out + from / kDecimation);
      ++met;
    }
    if (SameBits(history_, StreamOf(snapshots[met], k))) history_ = StreamOf(streams, k);
  }
  return kFilterStreams * stride + warmUpFrames_;
}

}  // namespace zyl
