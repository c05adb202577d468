#include "audio/Prediction.h"

#include <algorithm>
#include <cmath>

namespace zyl::audio {

namespace {

constexpr size_t kSize = kPredictionOrder + 1;
// Keeps the equations regular for pure tones: 100 dB below the sound.
constexpr double kRidge = 1e-10;

using Products = std::array<std::array<double, kSize>, kSize>;

// Adds sum x[t - i] x[t - j] over the section to products[i][j]. Each diagonal follows from its
// first element, since raising i and j by one only moves the range of the sum.
void AddProducts(Channel section, Products& products) {
  const size_t count = section.size();
  if (count <= kPredictionOrder) return;
  const std::vector<double> x(section.begin(), section.end());
  std::array<double, kSize> sums{};  // element k: lag kPredictionOrder - k
  for (size_t t = kPredictionOrder; t < count; ++t) {
    const double value = x[t];
    const double* before = &x[t - kPredictionOrder];
    for (size_t k = 0; k < kSize; ++k) sums[k] += value * before[k];
  }
  for (size_t lag = 0; lag < kSize; ++lag) {
    double sum = sums[kPredictionOrder - lag];
    for (size_t i = 0, j = lag; j < kSize; ++i, ++j) {
      products[i][j] += sum;
      if (j + 1 == kSize) break;
      sum += x[kPredictionOrder - 1 - i] * x[kPredictionOrder - 1 - j] -
             x[count - 1 - i] * x[count - 1 - j];
    }
  }
}

// Solves the symmetric positive definite system of rows and columns 1 ... kPredictionOrder for the
// right side products[0][1 ...], by Cholesky decomposition in place.
std::array<double, kPredictionOrder> Solve(Products& products) {
  std::array<double, kPredictionOrder> solution{};
  std::array<std::array<double, kPredictionOrder>, kPredictionOrder> lower{};
  for (size_t i = 0; i < kPredictionOrder; ++i) {
    for (size_t j = 0; j <= i; ++j) {
      double sum = products[j + 1][i + 1];
      for (size_t k = 0; k < j; ++k) sum -= lower[i][k] * lower[j][k];
      if (i == j) {
        if (sum <= 0) return {};
        lower[i][i] = std::sqrt(sum);
      } else {
        lower[i][j] = sum / lower[j][j];
      }
    }
  }
  for (size_t i = 0; i < kPredictionOrder; ++i) {
    double sum = products[0][i + 1];
    for (size_t k = 0; k < i; ++k) sum -= lower[i][k] * solution[k];
    solution[i] = sum / lower[i][i];
  }
  for (size_t i = kPredictionOrder; i-- > 0;) {
    double sum = solution[i];
    for (size_t k = i + 1; k < kPredictionOrder; ++k) sum -= lower[k][i] * solution[k];
    solution[i] = sum / lower[i][i];
  }
  return solution;
}

}  // namespace

Predictor::Predictor(std::span<const Channel> sections) {
  Products products{};
  for (const Channel section : sections) AddProducts(section, products);
  const double ridge = kRidge * products[0][0];
  for (size_t i = 1; i < kSize; ++i) products[i][i] += ridge;
  coefficients_ = Solve(products);
}

std::vector<float> Predictor::Residual(Channel section) const {
  constexpr size_t kBlock = 512;
  std::array<double, kBlock + kPredictionOrder> x;
  std::array<double, kBlock> block;
  std::vector<float> residual;
  residual.reserve(section.size());
  for (size_t t = kPredictionOrder; t < section.size(); t += kBlock) {
    const size_t count = std::min(kBlock, section.size() - t);
    std::copy_n(&section[t - kPredictionOrder], count + kPredictionOrder, x.begin());
    std::copy_n(&x[kPredictionOrder], count, block.begin());
    for (size_t k = 1; k <= kPredictionOrder; ++k) {
      const double c = coefficients_[k - 1];
      const double* before = &x[kPredictionOrder - k];
      for (size_t i = 0; i < count; ++i) block[i] -= c * before[i];
    }
    for (size_t i = 0; i < count; ++i) residual.push_back(static_cast<float>(block[i]));
  }
  return residual;
}

double ResidualLevel(std::vector<float> residual, double floor) {
  constexpr double kPart = 0.995;
  if (residual.empty()) return floor;
  for (float& x : residual) x = std::fabs(x);
  const auto place = residual.begin() +
                     static_cast<std::ptrdiff_t>(kPart * static_cast<double>(residual.size() - 1));
  std::nth_element(residual.begin(), place, residual.end());
  return std::max(static_cast<double>(*place), floor);
}

}  // namespace zyl::audio
