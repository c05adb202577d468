// Exact sums: each lane of a vector computes one lag, so that it adds its products one by one in
// the order of the formula, for every vector width.
//
// Screen: with q[j] = x[j] / D rounded to an integer (so |x[j] / D - q[j]| <= 1/2), the integers
//   S = sum q[j] q[j + L]    M = max(sum q[j]^2, sum q[j + L]^2)    over j < W = max(32, L)
// are exact: with |q| <= 2047 and W <= 511 they are below 2^31. Let s and m be the sums of the true
// values, and A the larger sum of |q|. From (q + e)(q' + e') with |e|, |e'| <= 1/2,
//   |s / D^2 - S| <= A + W / 4    |m / D^2 - M| <= A + W / 4,
// and by Cauchy-Schwarz A <= sqrt(W M). So with u = t + t^2 / 4, t = sqrt(W / M), both are at most
// u M, and as |S| <= M,
//   |s / m - S / M| <= 2 u / (1 - u).
// Up to u = 1/4 this is below 2 u + 24 u^2; for larger u that bound exceeds 2, the largest
// difference between two correlations. For any c > 0, t <= (1 / c + c W / M) / 2 avoids the square
// root; the bound is tightest with c near the root mean square of q. A constant of 1e-5 covers the
// rounding of these single-precision operations and of the double-precision evaluation of s / m
// (below 1e-12, and below 1e-6 if an energy rounds to 0).

#include "PitchKernels.h"

#include <array>
#include <cstddef>

#include "util/WideVectors.h"

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace zyl {
namespace {

// Row t, column k: masks the products of the pair (j, j + 1), j = 2 t past the common length, that
// lane k needs.
constexpr auto kTailMaskTable = [] {
  std::array<uint32_t, kScreenLags / 2 * kScreenLags> masks{};
  for (int t = 0; t < kScreenLags / 2; ++t) {
    for (int k = 0; k < kScreenLags; ++k) {
      const uint32_t mask = 2 * t + 1 < k ? 0xFFFFFFFFU : 2 * t < k ? 0x0000FFFFU : 0U;
      masks[size_t{kScreenLags} * static_cast<size_t>(t) + static_cast<size_t>(k)] = mask;
    }
  }
  return masks;
}();

constexpr auto kLagNumberTable = [] {
  std::array<float, 512> numbers{};
  for (size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<float>(i);
  return numbers;
}();

// From other headers the code below calls only intrinsics. The linker keeps one copy of an inline
// function for the whole program, and that copy could be one compiled for AVX2.
constexpr const uint32_t* kTailMasks = kTailMaskTable.data();
constexpr const float* kLagNumbers = kLagNumberTable.data();

constexpr int CommonLength(int firstLag) {
  return firstLag > kShortestSum ? firstLag : kShortestSum;
}

namespace baseline {
constexpr int kVectorBytes = 16;
constexpr char kName[] = "baseline";
#if defined(__SSE2__)
using RawWords = uint32_t __attribute__((vector_size(16)));
inline auto PairProducts(RawWords a, RawWords b) {
  using RawInts = int32_t __attribute__((vector_size(16)));
  return reinterpret_cast<RawInts>(
      _mm_madd_epi16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
}
template <class Ints>
inline uint32_t SignBits(Ints mask) {
  return static_cast<uint32_t>(_mm_movemask_ps(reinterpret_cast<__m128>(mask)));
}
#else
using RawWords = uint32_t __attribute__((vector_size(16)));
inline auto PairProducts(RawWords a, RawWords b) {
  using RawInts = int32_t __attribute__((vector_size(16)));
  const auto low = [](RawWords v) { return reinterpret_cast<RawInts>(v << 16) >> 16; };
  const auto high = [](RawWords v) { return reinterpret_cast<RawInts>(v) >> 16; };
  return low(a) * low(b) + high(a) * high(b);
}
template <class Ints>
inline uint32_t SignBits(Ints mask) {
  uint32_t bits = 0;
  for (int k = 0; k < 4; ++k) bits |= (mask[k] != 0 ? 1U : 0U) << k;
  return bits;
}
#endif
#include "PitchKernelsBody.inc"
}  // namespace baseline

#if ZYL_HAS_AVX2_CODE

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif
namespace avx2 {
constexpr int kVectorBytes = 32;
constexpr char kName[] = "avx2";
using RawWords = uint32_t __attribute__((vector_size(32)));
inline auto PairProducts(RawWords a, RawWords b) {
  using RawInts = int32_t __attribute__((vector_size(32)));
  return reinterpret_cast<RawInts>(
      _mm256_madd_epi16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}
template <class Ints>
inline uint32_t SignBits(Ints mask) {
  return static_cast<uint32_t>(_mm256_movemask_ps(reinterpret_cast<__m256>(mask)));
}
#include "PitchKernelsBody.inc"
}  // namespace avx2
#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif  // ZYL_HAS_AVX2_CODE

}  // namespace

std::vector<const PitchKernels*> RunnablePitchKernels() {
  std::vector<const PitchKernels*> runnable = {&baseline::kKernels};
#if ZYL_HAS_AVX2_CODE
  if (HasAvx2()) runnable.push_back(&avx2::kKernels);
#endif
  return runnable;
}

const PitchKernels& BestPitchKernels() {
  static const PitchKernels& best = *RunnablePitchKernels().back();
  return best;
}

}  // namespace zyl
