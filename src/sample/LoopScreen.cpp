// Idea. The terms of the rating are never negative, so a candidate is out as soon as a part of its
// sum reaches the best quality so far, and such a part is cheap:
//
//   screen   P = |r(m) - r(E)| + sum of w(i) * |step(m + i) - step(E - 1)|,  step(p) = r(p+1) -
//   r(p)
//
// in single precision, on whole-number differences (the common division by 65535 moves to the
// limit), a group of neighbouring candidates side by side, in stages of ever more terms; a group
// without a candidate below the limit is left at the end of a stage. Start candidates share their
// inner differences, end candidates the steps after the loop start.
//
//   rate     the groups that pass, in double precision, in the order of the formula
//
// A candidate that is screened out is truly no better. P carries fewer than 32 roundings, each of
// relative size 2^-24, on a sum of terms >= 0, and the differences of the rated slopes deviate
// from the whole-number differences by at most 2^-20 of themselves (32-bit data, where the
// quotients are largest; different steps are at least 1 apart). Together that is below 2^-18; the
// limit is raised by 2^-16. Where steps are rounded before they are subtracted, the error is
// bounded apart: see EndRule.
#include "sample/LoopScreen.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

#include "util/ValueAccess.h"

#if defined(__GNUC__) || defined(__clang__)
#define ZYL_INLINE [[gnu::always_inline]] inline
#else
#define ZYL_INLINE inline
#endif

// The search is compiled once for every machine and once more for AVX2, chosen at run time.
#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#define ZYL_LOOP_SCREEN_AVX2 1
#endif

namespace zyl {

namespace {

constexpr std::int32_t groupSize = 64;    // candidates screened side by side
constexpr std::int32_t ratedSize = 32;    // candidates rated side by side
constexpr std::int32_t blockSize = 1024;  // the working data of a block stays in the first cache
constexpr std::int32_t longestWindow = loopTermCount + 1;
constexpr std::int32_t paddedSize = blockSize + groupSize + longestWindow;
constexpr float outOfRace = 1e30F;

using Unpacker = void (*)(const std::byte* values, std::ptrdiff_t from, std::int32_t count,
                          std::int32_t* out) noexcept;

template <class Access>
void Unpack(const std::byte* values, std::ptrdiff_t from, std::int32_t count,
            std::int32_t* out) noexcept {
  for (std::int32_t i = 0; i < count; ++i) out[i] = Access::Read(values, from + i);
}

Unpacker UnpackerFor(int bytesPerValue) noexcept {
  return VisitWidth(bytesPerValue,
                    [](auto access) -> Unpacker { return &Unpack<decltype(access)>; });
}

// Differences are whole numbers in `Number`: int32 among small values, double among others.
template <class Number>
ZYL_INLINE Number Step(std::int32_t from, std::int32_t to) noexcept {
  return static_cast<Number>(to) - static_cast<Number>(from);
}

template <class Number>
ZYL_INLINE float Magnitude(Number difference) noexcept {
  return static_cast<float>(difference < 0 ? -difference : difference);
}

// Whether steps among these values, and the differences of such steps, stay within int32.
ZYL_INLINE bool AreSmall(const std::int32_t* values, std::int32_t count) noexcept {
  std::int32_t reach = 0;
  for (std::int32_t i = 0; i < count; ++i) reach |= values[i] < 0 ? ~values[i] : values[i];
  return reach < (1 << 28);
}

// What differs between the two searches. A rule rates a candidate on a window of `window` values,
// beside what is fixed in the rule. It prepares, for `count` candidates, the joints (the first
// terms of P) and the features from which Term makes the weighted i-th slope term of P; Rate
// gives the qualities of `ratedSize` candidates as the formula has them.
struct StartRule {
  static constexpr std::int32_t window = loopTermCount + 1;
  static constexpr double slack = 0.0;

  std::int32_t beforeEnd, end;
  bool hasSmallValues;
  float weights[loopTermCount];

