// Rates how well a loop joins, and searches for the loop start or end that joins best.
//
// Quality is a double: 0 is a perfect join, larger is worse; a loop that cannot be rated has 1.0.
// The functions neither change nor keep the values that they read.
#pragma once

#include <cstdint>

#include "sample/ValueRanges.h"

namespace zyl {

// One loop of a sample. Its rated start is start - fineLen / 4294967295 positions.
struct LoopPoints {
  int32_t start = 0;
  int32_t end = 0;  // last position of the loop
  uint32_t fineLen = 0;
  bool inUse = true;  // false: beyond the sample's loop count, cannot be rated
};

// With x = start - fineLen / 4294967295, m = x truncated and r(p) the value at p:
//
//   |r(m) - r(end)| / 65535
//     + sum over i = 0..19 of 0.025 * (20 - i) * |slope(m + i) - (r(end) - r(end - 1)) / 65535|
//
// where slope(p) = (r(p + 1) - r(p)) / 65535, and the sum stops where x + i + 1 reaches the end.
// Returns 1.0 if the loop cannot be rated: not in use, x <= 0, end <= x, or end beyond the data.
double LoopQuality(const ValueView& view, const LoopPoints& loop) noexcept;

inline double LoopQuality(const ValueView& view, int32_t loopStart, int32_t loopEnd,
                          uint32_t loopFineLen) noexcept {
  return LoopQuality(view, LoopPoints{loopStart, loopEnd, loopFineLen});
}

// Returns (1 - quality) * 2147483647 truncated toward zero: 2147483647 for a perfect loop, 0 for
// one that cannot be rated. Clamped to INT32_MIN for qualities above 2.
int32_t ScaledLoopQuality(double quality) noexcept;

// Returns the loop start of best quality, with the loop's end and fine length unchanged. Candidates
// are the positions from the smaller index up to, not including, the larger, within the data and
// before the loop's end. A candidate must be better than the threshold (on the scale of
// ScaledLoopQuality; may be negative); the first of equal ones wins. Returns the loop's current
// start if no candidate is better.
int32_t FindLoopStart(const ValueView& view, const LoopPoints& loop, int32_t startIndex,
                      int32_t lastIndex, int32_t threshold) noexcept;

// The same search for the loop's end, over candidates from the loop's start.
int32_t FindLoopEnd(const ValueView& view, const LoopPoints& loop, int32_t startIndex,
                    int32_t lastIndex, int32_t threshold) noexcept;

}  // namespace zyl
