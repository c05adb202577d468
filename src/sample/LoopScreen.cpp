// Idea. All terms of the rating are at least 0, so a lower bound of a candidate's rating that
// reaches the best quality so far rules the candidate out. Neighbouring candidates are bounded side
// by side, in single precision and without the common division by 65535. Where a part of
// `partSize` candidates is not ruled out, its bounds are raised to the whole rating; where that
// does not rule it out either, it is rated in double precision, term by term.
//
//   rating  |r(m) - r(E)| + sum of w(i) |step(m + i) - step(E - 1)|,   step(p) = r(p + 1) - r(p)
//
// Start candidates share f(p) = |step(p) - step(E - 1)| and its sums of four. As
// w(i) = 0.025 (20 - i), the sum is that over k = 0, 4, 8, 12, 16 of w(k + 3) four(m + k) +
// slant(m + k), and the bound leaves out the slants:
//   four(p) = f(p) + .. + f(p + 3)    slant(p) = 0.025 (3 f(p) + 2 f(p + 1) + f(p + 2))
//
// End candidates differ in s = step(E - 1) alone. For any group of the terms b(i) = step(m + i),
//   sum of w(i) |b(i) - s| >= W |c - s|,   W = sum of w(i),   c = sum of w(i) b(i) / W,
// with equality where s lies outside the group: groups of neighbouring b(i) lose little.
//
// The limit is the best quality, raised by 2^-16 of itself and by `slack`, so that no rounding
// rules out a better candidate. With u = 2^-24 and M the largest magnitude of the values, or that
// of their width until a block's bounds are first raised,
//   - a converted value is off by u M, a step of two by 4 u M, a fixed step or c by 2 u M: each
//     term by 6 u M times its weight, and the sum by less than 64 u M = `slack`. Values below 2^22,
//     their steps and the differences of steps are exact; `slack` is 0.
//   - what remains are fewer than 64 roundings of relative size u in sums of terms >= 0, and the
//     rounding of the rated slopes, whose differences deviate by at most 2^-20 of themselves.
//
// Candidates with the same window of values tie, and the first of them is taken. So one that ties
// with the best is not rated, and a block whose values repeat those of one period before, the
// distance of such a tie, is skipped.
#include "sample/LoopScreen.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

#include "host/valueAccess.h"
#include "util/WideVectors.h"

namespace zyl {

namespace {

constexpr std::int32_t partSize = 32;    // candidates bounded, and rated, side by side
constexpr std::int32_t blockSize = 512;  // the working data of a block stays in the first cache
constexpr std::int32_t cacheLine = 64;
constexpr std::int32_t prefetchDistance = 2048;
constexpr std::int32_t longestWindow = loopTermCount + 1;
constexpr std::int32_t paddedSize = blockSize + partSize + longestWindow;

struct Search {
  const ValueView& view;
  std::int32_t shift;  // the window of candidate p begins at position p - shift
  std::int32_t first, last;

  const std::byte* WindowBytes(std::int32_t candidate) const noexcept {
    return view.values + (std::ptrdiff_t{candidate} - shift) * view.bytesPerValue;
  }
};

template <class Access, class Number>
ZYL_INLINE void Unpack(const std::byte* from, std::int32_t count, Number* to) noexcept {
  for (std::int32_t i = 0; i < count; ++i) to[i] = static_cast<Number>(Access::Read(from, i));
}

template <class Number>
ZYL_INLINE void Unpack(const Search& search, std::int32_t candidate, std::int32_t count,
                       Number* to) noexcept {
  const std::byte* from = search.WindowBytes(candidate);
  switch (search.view.bytesPerValue) {
    case 1:
      return Unpack<ValueAccess<1>>(from, count, to);
    case 2:
      return Unpack<ValueAccess<2>>(from, count, to);
    case 3:
      return Unpack<ValueAccess<3>>(from, count, to);
    default:
      return Unpack<ValueAccess<4>>(from, count, to);
  }
}

ZYL_INLINE double Difference(std::int32_t from, std::int32_t to) noexcept {
  return static_cast<double>(to) - static_cast<double>(from);
}

ZYL_INLINE float Reach(const float* values, std::int32_t count) noexcept {
  std::int32_t bits = 0;  // magnitudes compare as integers do
  for (std::int32_t i = 0; i < count; ++i) {
    bits = std::max(bits, std::bit_cast<std::int32_t>(values[i]) & 0x7FFFFFFF);
  }
  return std::bit_cast<float>(bits);
}

// What differs between the two searches. A rule bounds the candidate at an index of a block from
// the block's values and from features that Prepare makes of them; Rate gives the qualities of
// `partSize` candidates whose windows begin at `values`.
struct StartRule {
  static constexpr std::int32_t window = loopTermCount + 1;

