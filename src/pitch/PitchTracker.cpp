// With x[j] the decimated window and W = max(32, L), the normalised correlation of lag L is
//   corr[L] = sum_{j < W} x[j] x[j + L] / max(cumEnergy[W], cumEnergy[W + L] - cumEnergy[L]),
//   cumEnergy[i] = sum_{j < i} x[j]^2.
// corr[L] is 0 if one of the two energies is 0. The scan starts at the shortest lag, keeps the best
// peak (initially 0.5) and considers only peaks more than a tenth above it. The vertex of the
// parabola through the three values is the candidate; a value above 0.909 ends the scan.
//
// The screen (PitchKernels.cpp) rules out nearly all lags with integer sums. The remaining lags are
// computed term by term in double precision, so the screen never affects the result.

#include "PitchTracker.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "util/FlushDenormals.h"

namespace {

constexpr int kWindow = 1024;                          // decimated values per window
constexpr int kBlockFrames = 128;                      // hop in input frames
constexpr int kHop = kBlockFrames / zyl::kDecimation;  // hop in decimated values
constexpr int kReportFrames = 100 * kBlockFrames;
constexpr int kRepeatsAtEnd = 31;
constexpr int kShortestLag = 4;
constexpr int kLongestLag = 511;
constexpr int kStretch = kWindow + 256 * kHop;  // decimated values read at a time
constexpr int kScreenBlocks = 32;               // windows that share a screen
constexpr int kPadding = 16;                    // values that the vector loops read but do not use
constexpr int kNoLag = -2;
// With a threshold of at least this, the filter may flush denormal numbers to 0 without an effect
// on the result: a window that is not silent has an energy that no product with them changes.
constexpr double kLeastFlushThreshold = 1e-100;
constexpr double kRise = 1.1;  // factor by which a peak must exceed the best

// Returns a quarter of the period, truncated and clamped to [low, high]; `low` for NaN.
int LagOf(double periodFrames, int low, int high) {
  const double lag = periodFrames * 0.25;
  if (!(lag > low)) return low;
  return lag >= high ? high : static_cast<int>(lag);
}

// Returns a mask of bits `first` to 31; all bits for a negative `first`, none above 31.
uint32_t BitsFrom(int first) {
  if (first >= 32) return 0;
  return ~0U << std::max(first, 0);
}

}  // namespace

PitchTracker::PitchTracker(double processingRateHz)
    : minPeriodFrames_(processingRateHz * 0.0005),
      maxPeriodFrames_(processingRateHz * 0.02),
      kernels_(&zyl::BestPitchKernels()) {}

void PitchTracker::SetMinPeriod(int frequencyHz, double sampleRateHz) {
  minPeriodFrames_ = frequencyHz == 0 ? 0.0 : sampleRateHz / frequencyHz;
}

void PitchTracker::SetMaxPeriod(int frequencyHz, double sampleRateHz) {
  maxPeriodFrames_ = frequencyHz == 0 ? 0.0 : sampleRateHz / frequencyHz;
}

void PitchTracker::SetThreshold(double meanSquare) { silenceThreshold_ = meanSquare; }

int PitchTracker::ReadFrames(double* frames, int count) {
  for (int i = 0; i < count; ++i) {
    if (AtEnd()) return i;
    frames[i] = ReadFrame();
  }
  return count;
}

// Returns the number of values read, fewer than `count` only at the end of the source.
int PitchTracker::ReadDecimated(double* values, int count) {
  frames_.resize(static_cast<size_t>(count) * zyl::kDecimation);
  const int read = ReadFrames(frames_.data(), count * zyl::kDecimation) / zyl::kDecimation;
  const int frames = read * zyl::kDecimation;
  if (silenceThreshold_ >= kLeastFlushThreshold) {
    const zyl::FlushDenormals flush;
    filter_.Decimate(frames_.data(), frames, values, *kernels_);
  } else {
    filter_.Decimate(frames_.data(), frames, values, *kernels_);
  }
  return read;
}

bool PitchTracker::Analyze(zyl::PitchProgress* progress) {
  filter_.Design(2.0 / minPeriodFrames_);
  minLag_ = LagOf(minPeriodFrames_, kShortestLag, kLongestLag);
  maxLag_ = LagOf(maxPeriodFrames_, 0, kLongestLag);

  std::vector<double> values(kStretch + kPadding);
  uint32_t unreported = 0;
  int block = 0;
  int kept = 0;
  for (bool ended = false; !ended && !abort;) {
    const int count = kept + ReadDecimated(values.data() + kept, kStretch - kept);
    if (count < kWindow) break;
    ended = count < kStretch;
    // The last window of a full stretch is analysed with the next stretch, which starts with it.
    const int windows = (count - kWindow) / kHop + (ended ? 1 : 0);
    for (int i = 0; i < windows && !abort; ++i, ++block) {
      if (i % kScreenBlocks == 0) PrepareScreen(values.data(), i, windows);
      const double period = EstimatePeriod(values.data() + i * kHop, i % kScreenBlocks * kHop);
      StoreValue(block, period);
      if (ended && i == windows - 1) {
        for (int k = 1; k <= kRepeatsAtEnd; ++k) StoreValue(block + k, period);
        break;
      }
      unreported += kBlockFrames;
      if (unreported < kReportFrames) continue;
      if (progress != nullptr) progress->AddDone(unreported);
      unreported = 0;
    }
    std::copy_n(values.begin() + kStretch - kWindow, kWindow, values.begin());
    kept = kWindow;
  }
  if (unreported > 0 && progress != nullptr) progress->AddDone(unreported);
  return !abort;
}

