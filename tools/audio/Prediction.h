// Linear prediction: the part of a sound that does not follow from the preceding values.
//
// A predictor estimates each value from the kPredictionOrder before it,
//
//   p[t] = sum c[k] x[t - k],  k = 1 ... kPredictionOrder
//
// with the coefficients that minimise sum (x[t] - p[t])^2 over the sections that it is fitted to
// (covariance method). A discontinuity shows as a large residual x[t] - p[t], whatever the level
// and the spectrum of the sound.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "audio/Sound.h"

namespace zyl::audio {

constexpr size_t kPredictionOrder = 32;

class Predictor {
 public:
  // Sections of at most kPredictionOrder values are ignored.
  explicit Predictor(std::span<const Channel> sections);

  // c[k - 1] is the coefficient of the value k before.
  const std::array<double, kPredictionOrder>& Coefficients() const { return coefficients_; }

  // The residual of each value of `section` from the value kPredictionOrder on.
  std::vector<float> Residual(Channel section) const;

 private:
  std::array<double, kPredictionOrder> coefficients_{};
};

// The 99.5th percentile of the magnitudes of residuals: those of the sound's own transients. At
// least `floor`.
double ResidualLevel(std::vector<float> residual, double floor);

}  // namespace zyl::audio