  std::int32_t beforeEnd, end;
  float singleEnd, endStep, reach;
  std::array<float, loopTermCount> weights;

  StartRule(std::int32_t valueBeforeEnd, std::int32_t valueAtEnd) noexcept
      : beforeEnd(valueBeforeEnd),
        end(valueAtEnd),
        singleEnd(static_cast<float>(end)),
        endStep(static_cast<float>(Difference(beforeEnd, end))) {
    const float fixed[] = {static_cast<float>(beforeEnd), singleEnd};
    reach = Reach(fixed, 2);
    std::transform(loopTermWeights.begin(), loopTermWeights.end(), weights.begin(),
                   [](double weight) { return static_cast<float>(weight); });
  }

  struct Features {
    alignas(64) float steps[paddedSize] = {};  // f
    alignas(64) float fours[paddedSize] = {};
    alignas(64) float slants[paddedSize] = {};
  };

  ZYL_INLINE void Prepare(const float* values, std::int32_t count,
                          Features& features) const noexcept {
    const std::int32_t stepCount = count + loopTermCount - 1;
    for (std::int32_t i = 0; i < stepCount; ++i) {
      features.steps[i] = std::fabs((values[i + 1] - values[i]) - endStep);
    }
    for (std::int32_t i = 0; i + 3 < stepCount; ++i) {
      const float* steps = features.steps + i;
      features.fours[i] = (steps[0] + steps[1]) + (steps[2] + steps[3]);
    }
  }

  ZYL_INLINE float Bound(const float* values, const Features& features,
                         std::int32_t at) const noexcept {
    float bound = std::fabs(values[at] - singleEnd);
    for (std::int32_t i = 0; i < loopTermCount; i += 4) {
      bound += weights[static_cast<std::size_t>(i) + 3] * features.fours[at + i];
    }
    return bound;
  }

  ZYL_INLINE void PrepareRaise(std::int32_t count, Features& features) const noexcept {
    for (std::int32_t i = 0; i < count + loopTermCount - 4; ++i) {
      const float* steps = features.steps + i;
      const float two = steps[0] + steps[1];
      features.slants[i] = weights[loopTermCount - 1] * ((two + two) + (steps[0] + steps[2]));
    }
  }

  ZYL_INLINE float Raise(float bound, const float*, const Features& features,
                         std::int32_t at) const noexcept {
    for (std::int32_t i = 0; i < loopTermCount; i += 4) bound += features.slants[at + i];
    return bound;
  }

  ZYL_INLINE void Rate(const std::int32_t* values, double* qualities) const noexcept {
    const double endSlope = LoopSlope(beforeEnd, end);
    double differences[partSize + loopTermCount];
    for (std::int32_t i = 0; i < partSize + loopTermCount - 1; ++i) {
      differences[i] = std::fabs(LoopSlope(values[i], values[i + 1]) - endSlope);
    }
    for (std::int32_t lane = 0; lane < partSize; ++lane) {
      qualities[lane] = std::fabs(Difference(end, values[lane])) / loopFullScale;
    }
    for (std::size_t i = 0; i < loopTermCount; ++i) {
      for (std::size_t lane = 0; lane < partSize; ++lane) {
        qualities[lane] += loopTermWeights[i] * differences[lane + i];
      }
    }
  }
};

struct EndRule {
  static constexpr std::int32_t window = 2;  // the value before the candidate and its own
  static constexpr std::size_t groupCount = 4;

  std::int32_t start;
  float singleStart, reach;
  double startSlopes[loopTermCount];
  float startSteps[loopTermCount], weights[loopTermCount];
  float groupSteps[groupCount], groupWeights[groupCount];  // c and W

  // `starts` are the values at which the slopes start, `nexts` those after them.
  EndRule(const std::int32_t* starts, const std::int32_t* nexts) noexcept
      : start(starts[0]), singleStart(static_cast<float>(start)) {
    float fixed[2 * loopTermCount];
    double steps[loopTermCount];
    std::size_t rising[loopTermCount];
    for (std::size_t i = 0; i < loopTermCount; ++i) {
      fixed[2 * i] = static_cast<float>(starts[i]);
      fixed[2 * i + 1] = static_cast<float>(nexts[i]);
      steps[i] = Difference(starts[i], nexts[i]);
      startSlopes[i] = LoopSlope(starts[i], nexts[i]);
      startSteps[i] = static_cast<float>(steps[i]);
      weights[i] = static_cast<float>(loopTermWeights[i]);
      rising[i] = i;
    }
    reach = Reach(fixed, 2 * loopTermCount);
    std::sort(std::begin(rising), std::end(rising),
              [&](std::size_t a, std::size_t b) { return steps[a] < steps[b]; });
    constexpr std::size_t groupSize = loopTermCount / groupCount;
    for (std::size_t group = 0; group < groupCount; ++group) {
      double weight = 0.0, moment = 0.0;
      for (std::size_t i = group * groupSize; i < (group + 1) * groupSize; ++i) {
        weight += loopTermWeights[rising[i]];
        moment += loopTermWeights[rising[i]] * steps[rising[i]];
      }
      groupWeights[group] = static_cast<float>(weight);
      groupSteps[group] = static_cast<float>(moment / weight);
    }
  }

