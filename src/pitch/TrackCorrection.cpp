// Idea: values are counted in octave bands. Band b contains values from 2^(b-1) to 2^b, band 0
// values below 1, and band 19 values from 2^18. The typical value is the mean of the fullest band.
// If two adjacent bands have nearly equal means, one cluster straddles their edge; then the values
// at indexes below i are scaled by 0.707 for the assignment to bands (the second sorting).
//
// A pass updates the histograms of both sortings incrementally as i increases. Their sums are
// exact, independent of the order of additions and removals: the values of band b are multiples of
// 2^(b-24) below 1.42 * 2^b, and a double represents all sums of fewer than 2^27 of them. This
// applies to values from 1 to 2^18 and to zeros; for a track with other values every histogram is
// rebuilt.

#include "TrackCorrection.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

constexpr double kPi = 3.14159265359;  // the value that the method uses, not full precision
constexpr int kBands = 20;
constexpr double kSecondSorting = 0.707;

class OctaveHistogram {
 public:
  static size_t BandOf(double value) {
    if (!(value >= 1.0)) return 0;
    if (value >= 0x1p18) return kBands - 1;
    return static_cast<size_t>(std::bit_width(static_cast<uint32_t>(value)));
  }

  void Add(float value, size_t band) {
    sum_[band] += value;
    ++count_[band];
    filled_ |= 1U << band;
  }

  void Remove(float value, size_t band) {
    sum_[band] -= value;
    if (--count_[band] == 0) filled_ &= ~(1U << band);
  }

  bool ClusterStraddlesEdge() const {
    for (uint32_t edges = filled_ & (filled_ << 1); edges != 0; edges &= edges - 1) {
      const size_t band = static_cast<size_t>(std::countr_zero(edges));
      if (std::fabs(Mean(band - 1) / Mean(band) - 1.0) < 0.05) return true;
    }
    return false;
  }

  // The mean of the fullest band, the lowest of equally full ones; 0 if all are empty.
  double Typical() const {
    size_t fullest = 0;
    for (uint32_t bands = filled_; bands != 0; bands &= bands - 1) {
      const size_t band = static_cast<size_t>(std::countr_zero(bands));
      if (count_[band] > count_[fullest]) fullest = band;
    }
    return count_[fullest] == 0 ? 0.0 : Mean(fullest);
  }

 private:
  double Mean(size_t band) const { return sum_[band] / count_[band]; }

  std::array<double, kBands> sum_{};
  std::array<int, kBands> count_{};
  uint32_t filled_ = 0;  // bit b: count_[b] > 0
};

bool IsZeroPair(const float* track, int j) { return track[j] == 0.0F && track[j - 1] == 0.0F; }

OctaveHistogram Neighbourhood(const float* track, int n, int i, double factor, int halfWidth) {
  OctaveHistogram histogram;
  const int reach = std::clamp(halfWidth, 0, n);
  for (int j = i - 1; j >= 1 && j > i - reach && !IsZeroPair(track, j); --j) {
    histogram.Add(track[j], OctaveHistogram::BandOf(track[j] * factor));
  }
  for (int j = i + 1; j < n - 1 && j < i + reach && !IsZeroPair(track, j); ++j) {
    histogram.Add(track[j], OctaveHistogram::BandOf(track[j]));
  }
  return histogram;
}

// Computes the typical values of i = 1, 2, ...; At must be called for each i in this order. The
// values counted for i are first .. end-1 without i. This range contains i and only moves up. Its
// limits are the reach, the track's second and last but one value, and the nearest pairs of zeros
// (j - 1, j), of which j is excluded.
class TypicalPeriods {
 public:
  TypicalPeriods(const std::vector<float>& track, int halfWidth)
      : track_(track.data()),
        n_(static_cast<int>(track.size())),
        reach_(std::clamp(halfWidth, 1, std::max(n_, 1))) {
    for (const float value : track) {
      summable_ = summable_ && (value == 0.0F || (value >= 1.0F && value < 0x1p18F));
    }
  }

  double At(int i) {
    if (!summable_) return TypicalPeriod(track_, n_, i, 1.0, reach_);
    if (nextPair_ <= i) {
      nextPair_ = i + 1;
      while (nextPair_ < n_ && !IsZeroPair(track_, nextPair_)) ++nextPair_;
    }
    const int last = std::min({n_ - 2, i + reach_ - 1, nextPair_ - 1});
    for (; end_ <= last; ++end_) {
      plain_.Add(track_[end_], BandOf(end_, 1.0));
      scaled_.Add(track_[end_], BandOf(end_, 1.0));
    }
    if (i > 1) scaled_.Add(track_[i - 1], BandOf(i - 1, kSecondSorting));  // now below i
    const int lowest = i > 1 && IsZeroPair(track_, i - 1) ? i : i - reach_ + 1;
    for (; first_ < lowest; ++first_) {
      plain_.Remove(track_[first_], BandOf(first_, 1.0));
      scaled_.Remove(track_[first_], BandOf(first_, kSecondSorting));
    }
    const size_t own = BandOf(i, 1.0);
    scaled_.Remove(track_[i], own);
    plain_.Remove(track_[i], own);
    const double typical = (plain_.ClusterStraddlesEdge() ? scaled_ : plain_).Typical();
    plain_.Add(track_[i], own);
    return typical;
  }

