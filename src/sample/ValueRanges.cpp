// Idea: each operation is a template over the width with inlined reader and writer. It computes in
// the narrowest type that gives the same results, so that compilers vectorise the loop and memory
// bandwidth is the limit:
//   offset    min(value, highest - offset) + offset     never exceeds the width
//   multiply  clamp(value * factor), then truncate      the limits are integers, so clamping first
//                                                       gives the same result and cannot overflow
//   reverse   exchanges blocks from both ends, each reversed in registers
//   mean      integer sums where double precision would be exact too
#include "sample/ValueRanges.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

#ifdef __SSE2__
#include <immintrin.h>
#endif

#include "host/valueAccess.h"
#include "util/WideVectors.h"

namespace zyl {

namespace {

// The narrowest integer type for the values of a width: a vector holds more of them.
template <class Access>
using Narrow = std::conditional_t<Access::bytesPerValue == 1, int8_t,
                                  std::conditional_t<Access::bytesPerValue == 2, int16_t, int32_t>>;

template <class Access>
void Fill(std::byte* values, ptrdiff_t count, int32_t value) noexcept {
  for (ptrdiff_t i = 0; i < count; ++i) Access::Store(values, i, value);
}

template <class Access>
void Offset(std::byte* values, ptrdiff_t count, int32_t offset) noexcept {
  using Value = Narrow<Access>;
  constexpr int64_t kHighest = Access::highest;
  constexpr int64_t kLowest = Access::lowest;
  // Clamping the offset to the span of the width does not change any result.
  const int64_t reach = std::clamp<int64_t>(offset, kLowest - kHighest, kHighest - kLowest);
  // The value before the addition is limited to at most `kHighest - reach` for a positive offset
  // and at least `kLowest - reach` for a negative one. The addition is unsigned: `reach` may need
  // one bit more than the width, but the sum fits.
  const bool up = reach >= 0;
  const auto bound = static_cast<Value>((up ? kHighest : kLowest) - reach);
  using Bits = std::make_unsigned_t<Value>;
  const auto step = static_cast<Bits>(reach);
  const auto shift = [&](auto limit) {
    for (ptrdiff_t i = 0; i < count; ++i) {
      const Value limited = limit(static_cast<Value>(Access::Read(values, i)));
      Access::Store(values, i,
                    static_cast<Value>(static_cast<Bits>(static_cast<Bits>(limited) + step)));
    }
  };
  if (up) {
    shift([bound](Value value) { return value < bound ? value : bound; });
  } else {
    shift([bound](Value value) { return value > bound ? value : bound; });
  }
}

#ifdef __SSE2__
constexpr ptrdiff_t kPrefetchDistance = 1024;

// Multiplies eight 16-bit values at a time. All products must fit 32 bits; packing them to 16 bits
// clamps them. Returns the number of processed values; fewer than 8 remain.
ptrdiff_t Multiply16(std::byte* values, ptrdiff_t count, double factor) noexcept {
  const __m128d factors = _mm_set1_pd(factor);
  const auto multiply4 = [factors](__m128i four) {
    const __m128d low = _mm_mul_pd(_mm_cvtepi32_pd(four), factors);
    const __m128d high = _mm_mul_pd(_mm_cvtepi32_pd(_mm_unpackhi_epi64(four, four)), factors);
    return _mm_unpacklo_epi64(_mm_cvttpd_epi32(low), _mm_cvttpd_epi32(high));
  };
  ptrdiff_t done = 0;
  for (; done + 8 <= count; done += 8) {
    Prefetch(values + done * 2 + kPrefetchDistance);
    __m128i eight;
    std::memcpy(&eight, values + done * 2, sizeof eight);
    const __m128i low = _mm_srai_epi32(_mm_unpacklo_epi16(eight, eight), 16);
    const __m128i high = _mm_srai_epi32(_mm_unpackhi_epi16(eight, eight), 16);
    eight = _mm_packs_epi32(multiply4(low), multiply4(high));
    std::memcpy(values + done * 2, &eight, sizeof eight);
  }
  return done;
}
#endif

#if ZYL_HAS_AVX2_CODE
// The same with vectors of four doubles.
ZYL_AVX2 ptrdiff_t Multiply16Avx2(std::byte* values, ptrdiff_t count, double factor) noexcept {
  const __m256d factors = _mm256_set1_pd(factor);
  ptrdiff_t done = 0;
  for (; done + 8 <= count; done += 8) {
    Prefetch(values + done * 2 + kPrefetchDistance);
    __m128i eight;
    std::memcpy(&eight, values + done * 2, sizeof eight);
    const __m256i wide = _mm256_cvtepi16_epi32(eight);
    const __m256d low = _mm256_mul_pd(_mm256_cvtepi32_pd(_mm256_castsi256_si128(wide)), factors);
    const __m256d high =
        _mm256_mul_pd(_mm256_cvtepi32_pd(_mm256_extracti128_si256(wide, 1)), factors);
    eight = _mm_packs_epi32(_mm256_cvttpd_epi32(low), _mm256_cvttpd_epi32(high));
    std::memcpy(values + done * 2, &eight, sizeof eight);
  }
  return done;
}
#endif

// The factor must be finite, so that no product is NaN.
template <class Access>
void Multiply(std::byte* values, ptrdiff_t count, double factor) noexcept {
  constexpr double kHighest = Access::highest;
  constexpr double kLowest = Access::lowest;
  ptrdiff_t i = 0;
#ifdef __SSE2__
  if constexpr (Access::bytesPerValue == 2) {
    if (std::fabs(factor) <= 65535.0) {
#if ZYL_HAS_AVX2_CODE
      i = HasAvx2() ? Multiply16Avx2(values, count, factor) : Multiply16(values, count, factor);
#else
      i = Multiply16(values, count, factor);
#endif
    }
  }
#endif
  for (; i < count; ++i) {
    double product = Access::Read(values, i) * factor;
    product = product < kHighest ? product : kHighest;
    product = product > kLowest ? product : kLowest;
    Access::Store(values, i, static_cast<int32_t>(product));
  }
}

// Blocks of values whose order can be reversed in registers, by width.
#if defined(__GNUC__) || defined(__clang__)
template <int Bytes>
struct Block;
template <>
struct Block<1> {
  using Type = uint64_t;
  static Type Reversed(Type block) noexcept { return __builtin_bswap64(block); }
};
template <>
struct Block<4> {
  typedef uint32_t Type __attribute__((vector_size(16)));
  static Type Reversed(Type block) noexcept {
    return __builtin_shufflevector(block, block, 3, 2, 1, 0);
  }
};
template <>
struct Block<2> : Block<4> {
  // Reverses the pairs, then the values in each pair: not every target has a short instruction
  // sequence for reversing eight 16-bit lanes.
  static Type Reversed(Type block) noexcept {
    const Type pairs = Block<4>::Reversed(block);
    return (pairs << 16) | (pairs >> 16);
  }
};
#define ZYL_REVERSES_BLOCKS 1
#else
#define ZYL_REVERSES_BLOCKS 0
#endif

template <class Access>
void Reverse(std::byte* values, ptrdiff_t count) noexcept {
  constexpr ptrdiff_t kWidth = Access::bytesPerValue;
  std::byte* front = values;
  std::byte* back = values + count * kWidth;  // one past the part still to be reversed
#if ZYL_REVERSES_BLOCKS
  if constexpr (kWidth != 3) {
    using ReversibleBlock = Block<kWidth>;
    constexpr ptrdiff_t kSize = sizeof(typename ReversibleBlock::Type);
    for (; back - front >= 2 * kSize; front += kSize, back -= kSize) {
      typename ReversibleBlock::Type head, tail;
      std::memcpy(&head, front, kSize);
      std::memcpy(&tail, back - kSize, kSize);
      head = ReversibleBlock::Reversed(head);
      tail = ReversibleBlock::Reversed(tail);
      std::memcpy(front, &tail, kSize);
      std::memcpy(back - kSize, &head, kSize);
    }
  }
#endif
  for (back -= kWidth; front < back; front += kWidth, back -= kWidth) {
    std::byte first[kWidth], last[kWidth];
    std::memcpy(first, front, kWidth);
    std::memcpy(last, back, kWidth);
    std::memcpy(front, last, kWidth);
    std::memcpy(back, first, kWidth);
  }
}

// Short enough for 32-bit sums of narrow values: 2^15 values of 16 bits sum to at most 2^30.
constexpr ptrdiff_t kSumBlockValues = ptrdiff_t{1} << 15;

template <class Access>
int64_t BlockSum(const std::byte* values, ptrdiff_t count) noexcept {
  std::conditional_t<Access::bytesPerValue <= 2, int32_t, int64_t> sum = 0;
  for (ptrdiff_t i = 0; i < count; ++i) sum += Access::Read(values, i);
  return sum;
}

// Returns the same sum as in-order addition in double precision. Every partial sum is an integer,
// and doubles represent integers up to 2^53 exactly. While a block's partial sums cannot exceed
// 2^53, integer addition in any order gives the same result. Beyond that (long, loud 24- and 32-bit
// data) the values are added as doubles one by one.
template <class Access>
double Sum(const std::byte* values, ptrdiff_t count) noexcept {
  constexpr double kExactLimit = 9007199254740992.0;
  constexpr double kBlockReach = -static_cast<double>(Access::lowest) * kSumBlockValues;
  double sum = 0.0;
  while (count > 0) {
    const ptrdiff_t block = std::min(count, kSumBlockValues);
    if (std::fabs(sum) + kBlockReach <= kExactLimit) {
      sum += static_cast<double>(BlockSum<Access>(values, block));
    } else {
      for (ptrdiff_t i = 0; i < block; ++i) sum += Access::Read(values, i);
    }
    values += block * Access::bytesPerValue;
    count -= block;
  }
  return sum;
}

}  // namespace

bool ClampIndex(int32_t frameCount, int32_t& index) noexcept {
  if (frameCount < 1) return false;
  index = std::clamp(index, 0, frameCount - 1);
  return true;
}

bool ClampRange(int32_t frameCount, int32_t& start, int32_t& end) noexcept {
  if (!ClampIndex(frameCount, start) || !ClampIndex(frameCount, end)) return false;
  if (start > end) std::swap(start, end);
  return true;
}

int32_t GetValue(const ValueView& view, int32_t index) noexcept {
  return VisitWidth(view.bytesPerValue,
                    [&](auto access) { return access.Read(view.values, index); });
}

void SetValue(const ValueBuffer& buffer, int32_t index, int32_t value) noexcept {
  VisitWidth(buffer.bytesPerValue, [&](auto access) { access.Write(buffer.values, index, value); });
}

namespace {

// Runs an operation template for the buffer's width on the values from `start`.
template <class Operation>
auto OverRange(const ValueView& view, int32_t start, Operation operation) noexcept {
  return VisitWidth(view.bytesPerValue, [&](auto access) {
    return operation(access, ptrdiff_t{start} * access.bytesPerValue);
  });
}

}  // namespace

void SetValues(const ValueBuffer& buffer, int32_t start, int32_t end, int32_t value) noexcept {
  const int32_t reduced = static_cast<int16_t>(value);
  OverRange(buffer, start, [&](auto access, ptrdiff_t byteOffset) {
    using Access = decltype(access);
    Fill<Access>(buffer.values + byteOffset, end - start,
                 std::clamp(reduced, Access::lowest, Access::highest));
  });
}

void MultiplyValues(const ValueBuffer& buffer, int32_t start, int32_t end, double factor) noexcept {
  // Without a NaN factor, only 0 * infinity is NaN. A finite factor that exceeds every width gives
  // 0 for the value 0 and the width's limits for all other values.
  constexpr double kBeyondAllWidths = 8589934592.0;
  if (std::isnan(factor)) factor = 0.0;
  if (std::isinf(factor)) factor = std::copysign(kBeyondAllWidths, factor);
  OverRange(buffer, start, [&](auto access, ptrdiff_t byteOffset) {
    Multiply<decltype(access)>(buffer.values + byteOffset, end - start, factor);
  });
}

void OffsetValues(const ValueBuffer& buffer, int32_t start, int32_t end, int32_t offset) noexcept {
  OverRange(buffer, start, [&](auto access, ptrdiff_t byteOffset) {
    Offset<decltype(access)>(buffer.values + byteOffset, end - start, offset);
  });
}

void ReverseValues(const ValueBuffer& buffer, int32_t start, int32_t end) noexcept {
  OverRange(buffer, start, [&](auto access, ptrdiff_t byteOffset) {
    Reverse<decltype(access)>(buffer.values + byteOffset, ptrdiff_t{end} - start + 1);
  });
}

int32_t MeanValue(const ValueView& view, int32_t start, int32_t end) noexcept {
  if (start == end) return 0;
  const double sum = OverRange(view, start, [&](auto access, ptrdiff_t byteOffset) {
    return Sum<decltype(access)>(view.values + byteOffset, end - start);
  });
  // Rounding of the sum may push the mean past the 32-bit limits.
  const double mean = sum / (end - start);
  return static_cast<int32_t>(std::clamp(mean, double{std::numeric_limits<int32_t>::min()},
                                         double{std::numeric_limits<int32_t>::max()}));
}

}  // namespace zyl
