// Bulk edits and measures over the values of one channel.
//
// Idea: each operation is a template over the width, with the reader and writer inlined, and its
// arithmetic is brought into the narrowest type that gives the same numbers, so that the loop
// becomes vector code at the speed of memory:
//   offset    min(value, highest - offset) + offset     never leaves the width
//   multiply  clamp(value * factor), then truncate      the limits are whole numbers, so clamping
//                                                       first changes nothing and cannot overflow
//   reverse   blocks from both ends, each turned in registers
//   mean      whole-number sums where double precision would be exact as well
#include "sample/ValueRanges.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "host/valueAccess.h"
#include "util/WideVectors.h"

namespace zyl {

namespace {

// The integer in which the values of a width are added: as narrow as they allow, because a vector
// holds more of them.
template <class Access>
using Narrow =
    std::conditional_t<Access::bytesPerValue == 1, std::int8_t,
                       std::conditional_t<Access::bytesPerValue == 2, std::int16_t, std::int32_t>>;

template <class Access>
void Fill(std::byte* values, std::ptrdiff_t count, std::int32_t value) noexcept {
  for (std::ptrdiff_t i = 0; i < count; ++i) Access::Store(values, i, value);
}

template <class Access>
void Offset(std::byte* values, std::ptrdiff_t count, std::int32_t offset) noexcept {
  using Value = Narrow<Access>;
  constexpr std::int64_t highest = Access::highest;
  constexpr std::int64_t lowest = Access::lowest;
  // No value moves farther than the width is wide: a larger offset does what this one does.
  const std::int64_t reach = std::clamp<std::int64_t>(offset, lowest - highest, highest - lowest);
  // The bound on the value before the addition is `highest - reach` going up and
  // `lowest - reach` going down. The addition is done unsigned: `reach` itself may need one bit
  // more than the width, but the sum is known to fit.
  const bool up = reach >= 0;
  const auto bound = static_cast<Value>((up ? highest : lowest) - reach);
  using Bits = std::make_unsigned_t<Value>;
  const auto step = static_cast<Bits>(reach);
  const auto shift = [&](auto hold) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      const Value held = hold(static_cast<Value>(Access::Read(values, i)));
      Access::Store(values, i,
                    static_cast<Value>(static_cast<Bits>(static_cast<Bits>(held) + step)));
    }
  };
  if (up) {
    shift([bound](Value value) { return value < bound ? value : bound; });
  } else {
    shift([bound](Value value) { return value > bound ? value : bound; });
  }
}

#ifdef __SSE2__
constexpr std::ptrdiff_t prefetchDistance = 1024;