  struct Features {};

  ZYL_INLINE void Prepare(const float*, std::int32_t, Features&) const noexcept {}

  ZYL_INLINE float Bound(const float* values, const Features&, std::int32_t at) const noexcept {
    const float step = values[at + 1] - values[at];
    float bound = std::fabs(singleStart - values[at + 1]);
    for (std::size_t group = 0; group < groupCount; ++group) {
      bound += groupWeights[group] * std::fabs(groupSteps[group] - step);
    }
    return bound;
  }

  ZYL_INLINE void PrepareRaise(std::int32_t, Features&) const noexcept {}

  ZYL_INLINE float Raise(float, const float* values, const Features&,
                         std::int32_t at) const noexcept {
    const float step = values[at + 1] - values[at];
    float bound = std::fabs(singleStart - values[at + 1]);
#pragma GCC unroll 20
    for (int i = 0; i < loopTermCount; ++i) bound += weights[i] * std::fabs(startSteps[i] - step);
    return bound;
  }

  ZYL_INLINE void Rate(const std::int32_t* values, double* qualities) const noexcept {
    double endSlopes[partSize];
    for (std::int32_t lane = 0; lane < partSize; ++lane) {
      endSlopes[lane] = LoopSlope(values[lane], values[lane + 1]);
      qualities[lane] = std::fabs(Difference(start, values[lane + 1])) / loopFullScale;
    }
    for (std::size_t i = 0; i < loopTermCount; ++i) {
      for (std::size_t lane = 0; lane < partSize; ++lane) {
        qualities[lane] += loopTermWeights[i] * std::fabs(startSlopes[i] - endSlopes[lane]);
      }
    }
  }
};

// A pass over the candidates of a search, block by block.
template <class Rule>
class Pass {
 public:
  ZYL_INLINE Pass(const Rule& rule, const Search& search, BestLoopPoint& best) noexcept
      : rule_(rule), search_(search), best_(best) {}

  ZYL_INLINE void Run() noexcept {
    for (first_ = search_.first; first_ < search_.last && best_.quality > 0.0; first_ += count_) {
      count_ = std::min(blockSize, search_.last - first_);
      if (RepeatsEarlierBlock()) continue;
      LoadBlock();
      for (std::int32_t part = 0; part < count_; part += partSize) {
        if (AnyBoundBelowLimit(part) && AnyRaisedBoundBelowLimit(part) && AnyIsNoTie(part)) {
          RatePart(part);
        }
      }
    }
  }

 private:
  // `count` candidates from a on and from b on.
  bool HaveSameWindows(std::int32_t a, std::int32_t b, std::int32_t count) const noexcept {
    const std::int32_t bytes = (count + Rule::window - 1) * search_.view.bytesPerValue;
    return std::memcmp(search_.WindowBytes(a), search_.WindowBytes(b),
                       static_cast<std::size_t>(bytes)) == 0;
  }

  bool RepeatsEarlierBlock() const noexcept {
    return period_ > 0 && first_ - search_.first >= period_ &&
           HaveSameWindows(first_, first_ - period_, count_);
  }

  ZYL_INLINE void LoadBlock() noexcept {
    const std::int32_t valueCount = count_ + Rule::window - 1;
    Unpack(search_, first_, valueCount, values_);
    for (std::int32_t i = 0; i < blockSize * search_.view.bytesPerValue; i += cacheLine) {
      Prefetch(search_.WindowBytes(first_) + prefetchDistance + i);
    }
    rule_.Prepare(values_, count_, features_);
    const int bytes = search_.view.bytesPerValue;
    slack_ = bytes > 2 ? std::ldexp(0x1p-19, 8 * bytes) : 0.0;
    isPreparedToRaise_ = false;
    UpdateLimit();
  }

  ZYL_INLINE void PrepareRaise() noexcept {
    isPreparedToRaise_ = true;
    rule_.PrepareRaise(count_, features_);
    if (search_.view.bytesPerValue <= 2) return;
    constexpr float exactReach = 0x1p22F;
    const float reach = std::max(rule_.reach, Reach(values_, count_ + Rule::window - 1));
    slack_ = reach < exactReach ? 0.0 : reach * 0x1p-18;
    UpdateLimit();
  }

  ZYL_INLINE void UpdateLimit() noexcept {
    limit_ = static_cast<float>((best_.quality * loopFullScale + slack_) * (1.0 + 0x1p-16));
  }

