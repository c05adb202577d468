// Synthetic recordings of instrument notes, from a fixed seed.
#pragma once

#include <cmath>
#include <cstdint>
#include <functional>
#include <numbers>
#include <random>
#include <vector>

namespace zyl::test {

struct Instrument {
  const char* name;
  int partials;
  double (*level)(int partial);
  double inharmonicity;   // partial k has the frequency k f sqrt(1 + B k^2)
  double decayPerSecond;  // of the first partial; higher ones decay faster
  double vibratoCents;    // to either side, 5.3 times a second
  double breath;          // level of the noise
};

inline constexpr Instrument kInstruments[] = {
    {"harmonic", 12, [](int k) { return 1.0 / k; }, 0, 0, 0, 0},
    {"flute", 4, [](int k) { return std::pow(0.18, k - 1); }, 0, 0, 15, 0.03},
    {"plucked", 12, [](int k) { return 1.0 / k; }, 0.0002, 2.0, 0, 0.001},
    {"weak", 12, [](int k) { return k == 1 ? 0.05 : 1.0 / k; }, 0, 0, 0, 0},
};

inline double HertzOfKey(double key) { return 440 * std::exp2((key - 69) / 12); }

// 16 bits; the loudest value is `peak` times full scale.
inline std::vector<int16_t> Note(const Instrument& instrument, double hertz, double seconds,
                                 unsigned seed, double peak = 0.5, double rateHz = 44100) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> turn(0, 2 * std::numbers::pi);
  std::normal_distribution<double> noise(0, instrument.breath > 0 ? instrument.breath : 1);
  const auto frames = static_cast<size_t>(seconds * rateHz);
  std::vector<double> sound(frames);
  for (int k = 1; k <= instrument.partials; ++k) {
    const double partialHz = k * hertz * std::sqrt(1 + instrument.inharmonicity * k * k);
    if (partialHz > 0.45 * rateHz) break;
    const double start = turn(random);
    const double decay = instrument.decayPerSecond * (1 + 0.4 * (k - 1));
    const double swing = partialHz * (std::exp2(instrument.vibratoCents / 1200) - 1) / 5.3;
    for (size_t i = 0; i < frames; ++i) {
      const double t = static_cast<double>(i) / rateHz;
      const double wave = std::sin(start + 2 * std::numbers::pi * partialHz * t +
                                   swing * std::sin(2 * std::numbers::pi * 5.3 * t));
      sound[i] += instrument.level(k) * std::exp(-decay * t) * wave;
    }
  }
  double loudest = 1e-9;
  for (double& value : sound) {
    if (instrument.breath > 0) value += noise(random);
    loudest = std::max(loudest, std::abs(value));
  }
  std::vector<int16_t> values(frames);
  for (size_t i = 0; i < frames; ++i) {
    values[i] = static_cast<int16_t>(std::lround(sound[i] / loudest * peak * 32767));
  }
  return values;
}

}  // namespace zyl::test