  StartRule(std::int32_t valueBeforeEnd, std::int32_t valueAtEnd) noexcept
      : beforeEnd(valueBeforeEnd), end(valueAtEnd) {
    hasSmallValues = AreSmall(&beforeEnd, 1) && AreSmall(&end, 1);
    std::transform(loopTermWeights.begin(), loopTermWeights.end(), weights,
                   [](double weight) { return static_cast<float>(weight); });
  }

  template <class Number>
  ZYL_INLINE void Prepare(const std::int32_t* values, std::int32_t count, float* joints,
                          float* features) const noexcept {
    const Number endStep = Step<Number>(beforeEnd, end);
    for (std::int32_t i = 0; i < count; ++i) joints[i] = Magnitude(Step<Number>(end, values[i]));
    for (std::int32_t i = 0; i < count + loopTermCount - 1; ++i) {
      features[i] = Magnitude(Step<Number>(values[i], values[i + 1]) - endStep);
    }
  }

  ZYL_INLINE float Term(const float* features, int i) const noexcept {
    return weights[i] * features[i];
  }

  ZYL_INLINE void Rate(const std::int32_t* values, double* qualities) const noexcept {
    const double endSlope = LoopSlope(beforeEnd, end);
    double differences[ratedSize + loopTermCount];
    for (std::int32_t i = 0; i < ratedSize + loopTermCount - 1; ++i) {
      differences[i] = std::fabs(LoopSlope(values[i], values[i + 1]) - endSlope);
    }
    for (std::int32_t lane = 0; lane < ratedSize; ++lane) {
      qualities[lane] = std::fabs(Step<double>(end, values[lane])) / loopFullScale;
    }
    for (std::size_t i = 0; i < loopTermCount; ++i) {
      for (std::size_t lane = 0; lane < ratedSize; ++lane) {
        qualities[lane] += loopTermWeights[i] * differences[lane + i];
      }
    }
  }
};

struct EndRule {
  static constexpr std::int32_t window = 2;  // the value before the candidate and its own

  std::int32_t start;
  bool hasSmallValues;
  double startSlopes[loopTermCount];
  float startSteps[loopTermCount];
  float weights[loopTermCount];
  // Steps and start steps are rounded to single precision before they are subtracted. |a' - b'|
  // exceeds |a - b| by at most 2^-24 (|a| + |b|) <= 2^-24 (2 |b| + |a - b|): the share of the
  // start steps b is bounded here, with room; that of the difference is one more rounding.
  double slack = 0.0;

  // `starts` are the values at which the slopes start, `nexts` those after them.
  EndRule(const std::int32_t* starts, const std::int32_t* nexts) noexcept
      : start(starts[0]), hasSmallValues(AreSmall(starts, 1)) {
    for (std::size_t i = 0; i < loopTermCount; ++i) {
      const double step = Step<double>(starts[i], nexts[i]);
      startSlopes[i] = step / loopFullScale;
      startSteps[i] = static_cast<float>(step);
      weights[i] = static_cast<float>(loopTermWeights[i]);
      slack += loopTermWeights[i] * std::fabs(step) * 0x1p-22;
    }
  }

  template <class Number>
  ZYL_INLINE void Prepare(const std::int32_t* values, std::int32_t count, float* joints,
                          float* features) const noexcept {
    for (std::int32_t i = 0; i < count; ++i) {
      joints[i] = Magnitude(Step<Number>(start, values[i + 1]));
      features[i] = static_cast<float>(Step<Number>(values[i], values[i + 1]));
    }
  }

  ZYL_INLINE float Term(const float* features, int i) const noexcept {
    return weights[i] * std::fabs(startSteps[i] - features[0]);
  }

