// The searches rate every special candidate individually: those with fewer than 20 terms, those
// that cannot be rated, and those whose fractional start passes a power of two, where adding 1 to a
// double may round. LoopScreen handles all others in long runs. The result is the same as rating
// every candidate in order.
#include "sample/LoopSearch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "host/valueAccess.h"
#include "sample/LoopScreen.h"

namespace zyl {

namespace {

constexpr int32_t kLowestInt = std::numeric_limits<int32_t>::min();
constexpr int32_t kHighestInt = std::numeric_limits<int32_t>::max();

// The rated start of a loop, x in the formula of LoopQuality.
double RatedStart(int32_t start, uint32_t fineLen) noexcept {
  return start - fineLen / 4294967295.0;
}

template <class Access>
double Rate(const ValueView& view, const LoopPoints& loop) noexcept {
  const auto value = [&](int32_t position) -> double {
    return Access::Read(view.values, position);
  };
  double x = RatedStart(loop.start, loop.fineLen);
  if (!loop.inUse || x <= 0.0 || loop.end >= view.frameCount || loop.end <= x) return 1.0;
  double quality = std::fabs(value(static_cast<int32_t>(x)) - value(loop.end)) / kLoopFullScale;
  const double endSlope = LoopSlope(value(loop.end - 1), value(loop.end));
  for (const double weight : kLoopTermWeights) {
    if (x + 1.0 >= loop.end) break;
    const auto m = static_cast<int32_t>(x);
    quality += weight * std::fabs(LoopSlope(value(m), value(m + 1)) - endSlope);
    x += 1.0;
  }
  return quality;
}

// Returns the end of the run of start candidates from `first` in which the truncated x is the
// candidate minus a fixed shift and adding 1 to x is exact; `first` if there is no such run. With a
// fine length a run ends before the next power of two: within it x is the candidate minus the same
// rounded fraction, and no term reaches a coarser spacing of doubles.
int32_t RegularRunEnd(int32_t first, uint32_t fineLen) noexcept {
  if (fineLen == 0) return first > 0 ? kHighestInt : first;
  int64_t power = 1;
  while (power * 2 <= first) power *= 2;
  const int64_t runEnd = power * 2 - kLoopTermCount;
  return first > power && runEnd > first ? static_cast<int32_t>(runEnd) : first;
}

// Converts a threshold on the scale of ScaledLoopQuality to a quality.
double QualityLimit(int32_t threshold) noexcept { return 1.0 - threshold / 2147483647.0; }

}  // namespace

double LoopQuality(const ValueView& view, const LoopPoints& loop) noexcept {
  return VisitWidth(view.bytesPerValue,
                    [&](auto access) { return Rate<decltype(access)>(view, loop); });
}

int32_t ScaledLoopQuality(double quality) noexcept {
  const double scaled = (1.0 - quality) * 2147483647.0;
  return static_cast<int32_t>(std::clamp(scaled, double{kLowestInt}, double{kHighestInt}));
}

int32_t FindLoopStart(const ValueView& view, const LoopPoints& loop, int32_t startIndex,
                      int32_t lastIndex, int32_t threshold) noexcept {
  int32_t low = std::min(startIndex, lastIndex);
  int32_t high = std::max(startIndex, lastIndex);
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
  const int32_t fullTermsEnd = std::min(high, loop.end - kLoopTermCount);
  for (int32_t p = low; p < high && best.quality > 0.0;) {
    const int32_t runEnd = std::min(RegularRunEnd(p, loop.fineLen), fullTermsEnd);
    if (p < runEnd) {
      const int32_t shift = p - static_cast<int32_t>(RatedStart(p, loop.fineLen));
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

int32_t FindLoopEnd(const ValueView& view, const LoopPoints& loop, int32_t startIndex,
                    int32_t lastIndex, int32_t threshold) noexcept {
  int32_t low = std::min(startIndex, lastIndex);
  int32_t high = std::max(startIndex, lastIndex);
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
  const int64_t fullTermsBegin = int64_t{loop.start} + kLoopTermCount + 2;
  int32_t p = low;
  for (; p < high && p < fullTermsBegin; ++p) {
    candidate.end = p;
    best.Offer(LoopQuality(view, candidate), p);
  }
  if (p >= high) return best.position;

  std::array<int32_t, kLoopTermCount> slopePositions{};
  for (int32_t& position : slopePositions) {
    position = static_cast<int32_t>(x);
    x += 1.0;
  }
  OfferLoopEnds(view, slopePositions, p, high, best);
  return best.position;
}

}  // namespace zyl