// The running sums are accumulated in window order, regardless of the number of calls.
void PitchTracker::ExtendEnergy(int count) {
  double sum = cumEnergy_[static_cast<size_t>(energyCount_)];
  for (int i = energyCount_; i < count; ++i) {
    sum += window_[i] * window_[i];
    cumEnergy_[static_cast<size_t>(i) + 1] = sum;
  }
  energyCount_ = std::max(energyCount_, count);
}

double PitchTracker::Correlation(int lag) const {
  const size_t shift = static_cast<size_t>(lag);
  const size_t width = std::max<size_t>(zyl::kShortestSum, shift);
  const double energy1 = cumEnergy_[width];
  const double energy2 = cumEnergy_[width + shift] - cumEnergy_[shift];
  if (energy1 == 0.0 || energy2 == 0.0) return 0.0;
  return sums_[shift] / std::max(energy1, energy2);
}

// Computes the exact sums and energies of lag - 1, lag and lag + 1 unless they are present.
void PitchTracker::PrepareLag(int lag) {
  const bool adjoins = lag - 1 >= sumsFrom_ && lag - 1 <= sumsTo_;
  if (!adjoins || lag + 1 >= sumsTo_) {
    const int from = adjoins ? sumsTo_ : lag - 1;
    kernels_->exactSums(window_, from, &sums_[static_cast<size_t>(from)]);
    if (!adjoins) sumsFrom_ = from;
    sumsTo_ = from + zyl::kExactLags;
  }
  ExtendEnergy(std::max(zyl::kShortestSum, lag + 1) + lag + 1);
}

// Evaluates one lag of the scan. Returns true if its peak ends the scan.
bool PitchTracker::TryLag(int lag, Peak& best) {
  if (lag > kLongestLag - 2) return false;
  PrepareLag(lag);
  const double here = Correlation(lag);
  if (here <= kRise * best.value) return false;
  const double before = Correlation(lag - 1);
  const double after = Correlation(lag + 1);
  if (!(here > before && here > after)) return false;

  const double d = (after - before) * 0.5;
  const double delta = d / (2.0 * here - after - before);
  const double value = (((before + after) * 0.5 - here) * delta + d) * delta + here;
  const double period = lag + delta;
  if (!(value > kRise * best.value)) {
    // A multiple of the best period, to within two values, does not replace it.
    const double r = period / best.period;
    if (std::fabs((r - std::trunc(r + 0.5)) * best.period) <= 2.0) return false;
  }
  best = {value, period};
  return value * kRise > 1.0;
}

// Prepares the screen for up to kScreenBlocks windows from window `first`, up to the last value
// that their lags need.
void PitchTracker::PrepareScreen(const double* values, int first, int windows) {
  const int shared = std::min(windows - first, kScreenBlocks);
  const int reach = 2 * (maxLag_ + zyl::kScreenLags);
  const int count = (shared - 1) * kHop + std::min(reach, kWindow);
  screened_ = screen_.Prepare(values + first * kHop, count);
}

// `screenStart` is the window's first value in the screen.
double PitchTracker::EstimatePeriod(const double* window, int screenStart) {
  window_ = window;
  energyCount_ = 0;
  sumsFrom_ = sumsTo_ = kNoLag;
  ExtendEnergy(zyl::kShortestSum);
  const double meanSquare = cumEnergy_[zyl::kShortestSum] / zyl::kShortestSum;
  if (meanSquare < silenceThreshold_ || minLag_ >= maxLag_) return 0.0;

  Peak best;
  zyl::ScreenWindow screen{};
  if (screened_) screen = screen_.WindowAt(screenStart);
  float* upper = upper_.data() + kBoundsBefore;
  float* lower = lower_.data() + kBoundsBefore;
  int first = (minLag_ - 1) / zyl::kScreenLags * zyl::kScreenLags;
  for (; first <= maxLag_; first += zyl::kScreenLags) {
    const int lagOfBit0 = first - 1;
    uint32_t lags = ~0U;
    if (screened_) {
      const float floor = static_cast<float>(kRise * best.value);
      lags = kernels_->screen(screen, first, floor, upper, lower);
    }
    lags &= BitsFrom(minLag_ - lagOfBit0) & ~BitsFrom(maxLag_ - lagOfBit0);
    for (; lags != 0; lags &= lags - 1) {
      if (TryLag(lagOfBit0 + std::countr_zero(lags), best)) return best.period * zyl::kDecimation;
    }
  }
  return best.value > kFirstBest ? best.period * zyl::kDecimation : 0.0;
}