  ZYL_INLINE void Rate(const std::int32_t* values, double* qualities) const noexcept {
    double endSlopes[ratedSize];
    for (std::int32_t lane = 0; lane < ratedSize; ++lane) {
      endSlopes[lane] = LoopSlope(values[lane], values[lane + 1]);
      qualities[lane] = std::fabs(Step<double>(values[lane + 1], start)) / loopFullScale;
    }
    for (std::size_t i = 0; i < loopTermCount; ++i) {
      for (std::size_t lane = 0; lane < ratedSize; ++lane) {
        qualities[lane] += loopTermWeights[i] * std::fabs(startSlopes[i] - endSlopes[lane]);
      }
    }
  }
};

// Adds the terms [From, To) to the sums of a group; true when one is still below the limit.
template <int From, int To, class Rule>
ZYL_INLINE bool AddTerms(const Rule& rule, const float* features, float limit,
                         float* sums) noexcept {
  int below = 0;
  for (std::int32_t lane = 0; lane < groupSize; ++lane) {
    float sum = sums[lane];
    for (int i = From; i < To; ++i) sum += rule.Term(features + lane, i);
    sums[lane] = sum;
    below |= sum < limit ? 1 : 0;
  }
  return below != 0;
}

// `sums` come in as the joints. False: no candidate of the group can be better.
template <class Rule>
ZYL_INLINE bool ScreenGroup(const Rule& rule, const float* features, float limit,
                            float* sums) noexcept {
  return AddTerms<0, 4>(rule, features, limit, sums) &&
         AddTerms<4, 8>(rule, features, limit, sums) &&
         AddTerms<8, 12>(rule, features, limit, sums) &&
         AddTerms<12, loopTermCount>(rule, features, limit, sums);
}

struct Search {
  const std::byte* values;
  Unpacker unpack;
  bool isNarrow;       // fewer than 32 bits
  std::int32_t shift;  // the window of candidate p begins at position p - shift
  std::int32_t first, last;
};

// Calls `visit` with the index of every mark that is set, until it answers false. Eight marks are
// looked at together, most of them being clear. Answers whether it went through all.
template <std::int32_t Count, class Visitor>
ZYL_INLINE bool ForMarked(const std::uint8_t* marks, Visitor visit) noexcept {
  for (std::int32_t eight = 0; eight < Count; eight += 8) {
    std::uint64_t any;
    std::memcpy(&any, marks + eight, sizeof any);
    if (any == 0) continue;
    for (std::int32_t i = eight; i < eight + 8; ++i) {
      if (marks[i] != 0 && !visit(i)) return false;
    }
  }
  return true;
}

// The candidates of a block and what is known of them.
template <class Rule>
struct Block {
  std::int32_t first, count;
  alignas(64) std::int32_t values[paddedSize] = {};
  alignas(64) float sums[paddedSize] = {};
  alignas(64) float features[paddedSize] = {};
  // The window of the best candidate so far: one with the same values cannot be better. In
  // periodic signals there are many; once one has been met they are dropped before the screening.
  std::int32_t bestWindow[Rule::window];
  bool hasBestWindow = false;
  bool hasMetTie = false;

  ZYL_INLINE void Load(const Rule& rule, const Search& search) noexcept {
    const std::int32_t valueCount = count + Rule::window - 1;
    search.unpack(search.values, std::ptrdiff_t{first} - search.shift, valueCount, values);
    if (rule.hasSmallValues && (search.isNarrow || AreSmall(values, valueCount))) {
      rule.template Prepare<std::int32_t>(values, count, sums, features);
    } else {
      rule.template Prepare<double>(values, count, sums, features);
    }
    std::fill_n(sums + count, groupSize, outOfRace);
  }

  ZYL_INLINE bool IsTie(std::int32_t candidate) const noexcept {
    return hasBestWindow && std::memcmp(values + candidate, bestWindow, sizeof bestWindow) == 0;
  }

  // Takes the ties of a group out of the race.
  ZYL_INLINE void DropTies(std::int32_t group) noexcept {
    const std::int32_t* at = values + group;
    float* groupSums = sums + group;
    const std::int32_t first0 = bestWindow[0];
    const std::int32_t first1 = bestWindow[1];
    if constexpr (Rule::window == 2) {
      for (std::int32_t i = 0; i < groupSize; ++i) {
        groupSums[i] = at[i] == first0 && at[i + 1] == first1 ? outOfRace : groupSums[i];
      }
    } else {
      std::uint8_t likely[groupSize];
      for (std::int32_t i = 0; i < groupSize; ++i) {
        likely[i] = at[i] == first0 && at[i + 1] == first1 ? 1 : 0;
      }
      ForMarked<groupSize>(likely, [&](std::int32_t i) {
        if (IsTie(group + i)) groupSums[i] = outOfRace;
        return true;
      });
    }
  }

