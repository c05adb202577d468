// Idea: no term of the rating is negative, so a lower bound of a candidate's rating that reaches
// the best quality found rules the candidate out. Neighbouring candidates are bounded in parallel,
// in single precision and without the common division by 65535. If a part of kPartSize candidates
// is not ruled out, its bounds are raised to the full rating; if it is still not ruled out, it is
// rated in double precision, term by term.
//
//   rating  |r(m) - r(E)| + sum of w(i) |step(m + i) - step(E - 1)|,   step(p) = r(p + 1) - r(p)
//
// Start candidates share f(p) = |step(p) - step(E - 1)| and its sums of four. As
// w(i) = 0.025 (20 - i), the sum is that over k = 0, 4, 8, 12, 16 of w(k + 3) four(m + k) +
// slant(m + k), and the bound leaves out the slants:
//   four(p) = f(p) + .. + f(p + 3)    slant(p) = 0.025 (3 f(p) + 2 f(p + 1) + f(p + 2))
//
// End candidates differ only in s = step(E - 1). For any group of the terms b(i) = step(m + i),
//   sum of w(i) |b(i) - s| >= W |c - s|,   W = sum of w(i),   c = sum of w(i) b(i) / W,
// with equality where s is outside the range of the group's b(i): groups of similar b(i) lose
// little.
//
// The limit is the best quality, raised by 2^-16 of itself and by `slack`, so that rounding never
// rules out a better candidate. With u = 2^-24 and M the largest magnitude of the values (that of
// their width until a block's bounds are first raised):
//   - The error of a converted value is u M, of a step between two values 4 u M, of a fixed step or
//     c 2 u M; of each term 6 u M times its weight, and of the sum less than 64 u M = `slack`.
//     Values below 2^22, their steps and the differences of steps are exact; there `slack` is 0.
//   - The rest is fewer than 64 roundings of relative size u in sums of non-negative terms, and the
//     rounding of the rated slopes, whose differences have a relative error of at most 2^-20.
//
// Candidates with the same window of values tie, and the first one wins. A candidate that ties with
// the best is therefore not rated. The distance of such a tie is a period: a block whose values
// equal those one period earlier is skipped.
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

constexpr int32_t kPartSize = 32;    // candidates bounded and rated in parallel
constexpr int32_t kBlockSize = 512;  // a block's working data fits the L1 cache
constexpr int32_t kCacheLine = 64;
constexpr int32_t kPrefetchDistance = 2048;
constexpr int32_t kLongestWindow = kLoopTermCount + 1;
constexpr int32_t kPaddedSize = kBlockSize + kPartSize + kLongestWindow;

struct Search {
  const ValueView& view;
  int32_t shift;  // the window of candidate p begins at position p - shift
  int32_t first, last;

  const std::byte* WindowBytes(int32_t candidate) const noexcept {
    return view.values + (ptrdiff_t{candidate} - shift) * view.bytesPerValue;
  }
};

template <class Access, class Number>
ZYL_INLINE void Unpack(const std::byte* from, int32_t count, Number* to) noexcept {
  for (int32_t i = 0; i < count; ++i) to[i] = static_cast<Number>(Access::Read(from, i));
}