  ZYL_INLINE bool AnyBoundBelowLimit(std::int32_t part) noexcept {
    for (std::int32_t i = 0; i < partSize; ++i) {
      bounds_[i] = rule_.Bound(values_, features_, part + i);
    }
    return AnyBelowLimit(part);
  }

  ZYL_INLINE bool AnyRaisedBoundBelowLimit(std::int32_t part) noexcept {
    if (!isPreparedToRaise_) PrepareRaise();
    for (std::int32_t i = 0; i < partSize; ++i) {
      bounds_[i] = rule_.Raise(bounds_[i], values_, features_, part + i);
    }
    return AnyBelowLimit(part);
  }

  // May be true for candidates past the block's end, which are not rated. Leaves out ties with
  // short windows of exact values: where few values occur, most parts have one.
  ZYL_INLINE bool AnyBelowLimit(std::int32_t part) const noexcept {
    constexpr bool seesTies = Rule::window == 2;
    const bool leavesOutTies = seesTies && period_ > 0 && slack_ == 0.0;
    const float before = leavesOutTies ? bestWindow_[0] : NAN;
    const float own = bestWindow_[1];
    const float limit = limit_;
    int any = 0;
    for (std::int32_t i = 0; i < partSize; ++i) {
      int below = bounds_[i] < limit ? 1 : 0;
      if constexpr (seesTies) {
        below &= (values_[part + i] != before ? 1 : 0) | (values_[part + i + 1] != own ? 1 : 0);
      }
      any |= below;
    }
    return any != 0;
  }

  // Of the candidates whose bound is below the limit.
  ZYL_INLINE bool AnyIsNoTie(std::int32_t part) noexcept {
    for (std::int32_t i = 0; i < std::min(partSize, count_ - part); ++i) {
      if (!(bounds_[i] < limit_)) continue;
      const std::int32_t candidate = first_ + part + i;
      if (!hasBest_ || !HaveSameWindows(candidate, best_.position, 1)) return true;
      period_ = candidate - best_.position;
    }
    return false;
  }

  ZYL_INLINE void RatePart(std::int32_t part) noexcept {
    const std::int32_t count = std::min(partSize, count_ - part);
    std::int32_t values[partSize + longestWindow] = {};
    double qualities[partSize];
    Unpack(search_, first_ + part, count + Rule::window - 1, values);
    rule_.Rate(values, qualities);
    for (std::int32_t i = 0; i < count; ++i) {
      if (!best_.Offer(qualities[i], first_ + part + i)) continue;
      hasBest_ = true;
      bestWindow_[0] = values_[part + i];
      bestWindow_[1] = values_[part + i + 1];
    }
    UpdateLimit();
  }

  const Rule& rule_;
  const Search& search_;
  BestLoopPoint& best_;
  bool hasBest_ = false;              // the best position is a candidate of this pass
  std::int32_t period_ = 0;           // the distance of a tie from the best
  float bestWindow_[2] = {NAN, NAN};  // how the window of the best begins

  std::int32_t first_ = 0, count_ = 0;
  double slack_ = 0.0;
  bool isPreparedToRaise_ = false;
  float limit_ = 0.0F;
  alignas(64) float values_[paddedSize] = {};
  typename Rule::Features features_;
  alignas(64) float bounds_[partSize];
};

template <class Rule>
void RunPlain(const Rule& rule, const Search& search, BestLoopPoint& best) noexcept {
  Pass<Rule>(rule, search, best).Run();
}

template <class Rule>
ZYL_AVX2 void RunAvx2(const Rule& rule, const Search& search, BestLoopPoint& best) noexcept {
  Pass<Rule>(rule, search, best).Run();
}

template <class Rule>
void Run(const Rule& rule, const Search& search, BestLoopPoint& best) noexcept {
  HasAvx2() ? RunAvx2(rule, search, best) : RunPlain(rule, search, best);
}

}  // namespace

void OfferLoopStarts(const ValueView& view, std::int32_t loopEnd, std::int32_t shift,
                     std::int32_t first, std::int32_t last, BestLoopPoint& best) noexcept {
  const StartRule rule(GetValue(view, loopEnd - 1), GetValue(view, loopEnd));
  Run(rule, {view, shift, first, last}, best);
}

void OfferLoopEnds(const ValueView& view,
                   const std::array<std::int32_t, loopTermCount>& slopePositions,
                   std::int32_t first, std::int32_t last, BestLoopPoint& best) noexcept {
  std::int32_t starts[loopTermCount];
  std::int32_t nexts[loopTermCount];
  for (std::size_t i = 0; i < loopTermCount; ++i) {
    starts[i] = GetValue(view, slopePositions[i]);
    nexts[i] = GetValue(view, slopePositions[i] + 1);
  }
  Run(EndRule(starts, nexts), {view, 1, first, last}, best);
}

}  // namespace zyl