  // Whether one of the candidates from `part` on is below the limit and no tie.
  ZYL_INLINE bool AnyPassed(std::int32_t part, float limit) noexcept {
    std::uint8_t below[ratedSize];
    for (std::int32_t i = 0; i < ratedSize; ++i) below[i] = sums[part + i] < limit ? 1 : 0;
    return !ForMarked<ratedSize>(below, [&](std::int32_t i) {
      if (!IsTie(part + i)) return false;
      hasMetTie = true;
      return true;
    });
  }

  ZYL_INLINE void RatePart(const Rule& rule, std::int32_t part, BestLoopPoint& best) noexcept {
    double qualities[ratedSize];
    rule.Rate(values + part, qualities);
    for (std::int32_t i = part; i < std::min(part + ratedSize, count); ++i) {
      if (!best.Offer(qualities[i - part], first + i)) continue;
      std::memcpy(bestWindow, values + i, sizeof bestWindow);
      hasBestWindow = true;
    }
  }
};

template <class Rule>
ZYL_INLINE void Run(const Rule& rule, const Search& search, BestLoopPoint& best) noexcept {
  Block<Rule> block;
  for (block.first = search.first; block.first < search.last && best.quality > 0.0;
       block.first += block.count) {
    block.count = std::min(blockSize, search.last - block.first);
    block.Load(rule, search);
    for (std::int32_t group = 0; group < block.count; group += groupSize) {
      if (block.hasMetTie) block.DropTies(group);
      const auto limit =
          static_cast<float>((best.quality * loopFullScale + rule.slack) * (1.0 + 0x1p-16));
      if (!ScreenGroup(rule, block.features + group, limit, block.sums + group)) continue;
      for (std::int32_t part = group; part < group + groupSize; part += ratedSize) {
        if (block.AnyPassed(part, limit)) block.RatePart(rule, part, best);
      }
    }
  }
}

template <class Rule>
void RunPlain(const Rule& rule, const Search& search, BestLoopPoint& best) noexcept {
  Run(rule, search, best);
}

#ifdef ZYL_LOOP_SCREEN_AVX2
template <class Rule>
__attribute__((target("avx2"))) void RunAvx2(const Rule& rule, const Search& search,
                                             BestLoopPoint& best) noexcept {
  Run(rule, search, best);
}
#endif

template <class Rule>
void RunBest(const Rule& rule, const Search& search, BestLoopPoint& best) noexcept {
#ifdef ZYL_LOOP_SCREEN_AVX2
  if (__builtin_cpu_supports("avx2")) return RunAvx2(rule, search, best);
#endif
  RunPlain(rule, search, best);
}

}  // namespace

void OfferLoopStarts(const ValueView& view, std::int32_t loopEnd, std::int32_t shift,
                     std::int32_t first, std::int32_t last, BestLoopPoint& best) noexcept {
  const Search search{
      view.values, UnpackerFor(view.bytesPerValue), view.bytesPerValue < 4, shift, first, last};
  const std::int32_t beforeEnd = GetValue(view, loopEnd - 1);
  const std::int32_t end = GetValue(view, loopEnd);
  RunBest(StartRule(beforeEnd, end), search, best);
}

void OfferLoopEnds(const ValueView& view,
                   const std::array<std::int32_t, loopTermCount>& slopePositions,
                   std::int32_t first, std::int32_t last, BestLoopPoint& best) noexcept {
  const Search search{
      view.values, UnpackerFor(view.bytesPerValue), view.bytesPerValue < 4, 1, first, last};
  std::int32_t starts[loopTermCount];
  std::int32_t nexts[loopTermCount];
  for (std::size_t i = 0; i < loopTermCount; ++i) {
    starts[i] = GetValue(view, slopePositions[i]);
    nexts[i] = GetValue(view, slopePositions[i] + 1);
  }
  RunBest(EndRule(starts, nexts), search, best);
}

}  // namespace zyl
