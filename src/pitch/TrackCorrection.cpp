// Values are sorted into octave bands: band b holds those of 2^(b-1) to 2^b, band 0 those below 1,
// band 19 those from 2^18 up. The typical value is the mean of the fullest band. When two adjacent
// bands have nearly equal means, one cluster straddles their edge, and the values below i are
// sorted once more after scaling by 0.707.
//
// A pass moves the histogram along with i instead of filling it anew. Its sums are the same to the
// last bit, in whatever order values come and go: the values of one band are multiples of
// 2^(b-24), and sums of fewer than 2^28 of them have no bits to lose in double precision. That
// holds for bands 1 to 18 and for zeros; a track with other values takes the slow way.

#include "TrackCorrection.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

constexpr double kPi = 3.14159265359;  // the method's own value, not the full precision
constexpr int kBands = 20;
constexpr double kSecondSorting = 0.707;

class OctaveHistogram {
 public:
  static std::size_t BandOf(double value) {
    if (!(value >= 1.0)) return 0;
    if (value >= 0x1p18) return kBands - 1;
    return static_cast<std::size_t>(std::bit_width(static_cast<uint32_t>(value)));
  }

  void Add(float value, std::size_t band) {
    sum_[band] += value;
    ++count_[band];
    filled_ |= 1U << band;
  }

  void Remove(float value, std::size_t band) {
    sum_[band] -= value;
    if (--count_[band] == 0) filled_ &= ~(1U << band);
  }

  bool ClusterStraddlesEdge() const {
    for (uint32_t edges = filled_ & (filled_ << 1); edges != 0; edges &= edges - 1) {
      const std::size_t band = static_cast<std::size_t>(std::countr_zero(edges));
      if (std::fabs(Mean(band - 1) / Mean(band) - 1.0) < 0.05) return true;
    }
    return false;
  }

  // Mean of the fullest band, the lowest of equally full ones; 0 when all are empty.
  double Typical() const {
    std::size_t fullest = 0;
    for (uint32_t bands = filled_; bands != 0; bands &= bands - 1) {
      const std::size_t band = static_cast<std::size_t>(std::countr_zero(bands));
      if (count_[band] > count_[fullest]) fullest = band;
    }
    return count_[fullest] == 0 ? 0.0 : Mean(fullest);
  }

 private:
  double Mean(std::size_t band) const { return sum_[band] / count_[band]; }

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

double TypicalOf(const OctaveHistogram& histogram, const float* track, int n, int i,
                 int halfWidth) {
  if (!histogram.ClusterStraddlesEdge()) return histogram.Typical();
  return Neighbourhood(track, n, i, kSecondSorting, halfWidth).Typical();
}

// The typical values of i = 1, 2, ... in turn. The values counted for i are those of first .. end-1
// without i itself: a stretch that only moves upward, bounded by the reach, by the track's second
// and last but one value, and by the nearest pairs of zeros (j - 1, j), whose j is left out.
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
    while (end_ <= last) Move(end_++, true);
    const int lowest = i > 1 && IsZeroPair(track_, i - 1) ? i : i - reach_ + 1;
    while (first_ < std::min(lowest, end_)) Move(first_++, false);
    Move(i, false);
    const double typical = TypicalOf(histogram_, track_, n_, i, reach_);
    Move(i, true);
    return typical;
  }

 private:
  void Move(int j, bool in) {
    const std::size_t band = OctaveHistogram::BandOf(track_[j]);
    if (in) {
      histogram_.Add(track_[j], band);
    } else {
      histogram_.Remove(track_[j], band);
    }
  }

  const float* track_;
  int n_;
  int reach_;
  bool summable_ = true;
  int first_ = 1;
  int end_ = 1;
  int nextPair_ = 0;
  OctaveHistogram histogram_;
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

}  // namespace

double TypicalPeriod(const float* track, int n, int i, double factor, int halfWidth) {
  const OctaveHistogram histogram = Neighbourhood(track, n, i, factor, halfWidth);
  return factor == 1.0 ? TypicalOf(histogram, track, n, i, halfWidth) : histogram.Typical();
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

void SmoothTrack(float* track, int n, int smoothLength) {
  if (n < 1 || smoothLength < 1) return;
  // Taps w_j = (1 + cos(j pi / L)) / 2 at distances j = 0 .. L. The 2 L + 1 of them add up to L, as
  // the cosines cancel. Only distances inside the track are ever looked up.
  const double length = smoothLength;
  const int reach = std::min(smoothLength, n - 1);
  std::vector<float> taps(static_cast<std::size_t>(reach) + 1);
  for (std::size_t j = 0; j < taps.size(); ++j) {
    const double weight = 0.5 * (1.0 + std::cos(static_cast<double>(j) * kPi / length));
    taps[j] = static_cast<float>(weight / length);
  }
  const std::vector<float> before(track, track + n);
  for (int i = 0; i < n; ++i) {
    if (before[static_cast<std::size_t>(i)] == 0.0F) continue;
    double sum = 0.0;
    double norm = 0.0;  // what the taps of voiced values add up to
    const int last = reach < n - 1 - i ? i + reach : n - 1;
    for (int j = std::max(0, i - reach); j <= last; ++j) {
      const double value = before[static_cast<std::size_t>(j)];
      const double tap = taps[static_cast<std::size_t>(std::abs(j - i))];
      sum += value * tap;
      norm += value != 0.0 ? tap : 0.0;
    }
    track[i] = static_cast<float>(sum / norm);
  }
}