template <class Number>
ZYL_INLINE void Unpack(const Search& search, int32_t candidate, int32_t count,
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

ZYL_INLINE double Difference(int32_t from, int32_t to) noexcept {
  return static_cast<double>(to) - static_cast<double>(from);
}

ZYL_INLINE float Reach(const float* values, int32_t count) noexcept {
  int32_t bits = 0;  // magnitudes compare like integers
  for (int32_t i = 0; i < count; ++i) {
    bits = std::max(bits, std::bit_cast<int32_t>(values[i]) & 0x7FFFFFFF);
  }
  return std::bit_cast<float>(bits);
}

// The rules contain what differs between the two searches. Bound and Raise compute the bound of the
// candidate at index `at` of a block from the block's values and from the features that Prepare and
// PrepareRaise derive from them. Rate computes the qualities of kPartSize candidates whose windows
// begin at `values`.
struct StartRule {
  static constexpr int32_t kWindow = kLoopTermCount + 1;

  int32_t beforeEnd, end;
  float singleEnd, endStep, reach;
  std::array<float, kLoopTermCount> weights;

  StartRule(int32_t valueBeforeEnd, int32_t valueAtEnd) noexcept
      : beforeEnd(valueBeforeEnd),
        end(valueAtEnd),
        singleEnd(static_cast<float>(end)),
        endStep(static_cast<float>(Difference(beforeEnd, end))) {
    const float fixed[] = {static_cast<float>(beforeEnd), singleEnd};
    reach = Reach(fixed, 2);
    std::transform(kLoopTermWeights.begin(), kLoopTermWeights.end(), weights.begin(),
                   [](double weight) { return static_cast<float>(weight); });
  }

  struct Features {
    alignas(64) float steps[kPaddedSize] = {};  // f
    alignas(64) float fours[kPaddedSize] = {};
    alignas(64) float slants[kPaddedSize] = {};
  };

  ZYL_INLINE void Prepare(const float* values, int32_t count, Features& features) const noexcept {
    const int32_t stepCount = count + kLoopTermCount - 1;
    for (int32_t i = 0; i < stepCount; ++i) {
      features.steps[i] = std::fabs((values[i + 1] - values[i]) - endStep);
    }
    for (int32_t i = 0; i + 3 < stepCount; ++i) {
      const float* steps = features.steps + i;
      features.fours[i] = (steps[0] + steps[1]) + (steps[2] + steps[3]);
    }
  }

  ZYL_INLINE float Bound(const float* values, const Features& features, int32_t at) const noexcept {
    float bound = std::fabs(values[at] - singleEnd);
    for (int32_t i = 0; i < kLoopTermCount; i += 4) {
      bound += weights[static_cast<size_t>(i) + 3] * features.fours[at + i];
    }
    return bound;
  }

  ZYL_INLINE void PrepareRaise(int32_t count, Features& features) const noexcept {
    for (int32_t i = 0; i < count + kLoopTermCount - 4; ++i) {
      const float* steps = features.steps + i;
      const float two = steps[0] + steps[1];
      features.slants[i] = weights[kLoopTermCount - 1] * ((two + two) + (steps[0] + steps[2]));
    }
  }

  ZYL_INLINE float Raise(float bound, const float*, const Features& features,
                         int32_t at) const noexcept {
    for (int32_t i = 0; i < kLoopTermCount; i += 4) bound += features.slants[at + i];
    return bound;
  }

  ZYL_INLINE void Rate(const int32_t* values, double* qualities) const noexcept {
    const double endSlope = LoopSlope(beforeEnd, end);
    double differences[kPartSize + kLoopTermCount];
    for (int32_t i = 0; i < kPartSize + kLoopTermCount - 1; ++i) {
      differences[i] = std::fabs(LoopSlope(values[i], values[i + 1]) - endSlope);
    }
    for (int32_t lane = 0; lane < kPartSize; ++lane) {
      qualities[lane] = std::fabs(Difference(end, values[lane])) / kLoopFullScale;
    }
    for (size_t i = 0; i < kLoopTermCount; ++i) {
      for (size_t lane = 0; lane < kPartSize; ++lane) {
        qualities[lane] += kLoopTermWeights[i] * differences[lane + i];
      }
    }
  }
};

struct EndRule {
  static constexpr int32_t kWindow = 2;  // the value before the candidate and the candidate's
  static constexpr size_t kGroupCount = 4;

  int32_t start;
  float singleStart, reach;
  double startSlopes[kLoopTermCount];
  float startSteps[kLoopTermCount], weights[kLoopTermCount];
  float groupSteps[kGroupCount], groupWeights[kGroupCount];  // c and W

  // `starts` are the values where the slopes start, `nexts` the values one position later.
  EndRule(const int32_t* starts, const int32_t* nexts) noexcept
      : start(starts[0]), singleStart(static_cast<float>(start)) {
    float fixed[2 * kLoopTermCount];
    double steps[kLoopTermCount];
    size_t rising[kLoopTermCount];
    for (size_t i = 0; i < kLoopTermCount; ++i) {
      fixed[2 * i] = static_cast<float>(starts[i]);
      fixed[2 * i + 1] = static_cast<float>(nexts[i]);
      steps[i] = Difference(starts[i], nexts[i]);
      startSlopes[i] = LoopSlope(starts[i], nexts[i]);
      startSteps[i] = static_cast<float>(steps[i]);
      weights[i] = static_cast<float>(kLoopTermWeights[i]);
      rising[i] = i;
    }
    reach = Reach(fixed, 2 * kLoopTermCount);
    std::sort(std::begin(rising), std::end(rising),
              [&](size_t a, size_t b) { return steps[a] < steps[b]; });
    constexpr size_t kGroupSize = kLoopTermCount / kGroupCount;
    for (size_t group = 0; group < kGroupCount; ++group) {
      double weight = 0.0, moment = 0.0;
      for (size_t i = group * kGroupSize; i < (group + 1) * kGroupSize; ++i) {
        weight += kLoopTermWeights[rising[i]];
        moment += kLoopTermWeights[rising[i]] * steps[rising[i]];
      }
      groupWeights[group] = static_cast<float>(weight);
      groupSteps[group] = static_cast<float>(moment / weight);
    }
  }

  struct Features {};

  ZYL_INLINE void Prepare(const float*, int32_t, Features&) const noexcept {}

  ZYL_INLINE float Bound(const float* values, const Features&, int32_t at) const noexcept {
    const float step = values[at + 1] - values[at];
    float bound = std::fabs(singleStart - values[at + 1]);
    for (size_t group = 0; group < kGroupCount; ++group) {
      bound += groupWeights[group] * std::fabs(groupSteps[group] - step);
    }
    return bound;
  }

  ZYL_INLINE void PrepareRaise(int32_t, Features&) const noexcept {}

  ZYL_INLINE float Raise(float, const float* values, const Features&, int32_t at) const noexcept {
    const float step = values[at + 1] - values[at];
    float bound = std::fabs(singleStart - values[at + 1]);
#pragma GCC unroll 20
    for (int i = 0; i < kLoopTermCount; ++i) bound += weights[i] * std::fabs(startSteps[i] - step);
    return bound;
  }

  ZYL_INLINE void Rate(const int32_t* values, double* qualities) const noexcept {
    double endSlopes[kPartSize];
    for (int32_t lane = 0; lane < kPartSize; ++lane) {
      endSlopes[lane] = LoopSlope(values[lane], values[lane + 1]);
      qualities[lane] = std::fabs(Difference(start, values[lane + 1])) / kLoopFullScale;
    }
    for (size_t i = 0; i < kLoopTermCount; ++i) {
      for (size_t lane = 0; lane < kPartSize; ++lane) {
        qualities[lane] += kLoopTermWeights[i] * std::fabs(startSlopes[i] - endSlopes[lane]);
      }
    }
  }
};

// One pass over the candidates of a search, block by block.
template <class Rule>
class Pass {
 public:
  ZYL_INLINE Pass(const Rule& rule, const Search& search, BestLoopPoint& best) noexcept
      : rule_(rule), search_(search), best_(best) {}

  ZYL_INLINE void Run() noexcept {
    for (first_ = search_.first; first_ < search_.last && best_.quality > 0.0; first_ += count_) {
      count_ = std::min(kBlockSize, search_.last - first_);
      if (RepeatsEarlierBlock()) continue;
      LoadBlock();
      for (int32_t part = 0; part < count_; part += kPartSize) {
        if (AnyBoundBelowLimit(part) && AnyRaisedBoundBelowLimit(part) && AnyIsNoTie(part)) {
          RatePart(part);
        }
      }
    }
  }

 private:
  // Compares `count` candidates from a with as many from b.
  bool HaveSameWindows(int32_t a, int32_t b, int32_t count) const noexcept {
    const int32_t bytes = (count + Rule::kWindow - 1) * search_.view.bytesPerValue;
    return std::memcmp(search_.WindowBytes(a), search_.WindowBytes(b),
                       static_cast<size_t>(bytes)) == 0;
  }

  bool RepeatsEarlierBlock() const noexcept {
    return period_ > 0 && first_ - search_.first >= period_ &&
           HaveSameWindows(first_, first_ - period_, count_);
  }

  ZYL_INLINE void LoadBlock() noexcept {
    const int32_t valueCount = count_ + Rule::kWindow - 1;
    Unpack(search_, first_, valueCount, values_);
    for (int32_t i = 0; i < kBlockSize * search_.view.bytesPerValue; i += kCacheLine) {
      Prefetch(search_.WindowBytes(first_) + kPrefetchDistance + i);
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
    constexpr float kExactReach = 0x1p22F;
    const float reach = std::max(rule_.reach, Reach(values_, count_ + Rule::kWindow - 1));
    slack_ = reach < kExactReach ? 0.0 : reach * 0x1p-18;
    UpdateLimit();
  }

  ZYL_INLINE void UpdateLimit() noexcept {
    limit_ = static_cast<float>((best_.quality * kLoopFullScale + slack_) * (1.0 + 0x1p-16));
  }

  ZYL_INLINE bool AnyBoundBelowLimit(int32_t part) noexcept {
    for (int32_t i = 0; i < kPartSize; ++i) {
      bounds_[i] = rule_.Bound(values_, features_, part + i);
    }
    return AnyBelowLimit(part);
  }

  ZYL_INLINE bool AnyRaisedBoundBelowLimit(int32_t part) noexcept {
    if (!isPreparedToRaise_) PrepareRaise();
    for (int32_t i = 0; i < kPartSize; ++i) {
      bounds_[i] = rule_.Raise(bounds_[i], values_, features_, part + i);
    }
    return AnyBelowLimit(part);
  }

  // May return true because of candidates past the block's end, which are not rated. Excludes ties
  // if windows are short and values exact: in data with few distinct values most parts have one.
  ZYL_INLINE bool AnyBelowLimit(int32_t part) const noexcept {
    constexpr bool kDetectsTies = Rule::kWindow == 2;
    const bool skipsTies = kDetectsTies && period_ > 0 && slack_ == 0.0;
    const float before = skipsTies ? bestWindow_[0] : NAN;
    const float own = bestWindow_[1];
    const float limit = limit_;
    int any = 0;
    for (int32_t i = 0; i < kPartSize; ++i) {
      int below = bounds_[i] < limit ? 1 : 0;
      if constexpr (kDetectsTies) {
        below &= (values_[part + i] != before ? 1 : 0) | (values_[part + i + 1] != own ? 1 : 0);
      }
      any |= below;
    }
    return any != 0;
  }

  // True if a candidate whose bound is below the limit does not tie with the best.
  ZYL_INLINE bool AnyIsNoTie(int32_t part) noexcept {
    for (int32_t i = 0; i < std::min(kPartSize, count_ - part); ++i) {
      if (!(bounds_[i] < limit_)) continue;
      const int32_t candidate = first_ + part + i;
      if (!hasBest_ || !HaveSameWindows(candidate, best_.position, 1)) return true;
      period_ = candidate - best_.position;
    }
    return false;
  }

  ZYL_INLINE void RatePart(int32_t part) noexcept {
    const int32_t count = std::min(kPartSize, count_ - part);
    int32_t values[kPartSize + kLongestWindow] = {};
    double qualities[kPartSize];
    Unpack(search_, first_ + part, count + Rule::kWindow - 1, values);
    rule_.Rate(values, qualities);
    for (int32_t i = 0; i < count; ++i) {
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
  bool hasBest_ = false;              // the best point was found by this pass
  int32_t period_ = 0;                // distance of a tie from the best point; 0: no tie yet
  float bestWindow_[2] = {NAN, NAN};  // first two values of the best point's window

  int32_t first_ = 0, count_ = 0;
  double slack_ = 0.0;
  bool isPreparedToRaise_ = false;
  float limit_ = 0.0F;
  alignas(64) float values_[kPaddedSize] = {};
  typename Rule::Features features_;
  alignas(64) float bounds_[kPartSize];
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

void OfferLoopStarts(const ValueView& view, int32_t loopEnd, int32_t shift, int32_t first,
                     int32_t last, BestLoopPoint& best) noexcept {
  const StartRule rule(GetValue(view, loopEnd - 1), GetValue(view, loopEnd));
  Run(rule, {view, shift, first, last}, best);
}

void OfferLoopEnds(const ValueView& view, const std::array<int32_t, kLoopTermCount>& slopePositions,
                   int32_t first, int32_t last, BestLoopPoint& best) noexcept {
  int32_t starts[kLoopTermCount];
  int32_t nexts[kLoopTermCount];
  for (size_t i = 0; i < kLoopTermCount; ++i) {
    starts[i] = GetValue(view, slopePositions[i]);
    nexts[i] = GetValue(view, slopePositions[i] + 1);
  }
  Run(EndRule(starts, nexts), {view, 1, first, last}, best);
}

}  // namespace zyl
