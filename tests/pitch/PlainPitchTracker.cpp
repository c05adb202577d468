#include "PlainPitchTracker.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace {

constexpr double kPi = 3.14159265359;
constexpr int kMask = 1023;

struct Section {
  double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
  double x0 = 0, x1 = 0, x2 = 0, y0 = 0, y1 = 0, y2 = 0;

  double Run(double input) {
    x2 = x1;
    x1 = x0;
    y2 = y1;
    y1 = y0;
    x0 = input;
    y0 = b0 * x0 + b1 * x1 + b2 * x2 + a1 * y1 + a2 * y2;
    return y0;
  }
};

class Tracker {
 public:
  Tracker(const std::vector<double>& frames, double rateHz, const PlainPitchSettings& settings)
      : frames_(frames), threshold_(settings.silenceThreshold) {
    minPeriod_ = settings.minPeriodHz == 0 ? 0.0 : rateHz / settings.minPeriodHz;
    maxPeriod_ = settings.maxPeriodHz == 0 ? 0.0 : rateHz / settings.maxPeriodHz;
  }

  std::vector<float> Run() {
    std::vector<float> track(frames_.size() / 128 + 1, 0.0F);
    Design();
    if (!ReadDecimated(512) || !ReadDecimated(512)) return track;
    for (std::size_t block = 0;; ++block) {
      const double period = EstimatePeriod();
      track[block] = static_cast<float>(period);
      if (!ReadDecimated(32)) {
        for (std::size_t i = 1; i <= 31; ++i) track[block + i] = static_cast<float>(period);
        return track;
      }
      readPos_ = writePos_;
    }
  }

 private:
  void Design() {
    if (!(minPeriod_ > 2.0)) return;  // cutoff at or above Nyquist: pass through
    const double cutoff = 2.0 / minPeriod_;
    for (int k = 1; k <= 3; ++k) {
      Section& section = sections_[static_cast<std::size_t>(k - 1)];
      const double d = 2 * std::sin((2 * k - 1) * kPi / 12);
      const double w = cutoff * kPi;
      const double t = d * std::sin(w);
      const double g = (t - 2) / (t + 2);
      const double h = std::cos(w) * (1 - g);
      const double m = (1 - h - g) * 0.25;
      section.b0 = m;
      section.b1 = 2 * m;
      section.b2 = m;
      section.a1 = h;
      section.a2 = g;
    }
  }

  bool ReadDecimated(int count) {
    for (int i = 0; i < count; ++i) {
      double value = 0;
      for (int k = 0; k < 4; ++k) {
        if (nextFrame_ >= frames_.size()) return false;
        value = frames_[nextFrame_++];
        for (Section& section : sections_) value = section.Run(value);
      }
      ring_[static_cast<std::size_t>(writePos_)] = value;
      writePos_ = (writePos_ + 1) & kMask;
    }
    return true;
  }

  double At(int j) const { return ring_[static_cast<std::size_t>((readPos_ + j) & kMask)]; }
  double& Corr(int lag) { return corr_[static_cast<std::size_t>(lag)]; }
  double Energy(int i) const { return energy_[static_cast<std::size_t>(i)]; }

  void Correlate(int lag) {
    const int width = std::max(32, lag);
    double sum = 0;
    for (int j = 0; j < width; ++j) sum += At(j) * At(j + lag);
    if (lag == 0) meanSquare_ = sum / width;
    const double energy1 = Energy(width);
    const double energy2 = Energy(width + lag) - Energy(lag);
    Corr(lag) = energy1 == 0 || energy2 == 0 ? 0.0 : sum / std::max(energy1, energy2);
  }

  bool IsPeak(int lag) {
    if (lag < 1 || lag > 509) return false;
    return Corr(lag) > Corr(lag - 1) && Corr(lag) > Corr(lag + 1);
  }

  double EstimatePeriod() {
    double best = 0.5;
    double period = 1.0;
    energy_[0] = 0;
    for (int i = 1; i < 1024; ++i) {
      energy_[static_cast<std::size_t>(i)] = Energy(i - 1) + At(i - 1) * At(i - 1);
    }
    Correlate(0);
    if (meanSquare_ < threshold_) return 0;
    // Clamped to the range of int, which does not change the comparisons below.
    int minLag = static_cast<int>(std::clamp(minPeriod_ * 0.25, -1e6, 1e6));
    if (minLag <= 4) minLag = 4;
    int maxLag = static_cast<int>(std::clamp(maxPeriod_ * 0.25, -1e6, 1e6));
    if (maxLag >= 511) maxLag = 511;
    if (minLag >= maxLag) return 0;
    Correlate(minLag - 1);
    Correlate(minLag);
    for (int lag = minLag; lag < maxLag; ++lag) {
      Correlate(lag + 1);
      if (!IsPeak(lag) || Corr(lag) <= 1.1 * best) continue;
      const double before = Corr(lag - 1);
      const double here = Corr(lag);
      const double after = Corr(lag + 1);
      const double d = (after - before) * 0.5;
      const double delta = d / (2 * here - after - before);
      const double value = (((before + after) * 0.5 - here) * delta + d) * delta + here;
      const double position = lag + delta;
      if (!(value > 1.1 * best)) {
        const double r = position / period;
        if (std::fabs((r - std::trunc(r + 0.5)) * period) <= 2.0) continue;
      }
      period = position;
      best = value;
      if (value * 1.1 > 1.0) break;
    }
    return best > 0.5 ? period * 4.0 : 0.0;
  }

