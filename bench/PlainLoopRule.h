// Reference implementation of the loop searches: rates every candidate by the formula.
#pragma once

#include <cmath>
#include <cstdint>

#include "host/valueAccess.h"
#include "sample/LoopSearch.h"

// The rating formula, with an inlined reader for one width.
template <class Access>
double PlainQuality(const zyl::ValueView& view, int32_t start, int32_t end, uint32_t fineLen) {
  const auto value = [&](int32_t at) -> double { return Access::Read(view.values, at); };
  double x = start - fineLen / 4294967295.0;
  if (x <= 0.0 || end >= view.frameCount || end <= x) return 1.0;
  double quality = std::fabs(value(static_cast<int32_t>(x)) - value(end)) / 65535.0;
  const double endSlope = (value(end) - value(end - 1)) / 65535.0;
  for (int k = 20; k >= 1; --k) {
    if (x + 1.0 >= end) break;
    const auto m = static_cast<int32_t>(x);
    const double slope = (value(m + 1) - value(m)) / 65535.0;
    quality += 0.025 * k * std::fabs(slope - endSlope);
    x += 1.0;
  }
  return quality;
}

template <class Access>
int32_t PlainFind(bool findStart, const zyl::ValueView& view, const zyl::LoopPoints& loop,
                  int32_t low, int32_t high, int32_t threshold) {
  int32_t best = findStart ? loop.start : loop.end;
  double bestQuality = 1.0 - threshold / 2147483647.0;
  for (int32_t p = low; p < high; ++p) {
    const double quality = findStart ? PlainQuality<Access>(view, p, loop.end, loop.fineLen)
                                     : PlainQuality<Access>(view, loop.start, p, loop.fineLen);
    if (quality < bestQuality) {
      bestQuality = quality;
      best = p;
    }
  }
  return best;
}