 private:
  size_t BandOf(int j, double factor) const { return OctaveHistogram::BandOf(track_[j] * factor); }

  const float* track_;
  int n_;
  int reach_;
  bool summable_ = true;
  int first_ = 1;
  int end_ = 1;
  int nextPair_ = 0;
  OctaveHistogram plain_;
  OctaveHistogram scaled_;  // values below i by the second sorting, the others unscaled
};

float Corrected(float value, double typical) {
  if (typical == 0.0) return value;
  if (value == 0.0F) return static_cast<float>(typical);
  const double ratio = typical / value;
  if (ratio > 1.5) return static_cast<float>(typical);
  if (!(ratio < 0.67)) return value;
  const double multiple = value / typical;
  const double whole = std::trunc(multiple + 0.5);
  if (std::fabs(multiple - whole) / multiple < 0.2) return static_cast<float>(value / whole);
  return static_cast<float>(typical);
}

constexpr int kLongestTrack = 1 << 24;  // blocks of 128 frames in 2^31 frames
constexpr int kLanes = 8;

// Returns the weights w(j) = (1 + cos(j pi / L)) / 2 for distance j = 0 .. L, scaled so that the
// 2 L + 1 taps at -L .. L sum to 1.
std::vector<float> SmoothingTaps(int length) {
  const auto weight = [&](int j) { return 0.5 * (1.0 + std::cos(j * kPi / length)); };
  double sum = 0.0;
  for (int j = 0; j <= length; ++j) sum += weight(j);
  const double scale = 0.5 / (sum - 0.5);
  std::vector<float> taps(static_cast<size_t>(length) + 1);
  for (int j = 0; j <= length; ++j) {
    taps[static_cast<size_t>(j)] = static_cast<float>(weight(j) * scale);
  }
  return taps;
}

}  // namespace

double TypicalPeriod(const float* track, int n, int i, double factor, int halfWidth) {
  const OctaveHistogram histogram = Neighbourhood(track, n, i, factor, halfWidth);
  if (factor != 1.0 || !histogram.ClusterStraddlesEdge()) return histogram.Typical();
  return Neighbourhood(track, n, i, kSecondSorting, halfWidth).Typical();
}

void CorrectOctaveErrors(float* track, int n, int findPitchLen) {
  if (n < 3) return;
  const std::vector<float> before(track, track + n);
  TypicalPeriods typical(before, findPitchLen);
  for (int i = 1; i < n - 1; ++i) track[i] = Corrected(track[i], typical.At(i));
  for (int i = 1; i < n - 1; ++i) {
    if (track[i] == 0.0F && track[i - 1] != 0.0F && track[i + 1] != 0.0F) {
      track[i] = (track[i + 1] + track[i - 1]) * 0.5F;
    }
  }
}

// Each lane computes one of kLanes neighbouring values, summed in the order of its window. The
// track is padded with zeros, which are unvoiced blocks: their taps are subtracted from the norm.
bool SmoothTrack(float* track, int n, int smoothLength, const std::atomic<bool>* abort) {
  if (n < 1 || smoothLength < 1) return true;
  const int length = std::min(smoothLength, kLongestTrack);
  const std::vector<float> taps = SmoothingTaps(length);
  std::vector<float> padded(static_cast<size_t>(n) + 2 * taps.size() + kLanes);
  float* const before = padded.data() + length;
  std::copy_n(track, n, before);
  for (int first = 0; first < n; first += kLanes) {
    if (abort != nullptr && *abort) return false;
    std::array<double, kLanes> sum{};
    std::array<double, kLanes> norm;
    norm.fill(1.0);
    for (int j = -length; j <= length; ++j) {
      const double tap = taps[static_cast<size_t>(std::abs(j))];
      const float* const values = before + first + j;
      for (size_t lane = 0; lane < kLanes; ++lane) {
        const double value = values[lane];
        sum[lane] += tap * value;
        norm[lane] -= value == 0.0 ? tap : 0.0;
      }
    }
    for (int lane = 0; lane < std::min(kLanes, n - first); ++lane) {
      float& result = track[first + lane];
      const auto l = static_cast<size_t>(lane);
      if (result != 0.0F) result = static_cast<float>(sum[l] / norm[l]);
    }
  }
  return true;
}
