// How well a loop joins, and the search for the loop start or end that joins best.
//
// Quality is a double: 0 for a perfect join, larger for worse ones; 1.0 also stands for a loop
// that cannot be rated. Nothing here changes or keeps the values it reads.
#pragma once

#include <cstdint>

#include "sample/ValueRanges.h"

namespace zyl {

// One loop of a sample. It is rated from position start - fineLen / 4294967295.
struct LoopPoints {
  std::int32_t start = 0;
  std::int32_t end = 0;  // last position of the loop
  std::uint32_t fineLen = 0;
  bool inUse = true;  // false: the sample's loop count leaves it out, it cannot be rated
};

// With x = start - fineLen / 4294967295, m = x truncated and r(p) the value at p:
//
//   |r(m) - r(end)| / 65535
//     + sum over i = 0..19 of 0.025 * (20 - i) * |slope(m + i) - (r(end) - r(end - 1)) / 65535|
//
// where slope(p) = (r(p + 1) - r(p)) / 65535, and the sum stops where x + i + 1 reaches the end.
// Unratable, 1.0: not in use, x <= 0, end <= x, or end beyond the data.
double LoopQuality(const ValueView& view, const LoopPoints& loop) noexcept;

inline double LoopQuality(const ValueView& view, std::int32_t loopStart, std::int32_t loopEnd,
                          std::uint32_t loopFineLen) noexcept {
  return LoopQuality(view, LoopPoints{loopStart, loopEnd, loopFineLen});
}

// (1 - quality) * 2147483647 truncated toward zero: 2147483647 for a perfect loop, 0 for one that
// cannot be rated. Qualities beyond 2 are held at the lowest 32-bit value.
std::int32_t ScaledLoopQuality(double quality) noexcept;

// The candidate of best quality for the loop's start, its end and fine length staying as they are.
// Candidates are the positions from the smaller of the two indexes up to, not including, the
// larger, within the data and before the loop's end. Only a candidate better than the threshold
// (on the scale of ScaledLoopQuality; may be negative) is taken, of equal ones the first; without
// one the answer is the loop's present start.
std::int32_t FindLoopStart(const ValueView& view, const LoopPoints& loop, std::int32_t startIndex,
                           std::int32_t lastIndex, std::int32_t threshold) noexcept;

// The same search for the loop's end, over candidates from the loop's start on.
std::int32_t FindLoopEnd(const ValueView& view, const LoopPoints& loop, std::int32_t startIndex,
                         std::int32_t lastIndex, std::int32_t threshold) noexcept;

}  // namespace zyl
