// The inner loop of the loop searches: finds the best of many neighbouring loop points by screening
// all of them cheaply and rating the few that pass exactly.
//
// Covers only the regular case: candidates whose rating has all 20 slope terms, read from
// consecutive positions. LoopSearch rates all other candidates itself.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "sample/ValueRanges.h"

namespace zyl {

// Constants of the rating formula; see LoopQuality.
constexpr int kLoopTermCount = 20;
constexpr double kLoopFullScale = 65535.0;
constexpr std::array<double, kLoopTermCount> kLoopTermWeights = [] {
  std::array<double, kLoopTermCount> weights{};
  for (size_t i = 0; i < kLoopTermCount; ++i) {
    weights[i] = 0.025 * (kLoopTermCount - static_cast<int>(i));
  }
  return weights;
}();

// The slope between two neighbouring values. Differences of 32-bit values are exact in doubles.
inline double LoopSlope(double from, double to) noexcept { return (to - from) / kLoopFullScale; }

// The best loop point found so far.
struct BestLoopPoint {
  double quality;
  int32_t position;

  // Stores the candidate and returns true if it is better; a tie keeps the earlier one.
  bool Offer(double candidateQuality, int32_t candidate) noexcept {
    if (candidateQuality >= quality) return false;
    quality = candidateQuality;
    position = candidate;
    return true;
  }
};

// Offers the start candidates [first, last) of a loop that ends at `loopEnd`. Candidate p is rated
// on the values from position p - shift, all of which precede the loop end.
void OfferLoopStarts(const ValueView& view, int32_t loopEnd, int32_t shift, int32_t first,
                     int32_t last, BestLoopPoint& best) noexcept;

// Offers the end candidates [first, last) of a loop whose rated slopes begin at `slopePositions`;
// all slopes end before the first candidate.
void OfferLoopEnds(const ValueView& view, const std::array<int32_t, kLoopTermCount>& slopePositions,
                   int32_t first, int32_t last, BestLoopPoint& best) noexcept;

}  // namespace zyl
