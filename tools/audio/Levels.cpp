#include "audio/Levels.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace zyl::audio {

namespace {

constexpr double kLoudnessSeconds = 0.4;
constexpr int kLoudnessSteps = 4;  // windows overlap by 1 - 1 / kLoudnessSteps

// A second-order filter, transposed direct form II.
class Biquad {
 public:
  struct Coefficients {
    double b0, b1, b2, a1, a2;
  };
  explicit Biquad(const Coefficients& c) : c_(c) {}

  double operator()(double x) {
    const double y = c_.b0 * x + s1_;
    s1_ = c_.b1 * x - c_.a1 * y + s2_;
    s2_ = c_.b2 * x - c_.a2 * y;
    return y;
  }

  // In silence the state would decay into denormal numbers, which are slow.
  void FlushState() {
    constexpr double kLeast = 1e-30;
    if (std::fabs(s1_) < kLeast) s1_ = 0;
    if (std::fabs(s2_) < kLeast) s2_ = 0;
  }

 private:
  Coefficients c_;
  double s1_ = 0;
  double s2_ = 0;
};

// The two stages of K-weighting: BS.1770 gives their coefficients at 48 kHz; these are the analogue
// prototypes of those, transformed bilinearly to the sound's rate.
Biquad::Coefficients HighShelf(double rateHz) {
  constexpr double kHz = 1681.974450955533;
  constexpr double kGainDb = 3.999843853973347;
  constexpr double kQ = 0.7071752369554196;
  const double k = std::tan(std::numbers::pi * std::min(kHz, 0.45 * rateHz) / rateHz);
  const double high = std::pow(10, kGainDb / 20);
  const double band = std::pow(high, 0.4996667741545416);
  const double a0 = 1 + k / kQ + k * k;
  return {(high + band * k / kQ + k * k) / a0, 2 * (k * k - high) / a0,
          (high - band * k / kQ + k * k) / a0, 2 * (k * k - 1) / a0, (1 - k / kQ + k * k) / a0};
}

Biquad::Coefficients HighPass(double rateHz) {
  constexpr double kHz = 38.13547087602444;
  constexpr double kQ = 0.5003270373238773;
  const double k = std::tan(std::numbers::pi * std::min(kHz, 0.45 * rateHz) / rateHz);
  const double a0 = 1 + k / kQ + k * k;
  return {1, -2, 1, 2 * (k * k - 1) / a0, (1 - k / kQ + k * k) / a0};
}

}  // namespace

double Decibels(double amplitude) {
  return amplitude > 0 ? 20 * std::log10(amplitude) : -std::numeric_limits<double>::infinity();
}

double FromDecibels(double decibels) { return std::pow(10, decibels / 20); }

double MeanSquare(Channel section) {
  double sum = 0;
  for (const float x : section) sum += static_cast<double>(x * x);
  return section.empty() ? 0 : sum / static_cast<double>(section.size());
}

double Peak(const Sound& sound) {
  float peak = 0;
  for (const auto& channel : sound.channels) {
    for (const float x : channel) peak = std::max(peak, std::fabs(x));
  }
  return static_cast<double>(peak);
}

double Power(const Sound& sound) {
  double sum = 0;
  for (const auto& channel : sound.channels) sum += MeanSquare(channel);
  return sound.channels.empty() ? 0 : sum / static_cast<double>(sound.channels.size());
}

double Loudness(const Sound& sound) {
  const auto step =
      std::max<size_t>(1, static_cast<size_t>(kLoudnessSeconds / kLoudnessSteps * sound.rateHz));
  std::vector<double> energies(sound.Frames() / step + 1);
  for (const auto& channel : sound.channels) {
    Biquad shelf(HighShelf(sound.rateHz));
    Biquad pass(HighPass(sound.rateHz));
    for (size_t i = 0; i < channel.size(); ++i) {
      const double y = pass(shelf(static_cast<double>(channel[i])));
      energies[i / step] += y * y;
      if (i % step == 0) {
        shelf.FlushState();
        pass.FlushState();
      }
    }
  }
  double most = 0;
  for (size_t i = 0; i < energies.size(); ++i) {
    double sum = 0;
    for (size_t k = i; k < std::min(i + kLoudnessSteps, energies.size()); ++k) sum += energies[k];
    most = std::max(most, sum);
  }
  const double power = most / static_cast<double>(step * kLoudnessSteps);
  return power > 0 ? -0.691 + 10 * std::log10(power) : -std::numeric_limits<double>::infinity();
}

std::optional<FrameRange> SoundingFrames(const Sound& sound, double thresholdDb) {
  const auto threshold = static_cast<float>(Peak(sound) * FromDecibels(thresholdDb));
  std::optional<FrameRange> range;
  for (const auto& channel : sound.channels) {
    const auto sounds = [threshold](float x) { return std::fabs(x) > threshold; };
    const auto first = std::find_if(channel.begin(), channel.end(), sounds);
    if (first == channel.end()) continue;
    const auto last = std::find_if(channel.rbegin(), channel.rend(), sounds);
    const FrameRange found{static_cast<size_t>(first - channel.begin()),
                           static_cast<size_t>(channel.rend() - last) - 1};
    range = range
                ? FrameRange{std::min(range->first, found.first), std::max(range->last, found.last)}
                : found;
  }
  return range;
}

std::vector<float> BlockLevels(const Sound& sound, size_t blockFrames) {
  const size_t frames = sound.Frames();
  std::vector<float> levels((frames + blockFrames - 1) / blockFrames);
  for (size_t block = 0; block < levels.size(); ++block) {
    const size_t first = block * blockFrames;
    const size_t last = std::min(first + blockFrames, frames);
    double sum = 0;
    for (const auto& channel : sound.channels) {
      float part = 0;
      for (size_t i = first; i < last; ++i) part += channel[i] * channel[i];
      sum += static_cast<double>(part);
    }
    const auto count = static_cast<double>((last - first) * sound.channels.size());
    levels[block] = static_cast<float>(std::sqrt(sum / count));
  }
  return levels;
}

}  // namespace zyl::audio