  const std::vector<double>& frames_;
  double threshold_;
  double minPeriod_ = 0;
  double maxPeriod_ = 0;
  std::array<Section, 3> sections_;
  std::array<double, 1024> ring_{};
  std::array<double, 1024> energy_{};
  std::array<double, 512> corr_{};
  int readPos_ = 0;
  int writePos_ = 0;
  std::size_t nextFrame_ = 0;
  double meanSquare_ = 0;
};

struct Bins {
  std::array<int, 20> count{};
  std::array<double, 20> sum{};

  void Add(float value, double factor) {
    auto whole = static_cast<long long>(value * factor);
    std::size_t bin = 0;
    for (; whole != 0; whole >>= 1) ++bin;
    bin = std::min<std::size_t>(bin, 19);
    sum[bin] += value;
    count[bin] += 1;
  }
  double Mean(std::size_t bin) const { return sum[bin] / count[bin]; }
};

}  // namespace

std::vector<float> PlainPitchTrack(const std::vector<double>& frames, double rateHz,
                                   const PlainPitchSettings& settings) {
  return Tracker(frames, rateHz, settings).Run();
}

double PlainTypicalPeriod(const std::vector<float>& track, int index, double factor,
                          int halfWidth) {
  const auto at = [&](int j) { return track[static_cast<std::size_t>(j)]; };
  const int n = static_cast<int>(track.size());
  Bins bins;
  for (int j = index - 1; j >= 1 && j > index - halfWidth; --j) {
    if (at(j) == 0 && at(j - 1) == 0) break;
    bins.Add(at(j), factor);
  }
  for (int j = index + 1; j < n - 1 && j < index + halfWidth; ++j) {
    if (at(j) == 0 && at(j - 1) == 0) break;
    bins.Add(at(j), 1.0);
  }
  if (factor == 1.0) {
    for (std::size_t b = 1; b < 20; ++b) {
      if (bins.count[b - 1] > 0 && bins.count[b] > 0 &&
          std::fabs(bins.Mean(b - 1) / bins.Mean(b) - 1) < 0.05) {
        return PlainTypicalPeriod(track, index, 0.707, halfWidth);
      }
    }
  }
  const auto most = std::max_element(bins.count.begin(), bins.count.end());
  if (*most == 0) return 0;
  return bins.Mean(static_cast<std::size_t>(most - bins.count.begin()));
}

void PlainCorrectOctaveErrors(std::vector<float>& track, int halfWidth) {
  std::vector<float> copy = track;
  const std::size_t n = track.size();
  for (std::size_t i = 1; i + 1 < n; ++i) {
    const double typical = PlainTypicalPeriod(track, static_cast<int>(i), 1.0, halfWidth);
    const double v = track[i];
    if (typical == 0) continue;
    if (v == 0 || typical / v > 1.5) {
      copy[i] = static_cast<float>(typical);
    } else if (typical / v < 0.67) {
      const double m = v / typical;
      const double k = std::trunc(m + 0.5);
      copy[i] = static_cast<float>(std::fabs(m - k) / m < 0.2 ? v / k : typical);
    }
  }
  for (std::size_t i = 1; i + 1 < n; ++i) {
    if (copy[i] == 0 && copy[i - 1] != 0 && copy[i + 1] != 0) {
      copy[i] = (copy[i + 1] + copy[i - 1]) * 0.5F;
    }
  }
  track = copy;
}

void PlainSmoothTrack(std::vector<float>& track, int length) {
  std::vector<double> weights;
  double sum = 0;
  for (int j = 0; j <= length; ++j) {
    weights.push_back(0.5 * (1 + std::cos(j * kPi / length)));
    sum += weights.back();
  }
  std::vector<float> taps;
  for (const double weight : weights)
    taps.push_back(static_cast<float>(weight * (0.5 / (sum - 0.5))));
  const int n = static_cast<int>(track.size());
  std::vector<float> smoothed(track.size());
  for (int i = 0; i < n; ++i) {
    if (track[static_cast<std::size_t>(i)] == 0) continue;
    double acc = 0;
    double norm = 1;
    for (int j = i - length; j <= i + length; ++j) {
      const double tap = taps[static_cast<std::size_t>(std::abs(j - i))];
      if (j >= 0 && j < n && track[static_cast<std::size_t>(j)] != 0) {
        acc += tap * track[static_cast<std::size_t>(j)];
      } else {
        norm -= tap;
      }
    }
    smoothed[static_cast<std::size_t>(i)] = static_cast<float>(acc / norm);
  }
  track = smoothed;
}
