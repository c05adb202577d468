#include "LagScreen.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace zyl {
namespace {

// Returns a bound just above the largest magnitude; infinity if a value is infinite or NaN.
// Compares the upper halves of the values' bits as integers: this vectorises, and NaN compares
// largest.
double MagnitudeBound(const double* values, size_t count) {
  int32_t largest = 0;
  for (size_t i = 0; i < count; ++i) {
    const uint64_t bits = std::bit_cast<uint64_t>(values[i]);
    largest = std::max(largest, static_cast<int32_t>((bits >> 32) & 0x7FFFFFFFU));
  }
  const uint64_t next = std::min<uint64_t>(static_cast<uint64_t>(largest) + 1, 0x7FF00000U);
  return std::bit_cast<double>(next << 32);
}

}  // namespace

bool LagScreen::Prepare(const double* values, int count) {
  const size_t n = static_cast<size_t>(count);
  const double bound = MagnitudeBound(values, n);
  if (!(bound > 0x1p-200 && bound < 0x1p200)) return false;

  rounded_.resize(n + 1);
  pairs_.resize(n);
  energy_.resize(n + 1);
  evenEnergy_.resize(n / 2 + 1);

  const double scale = kScreenPeak / bound;
  constexpr double kRounder = 0x1.8p52;  // adding it rounds to an integer
  for (size_t i = 0; i < n; ++i) {
    rounded_[i] = static_cast<int32_t>((values[i] * scale + kRounder) - kRounder);
  }
  rounded_[n] = 0;
  uint32_t sum = 0;
  uint64_t total = 0;
  for (size_t i = 0; i < n; ++i) {
    const uint32_t value = static_cast<uint32_t>(rounded_[i]);
    pairs_[i] = (value & 0xFFFFU) | static_cast<uint32_t>(rounded_[i + 1]) << 16;
    energy_[i] = sum;
    sum += value * value;
    total += value * value;
  }
  energy_[n] = sum;
  for (size_t i = 0; i < evenEnergy_.size(); ++i) evenEnergy_[i] = energy_[2 * i];
  const double energy = static_cast<double>(total);
  rms_ = std::max(1.0F, static_cast<float>(std::sqrt(energy / static_cast<double>(n))));
  return true;
}

ScreenWindow LagScreen::WindowAt(int start) const {
  const size_t first = static_cast<size_t>(start);
  return {&pairs_[first], &energy_[first], &evenEnergy_[first / 2], rms_};
}

}  // namespace zyl
