// Reference implementation of the pitch tracker: evaluates the formulas one by one in double
// precision, without optimisations. The tracker must give the same bits.
#pragma once

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

struct PlainPitchSettings {
  int minPeriodHz = 2000;
  int maxPeriodHz = 50;
  double silenceThreshold = 1e-5;
};

class PlainTracker {
 public:
  PlainTracker(const std::vector<double>& frames, double rateHz, const PlainPitchSettings& settings)
      : frames_(frames), threshold_(settings.silenceThreshold) {
    minPeriod_ = settings.minPeriodHz == 0 ? 0.0 : rateHz / settings.minPeriodHz;
    maxPeriod_ = settings.maxPeriodHz == 0 ? 0.0 : rateHz / settings.maxPeriodHz;
  }

  // The track of the frames (full scale 1) before any correction, frames / 128 + 1 values.
  std::vector<float> Run() {
    std::vector<float> track(frames_.size() / 128 + 1, 0.0F);
    Design();
    if (!ReadDecimated(512) || !ReadDecimated(512)) return track;
    for (auto block = track.begin();; ++block) {
      const double period = EstimatePeriod();
      *block = static_cast<float>(period);
      if (!ReadDecimated(32)) {
        std::fill_n(block + 1, 31, *block);
        return track;
      }
      readPos_ = writePos_;
    }
  }

 private:
  static constexpr int kMask = 1023;

  struct Section {
    double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
    double x1 = 0, x2 = 0, y1 = 0, y2 = 0;

    double Run(double x) {
      const double y = b0 * x + b1 * x1 + b2 * x2 + a1 * y1 + a2 * y2;
      x2 = std::exchange(x1, x);
      y2 = std::exchange(y1, y);
      return y;
    }
  };

  void Design() {
    if (!(minPeriod_ > 2.0)) return;  // cutoff at or above Nyquist: pass through
    constexpr double kPi = 3.14159265359;
    for (int k = 1; k <= 3; ++k) {
      Section& section = sections_[k - 1];
      const double d = 2 * std::sin((2 * k - 1) * kPi / 12);
      const double w = 2.0 / minPeriod_ * kPi;
      const double t = d * std::sin(w);
      section.a2 = (t - 2) / (t + 2);
      section.a1 = std::cos(w) * (1 - section.a2);
      section.b0 = section.b2 = (1 - section.a1 - section.a2) * 0.25;
      section.b1 = 2 * section.b0;
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
      ring_[writePos_] = value;
      writePos_ = (writePos_ + 1) & kMask;
    }
    return true;
  }

  double At(int j) const { return ring_[(readPos_ + j) & kMask]; }

  void Correlate(int lag) {
    const int width = std::max(32, lag);
    double sum = 0;
    for (int j = 0; j < width; ++j) sum += At(j) * At(j + lag);
    if (lag == 0) meanSquare_ = sum / width;
    const double energy1 = energy_[width];
    const double energy2 = energy_[width + lag] - energy_[lag];
    corr_[lag] = energy1 == 0 || energy2 == 0 ? 0.0 : sum / std::max(energy1, energy2);
  }

  bool IsPeak(int lag) const {
    if (lag < 1 || lag > 509) return false;
    return corr_[lag] > corr_[lag - 1] && corr_[lag] > corr_[lag + 1];
  }

  double EstimatePeriod() {
    double best = 0.5;
    double period = 1.0;
    for (int i = 1; i < 1024; ++i) energy_[i] = energy_[i - 1] + At(i - 1) * At(i - 1);
    Correlate(0);
    if (meanSquare_ < threshold_) return 0;
    // Clamped to the range of int, which does not change the comparisons below.
    const int minLag = std::max(static_cast<int>(std::clamp(minPeriod_ * 0.25, -1e6, 1e6)), 4);
    const int maxLag = std::min(static_cast<int>(std::clamp(maxPeriod_ * 0.25, -1e6, 1e6)), 511);
    if (minLag >= maxLag) return 0;
    Correlate(minLag - 1);
    Correlate(minLag);
    for (int lag = minLag; lag < maxLag; ++lag) {
      Correlate(lag + 1);
      if (!IsPeak(lag) || corr_[lag] <= 1.1 * best) continue;
      const double before = corr_[lag - 1], here = corr_[lag], after = corr_[lag + 1];
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
  double minPeriod_ = 0, maxPeriod_ = 0;
  Section sections_[3];
  double ring_[1024] = {}, energy_[1024] = {}, corr_[512] = {};
  int readPos_ = 0, writePos_ = 0;
  size_t nextFrame_ = 0;
  double meanSquare_ = 0;
};

inline double PlainTypicalPeriod(const std::vector<float>& track, int index, double factor,
                                 int halfWidth) {
  const float* at = track.data();
  const int n = static_cast<int>(track.size());
  int count[20] = {};
  double sum[20] = {};
  const auto add = [&](float value, double scale) {
    int bin = 0;
    for (auto whole = static_cast<long long>(value * scale); whole != 0; whole >>= 1) ++bin;
    bin = std::min(bin, 19);
    sum[bin] += value;
    count[bin] += 1;
  };
  for (int j = index - 1; j >= 1 && j > index - halfWidth; --j) {
    if (at[j] == 0 && at[j - 1] == 0) break;
    add(at[j], factor);
  }
  for (int j = index + 1; j < n - 1 && j < index + halfWidth; ++j) {
    if (at[j] == 0 && at[j - 1] == 0) break;
    add(at[j], 1.0);
  }
  const auto mean = [&](std::ptrdiff_t bin) { return sum[bin] / count[bin]; };
  for (int b = 1; factor == 1.0 && b < 20; ++b) {
    if (count[b - 1] > 0 && count[b] > 0 && std::fabs(mean(b - 1) / mean(b) - 1) < 0.05) {
      return PlainTypicalPeriod(track, index, 0.707, halfWidth);
    }
  }
  const int* most = std::max_element(count, count + 20);
  return *most == 0 ? 0 : mean(most - count);
}

inline void PlainCorrectOctaveErrors(std::vector<float>& track, int halfWidth) {
  std::vector<float> copy = track;
  for (size_t i = 1; i + 1 < track.size(); ++i) {
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
  for (size_t i = 1; i + 1 < track.size(); ++i) {
    if (copy[i] == 0 && copy[i - 1] != 0 && copy[i + 1] != 0) {
      copy[i] = (copy[i + 1] + copy[i - 1]) * 0.5F;
    }
  }
  track = copy;
}

inline void PlainSmoothTrack(std::vector<float>& track, int length) {
  std::vector<double> weights;
  double sum = 0;
  for (int j = 0; j <= length; ++j) {
    weights.push_back(0.5 * (1 + std::cos(j * 3.14159265359 / length)));
    sum += weights.back();
  }
  const std::vector<float> given = track;
  const int n = static_cast<int>(track.size());
  for (int i = 0; i < n; ++i) {
    if (given.data()[i] == 0) continue;
    double acc = 0;
    double norm = 1;
    for (int j = i - length; j <= i + length; ++j) {
      const double tap = static_cast<float>(weights.data()[std::abs(j - i)] * (0.5 / (sum - 0.5)));
      if (j >= 0 && j < n && given.data()[j] != 0) {
        acc += tap * given.data()[j];
      } else {
        norm -= tap;
      }
    }
    track.data()[i] = static_cast<float>(acc / norm);
  }
}
