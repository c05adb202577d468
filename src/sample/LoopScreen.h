// The inner part of the loop searches: the best of many neighbouring loop points, by a cheap
// screening of all and an exact rating of the few that pass.
//
// It covers the regular case only: candidates whose rating has all 20 slope terms, read from
// consecutive positions. The searches in LoopSearch bring the others themselves.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "sample/ValueRanges.h"

namespace zyl {

// Constants of the rating formula; see LoopQuality.
constexpr int loopTermCount = 20;
constexpr double loopFullScale = 65535.0;
constexpr std::array<double, loopTermCount> loopTermWeights = [] {
  std::array<double, loopTermCount> weights{};
  for (std::size_t i = 0; i < loopTermCount; ++i) {
    weights[i] = 0.025 * (loopTermCount - static_cast<int>(i));
  }
  return weights;
}();

// The slope between two neighbouring values. Values come as doubles, in which differences of
// 32-bit values are exact too.
inline double LoopSlope(double from, double to) noexcept { return (to - from) / loopFullScale; }

// The best loop point so far.
struct BestLoopPoint {
  double quality;
  std::int32_t position;

  // Takes the candidate if it is better; of equal ones the earlier stays.
  bool Offer(double candidateQuality, std::int32_t candidate) noexcept {
    if (candidateQuality >= quality) return false;
    quality = candidateQuality;
    position = candidate;
    return true;
  }
};

// Offers the start candidates [first, last) of a loop that ends at `loopEnd`. Candidate p is rated
// on the values from position p - shift on, all of which lie before the loop end.
void OfferLoopStarts(const ValueView& view, std::int32_t loopEnd, std::int32_t shift,
                     std::int32_t first, std::int32_t last, BestLoopPoint& best) noexcept;

// Offers the end candidates [first, last) of a loop whose rated slopes begin at `slopePositions`,
// all of which end before the first candidate.
void OfferLoopEnds(const ValueView& view,
                   const std::array<std::int32_t, loopTermCount>& slopePositions,
                   std::int32_t first, std::int32_t last, BestLoopPoint& best) noexcept;

}  // namespace zyl
