// The searches bring every candidate that the rating formula treats specially one by one: those
// with fewer than 20 terms, those that cannot be rated, and those whose fractional start passes a
// power of two, where adding 1 to a double may round. All others go through the screening of
// LoopScreen in long runs. The answer is that of rating every candidate in order.
#include "sample/LoopSearch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "host/valueAccess.h"
#include "sample/LoopScreen.h"

namespace zyl {

namespace {

constexpr std::int32_t lowestInt = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highestInt = std::numeric_limits<std::int32_t>::max();

// The position from which a loop is rated.
double RatedStart(std::int32_t start, std::uint32_t fineLen) noexcept {
  return start - fineLen / 4294967295.0;
}

template <class Access>
double Rate(const ValueView& view, const LoopPoints& loop) noexcept {
  const auto value = [&](std::int32_t position) -> double {
    return Access::Read(view.values, position);
  };
  double x = RatedStart(loop.start, loop.fineLen);
  if (!loop.inUse || x <= 0.0 || loop.end >= view.frameCount || loop.end <= x) return 1.0;
  double quality = std::fabs(value(static_cast<std::int32_t>(x)) - value(loop.end)) / loopFullScale;
  const double endSlope = LoopSlope(value(loop.end - 1), value(loop.end));
  for (const double weight : loopTermWeights) {
    if (x + 1.0 >= loop.end) break;
    const auto m = static_cast<std::int32_t>(x);
    quality += weight * std::fabs(LoopSlope(value(m), value(m + 1)) - endSlope);
    x += 1.0;
  }
  return quality;
}

// How far, from start candidate `first` on, the truncated x is the candidate less a fixed shift
// and adding 1 to x is exact. With a fine length that holds between two powers of two: there x is
// the candidate less one and the same rounded fraction, and the terms reach no coarser spacing of
// doubles. Answers `first` where no such run begins.
std::int32_t RegularRunEnd(std::int32_t first, std::uint32_t fineLen) noexcept {
  if (fineLen == 0) return first > 0 ? highestInt : first;
  std::int64_t power = 1;
  while (power * 2 <= first) power *= 2;
  const std::int64_t runEnd = power * 2 - loopTermCount;
  return first > power && runEnd > first ? static_cast<std::int32_t>(runEnd) : first;
}

// The threshold, which is on the scale of ScaledLoopQuality, as a quality.
double QualityLimit(std::int32_t threshold) noexcept { return 1.0 - threshold / 2147483647.0; }

}  // namespace

double LoopQuality(const ValueView& view, const LoopPoints& loop) noexcept {
  return VisitWidth(view.bytesPerValue,
                    [&](auto access) { return Rate<decltype(access)>(view, loop); });
}

std::int32_t ScaledLoopQuality(double quality) noexcept {
  const double scaled = (1.0 - quality) * 2147483647.0;
  return static_cast<std::int32_t>(std::clamp(scaled, double{lowestInt}, double{highestInt}));
}

std::int32_t FindLoopStart(const ValueView& view, const LoopPoints& loop, std::int32_t startIndex,
                           std::int32_t lastIndex, std::int32_t threshold) noexcept {
  std::int32_t low = std::min(startIndex, lastIndex);
  std::int32_t high = std::max(startIndex, lastIndex);
  if (low >= loop.end) return loop.start;
  low = std::max(low, 0);
  high = std::min({high, view.frameCount - 1, loop.end});

  BestLoopPoint best{QualityLimit(threshold), loop.start};
  if (low >= high) return best.position;
  if (!loop.inUse || loop.end >= view.frameCount) {
    best.Offer(1.0, low);  // no candidate can be rated
    return best.position;
  }
  LoopPoints candidate = loop;
  const std::int32_t fullTermsEnd = std::min(high, loop.end - loopTermCount);
  for (std::int32_t p = low; p < high && best.quality > 0.0;) {
    const std::int32_t runEnd = std::min(RegularRunEnd(p, loop.fineLen), fullTermsEnd);
    if (p < runEnd) {
      const std::int32_t shift = p - static_cast<std::int32_t>(RatedStart(p, loop.fineLen));
      OfferLoopStarts(view, loop.end, shift, p, runEnd, best);
      p = runEnd;
    } else {
      candidate.start = p;
      best.Offer(LoopQuality(view, candidate), p);
      ++p;
    }
  }
  return best.position;
}

std::int32_t FindLoopEnd(const ValueView& view, const LoopPoints& loop, std::int32_t startIndex,
                         std::int32_t lastIndex, std::int32_t threshold) noexcept {
  std::int32_t low = std::min(startIndex, lastIndex);
  std::int32_t high = std::max(startIndex, lastIndex);
  if (high <= loop.start) return loop.end;
  low = std::max({low, 0, loop.start});
  high = std::min(high, view.frameCount - 1);

  BestLoopPoint best{QualityLimit(threshold), loop.end};
  if (low >= high) return best.position;
  double x = RatedStart(loop.start, loop.fineLen);
  if (!loop.inUse || x <= 0.0) {
    best.Offer(1.0, low);  // no candidate can be rated
    return best.position;
  }
  LoopPoints candidate = loop;
  const std::int64_t fullTermsBegin = std::int64_t{loop.start} + loopTermCount + 2;
  std::int32_t p = low;
  for (; p < high && p < fullTermsBegin; ++p) {
    candidate.end = p;
    best.Offer(LoopQuality(view, candidate), p);
  }
  if (p >= high) return best.position;

  std::array<std::int32_t, loopTermCount> slopePositions{};
  for (std::int32_t& position : slopePositions) {
    position = static_cast<std::int32_t>(x);
    x += 1.0;
  }
  OfferLoopEnds(view, slopePositions, p, high, best);
  return best.position;
}

}  // namespace zyl