// Eight 16-bit values at a time, for factors whose products all fit 32 bits: the packing back to
// 16 bits clamps them to the limits. Returns how many values are done; fewer than 8 remain.
std::ptrdiff_t Multiply16(std::byte* values, std::ptrdiff_t count, double factor) noexcept {
  const __m128d factors = _mm_set1_pd(factor);
  const auto multiply4 = [factors](__m128i four) {
    const __m128d low = _mm_mul_pd(_mm_cvtepi32_pd(four), factors);
    const __m128d high = _mm_mul_pd(_mm_cvtepi32_pd(_mm_unpackhi_epi64(four, four)), factors);
    return _mm_unpacklo_epi64(_mm_cvttpd_epi32(low), _mm_cvttpd_epi32(high));
  };
  std::ptrdiff_t done = 0;
  for (; done + 8 <= count; done += 8) {
    Prefetch(values + done * 2 + prefetchDistance);
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

// The factor must be finite, so that no product is NaN.
template <class Access>
void Multiply(std::byte* values, std::ptrdiff_t count, double factor) noexcept {
  constexpr double highest = Access::highest;
  constexpr double lowest = Access::lowest;
  std::ptrdiff_t i = 0;
#ifdef __SSE2__
  if constexpr (Access::bytesPerValue == 2) {
    if (std::fabs(factor) <= 65535.0) i = Multiply16(values, count, factor);
  }
#endif
  for (; i < count; ++i) {
    double product = Access::Read(values, i) * factor;
    product = product < highest ? product : highest;
    product = product > lowest ? product : lowest;
    Access::Store(values, i, static_cast<std::int32_t>(product));
  }
}

// Blocks of values that can be turned end to end in registers, by width.
#if defined(__GNUC__) || defined(__clang__)
template <int Bytes>
struct Block;
template <>
struct Block<1> {
  using Type = std::uint64_t;
  static Type Turn(Type block) noexcept { return __builtin_bswap64(block); }
};
template <>
struct Block<4> {
  typedef std::uint32_t Type __attribute__((vector_size(16)));
  static Type Turn(Type block) noexcept {
    return __builtin_shufflevector(block, block, 3, 2, 1, 0);
  }
};
template <>
struct Block<2> : Block<4> {
  // The pairs are turned and then the values of each pair: compilers have no short way for eight
  // 16-bit lanes on every machine.
  static Type Turn(Type block) noexcept {
    const Type pairs = Block<4>::Turn(block);
    return (pairs << 16) | (pairs >> 16);
  }
};
#define ZYL_TURNS_BLOCKS 1
#else
#define ZYL_TURNS_BLOCKS 0
#endif

template <class Access>
void Reverse(std::byte* values, std::ptrdiff_t count) noexcept {
  constexpr std::ptrdiff_t width = Access::bytesPerValue;
  std::byte* front = values;
  std::byte* back = values + count * width;  // one past the part still to be reversed
#if ZYL_TURNS_BLOCKS
  if constexpr (width != 3) {
    using Turner = Block<width>;
    constexpr std::ptrdiff_t size = sizeof(typename Turner::Type);
    for (; back - front >= 2 * size; front += size, back -= size) {
      typename Turner::Type head, tail;
      std::memcpy(&head, front, size);
      std::memcpy(&tail, back - size, size);
      head = Turner::Turn(head);
      tail = Turner::Turn(tail);
      std::memcpy(front, &tail, size);
      std::memcpy(back - size, &head, size);
    }
  }
#endif
  for (back -= width; front < back; front += width, back -= width) {
    std::byte first[width], last[width];
    std::memcpy(first, front, width);
    std::memcpy(last, back, width);
    std::memcpy(front, last, width);
    std::memcpy(back, first, width);
  }
}

// A block is short enough for its narrow sums: 2^15 values of 16 bits stay within 2^30.
constexpr std::ptrdiff_t sumBlockValues = std::ptrdiff_t{1} << 15;

template <class Access>
std::int64_t BlockSum(const std::byte* values, std::ptrdiff_t count) noexcept {
  std::conditional_t<Access::bytesPerValue <= 2, std::int32_t, std::int64_t> sum = 0;
  for (std::ptrdiff_t i = 0; i < count; ++i) sum += Access::Read(values, i);
  return sum;
}

// The sum that in-order addition in double precision gives. Every partial sum is a whole number,
// and a double holds each one up to 2^53 exactly; while the partial sums of a block cannot pass
// that, adding in whole numbers, in any order, gives the same figure. Beyond it (long and loud
// 24- and 32-bit data) the doubles are added one by one.
template <class Access>
double Sum(const std::byte* values, std::ptrdiff_t count) noexcept {
  constexpr double exactLimit = 9007199254740992.0;
  constexpr double blockReach = -static_cast<double>(Access::lowest) * sumBlockValues;
  double sum = 0.0;
  while (count > 0) {
    const std::ptrdiff_t block = std::min(count, sumBlockValues);
    if (std::fabs(sum) + blockReach <= exactLimit) {
      sum += static_cast<double>(BlockSum<Access>(values, block));
    } else {
      for (std::ptrdiff_t i = 0; i < block; ++i) sum += Access::Read(values, i);
    }
    values += block * Access::bytesPerValue;
    count -= block;
  }
  return sum;
}

}  // namespace

bool ClampIndex(std::int32_t frameCount, std::int32_t& index) noexcept {
  if (frameCount < 1) return false;
  index = std::clamp(index, 0, frameCount - 1);
  return true;
}

bool ClampRange(std::int32_t frameCount, std::int32_t& start, std::int32_t& end) noexcept {
  if (!ClampIndex(frameCount, start) || !ClampIndex(frameCount, end)) return false;
  if (start > end) std::swap(start, end);
  return true;
}

std::int32_t GetValue(const ValueView& view, std::int32_t index) noexcept {
  return VisitWidth(view.bytesPerValue,
                    [&](auto access) { return access.Read(view.values, index); });
}

void SetValue(const ValueBuffer& buffer, std::int32_t index, std::int32_t value) noexcept {
  VisitWidth(buffer.bytesPerValue, [&](auto access) { access.Write(buffer.values, index, value); });
}

namespace {

// Runs an operation template over the values from `start` on, for the buffer's width.
template <class Operation>
auto OverRange(const ValueView& view, std::int32_t start, Operation operation) noexcept {
  return VisitWidth(view.bytesPerValue, [&](auto access) {
    return operation(access, std::ptrdiff_t{start} * access.bytesPerValue);
  });
}

}  // namespace

void SetValues(const ValueBuffer& buffer, std::int32_t start, std::int32_t end,
               std::int32_t value) noexcept {
  const std::int32_t reduced = static_cast<std::int16_t>(value);
  OverRange(buffer, start, [&](auto access, std::ptrdiff_t byteOffset) {
    using Access = decltype(access);
    Fill<Access>(buffer.values + byteOffset, end - start,
                 std::clamp(reduced, Access::lowest, Access::highest));
  });
}

void MultiplyValues(const ValueBuffer& buffer, std::int32_t start, std::int32_t end,
                    double factor) noexcept {
  // 0 times infinity is the only product that is not a number with a factor that is one. A finite
  // factor beyond every width gives 0 there and the limits elsewhere.
  constexpr double beyondAllWidths = 8589934592.0;
  if (std::isnan(factor)) factor = 0.0;
  if (std::isinf(factor)) factor = std::copysign(beyondAllWidths, factor);
  OverRange(buffer, start, [&](auto access, std::ptrdiff_t byteOffset) {
    Multiply<decltype(access)>(buffer.values + byteOffset, end - start, factor);
  });
}

void OffsetValues(const ValueBuffer& buffer, std::int32_t start, std::int32_t end,
                  std::int32_t offset) noexcept {
  OverRange(buffer, start, [&](auto access, std::ptrdiff_t byteOffset) {
    Offset<decltype(access)>(buffer.values + byteOffset, end - start, offset);
  });
}

void ReverseValues(const ValueBuffer& buffer, std::int32_t start, std::int32_t end) noexcept {
  OverRange(buffer, start, [&](auto access, std::ptrdiff_t byteOffset) {
    Reverse<decltype(access)>(buffer.values + byteOffset, std::ptrdiff_t{end} - start + 1);
  });
}

std::int32_t MeanValue(const ValueView& view, std::int32_t start, std::int32_t end) noexcept {
  if (start == end) return 0;
  const double sum = OverRange(view, start, [&](auto access, std::ptrdiff_t byteOffset) {
    return Sum<decltype(access)>(view.values + byteOffset, end - start);
  });
  // Rounded sums may carry the mean past the last 32-bit value.
  const double mean = sum / (end - start);
  return static_cast<std::int32_t>(std::clamp(mean,
                                              double{std::numeric_limits<std::int32_t>::min()},
                                              double{std::numeric_limits<std::int32_t>::max()}));
}

}  // namespace zyl
