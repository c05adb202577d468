#include "sample/LoopSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace zyl::test {
namespace {

constexpr int32_t kHighestInt = std::numeric_limits<int32_t>::max();
constexpr int32_t kLowestInt = std::numeric_limits<int32_t>::min();

// A channel in memory, with a literal implementation of the rating and of the searches.
struct Channel {
  Channel(int bytesPerValue, const std::vector<int32_t>& data)
      : bytes(data.size() * static_cast<size_t>(bytesPerValue)),
        view(bytes.data(), static_cast<int32_t>(data.size()), bytesPerValue) {
    const zyl::ValueBuffer buffer{bytes.data(), view.frameCount, bytesPerValue};
    for (size_t i = 0; i < data.size(); ++i) {
      zyl::SetValue(buffer, static_cast<int32_t>(i), data[i]);
    }
  }

  double Value(int32_t position) const { return zyl::GetValue(view, position); }

  double Quality(const LoopPoints& loop) const {
    double x = loop.start - loop.fineLen / 4294967295.0;
    if (!loop.inUse || x <= 0 || loop.end >= view.frameCount || loop.end <= x) return 1.0;
    double q = std::fabs(Value(static_cast<int32_t>(x)) - Value(loop.end)) / 65535.0;
    const double endSlope = (Value(loop.end) - Value(loop.end - 1)) / 65535.0;
    for (int k = 20; k >= 1 && x + 1 < loop.end; --k) {
      const auto m = static_cast<int32_t>(x);
      q = q + 0.025 * k * std::fabs((Value(m + 1) - Value(m)) / 65535.0 - endSlope);
      x = x + 1;
    }
    return q;
  }

  int32_t Find(bool start, LoopPoints loop, int32_t from, int32_t to, int32_t threshold) const {
    int32_t best = start ? loop.start : loop.end;
    double bestQuality = 1.0 - threshold / 2147483647.0;
    int32_t low = std::min(from, to), high = std::max(from, to);
    if (start ? low >= loop.end : high <= loop.start) return best;
    low = std::max(low, 0);
    if (high >= view.frameCount) high = view.frameCount - 1;
    if (start && high >= loop.end) high = loop.end;
    if (!start && low <= loop.start) low = loop.start;
    int32_t& moved = start ? loop.start : loop.end;
    for (int32_t p = low; p < high; ++p) {
      moved = p;
      const double quality = Quality(loop);
      if (quality < bestQuality) {
        bestQuality = quality;
        best = p;
      }
    }
    return best;
  }

  void CheckBoth(const LoopPoints& loop, int32_t from, int32_t to, int32_t threshold) const {
    SCOPED_TRACE(std::to_string(loop.start) + " to " + std::to_string(loop.end) + " fine " +
                 std::to_string(loop.fineLen) + ", among " + std::to_string(from) + " to " +
                 std::to_string(to) + ", threshold " + std::to_string(threshold));
    const auto start = zyl::FindLoopStart(view, loop, from, to, threshold);
    EXPECT_EQ(start, Find(true, loop, from, to, threshold));
    const auto end = zyl::FindLoopEnd(view, loop, from, to, threshold);
    EXPECT_EQ(end, Find(false, loop, from, to, threshold));
  }

  std::vector<std::byte> bytes;
  zyl::ValueView view;
};

// Signals between -1 and 1 that exercise different paths of the searches: distinct minima, exact
// ties, constant improvement, near ties in the last bits.
using Signal = std::function<double(int)>;
std::vector<Signal> Signals(std::mt19937& random) {
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  const auto noise = [&random, uniform](double level) {
    return [&random, uniform, level](int) mutable { return level * uniform(random); };
  };
  return {noise(1.0), noise(0.02), noise(1e-4), [](int i) { return 0.7 * std::sin(i * 0.0631); },
          [](int i) { return 0.7 * std::sin((i % 32) * 0.19634954); },
          [](int i) { return 0.0002 * i - 0.5; }, [](int i) { return i % 2 == 0 ? 0.4 : -0.4; },
          [](int i) { return 0.9 * std::exp(-i * 1e-3) * std::sin(i * 0.21); },
          [](int) { return 0.25; },
          // steps that differ only in bits that single precision drops
          [noise](int i) { return (i % 32 - 16) * 0.05 + noise(2e-9)(i); }};
}

std::vector<int32_t> Make(const Signal& signal, int count, int bytesPerValue, double level = 1.0) {
  const double scale = level * (std::pow(2.0, 8 * bytesPerValue - 1) - 1.0);
  std::vector<int32_t> data;
  for (int i = 0; i < count; ++i) data.push_back(static_cast<int32_t>(scale * signal(i)));
  return data;
}

TEST(LoopQuality, IsOneForUnratableLoops) {
  const Channel channel(2, std::vector<int32_t>(200));
  EXPECT_EQ(zyl::LoopQuality(channel.view, 40, 150, 0), 0.0);
  const LoopPoints unratable[] = {
      {0, 150, 0},          {1, 150, 4294967295u}, {40, 200, 0},          {40, 40, 0},
      {40, 30, 0},          {-5, 150, 0},          {kLowestInt, 150, 7u}, {40, kLowestInt, 0},
      {40, kHighestInt, 0}, {40, 150, 0, false}};
  for (const LoopPoints& loop : unratable) {
    EXPECT_EQ(zyl::LoopQuality(channel.view, loop), 1.0) << loop.start << " to " << loop.end;
  }
}

TEST(LoopQuality, EqualsTheFormulaBitByBit) {
  std::mt19937 random(5);
  for (const int width : {1, 2, 3, 4}) {
    for (const Signal& signal : Signals(random)) {
      const Channel channel(width, Make(signal, 300, width));
      for (int i = 0; i < 300; ++i) {
        LoopPoints loop{static_cast<int32_t>(random() % 310), 0,
                        i % 3 == 0 ? 0u : static_cast<uint32_t>(random())};
        loop.end = i % 2 == 0 ? loop.start + static_cast<int32_t>(random() % 24)
                              : static_cast<int32_t>(random() % 310);
        EXPECT_EQ(zyl::LoopQuality(channel.view, loop), channel.Quality(loop));
      }
    }
  }
}

TEST(LoopQuality, ScalesToThe32BitRangeAndClamps) {
  EXPECT_EQ(zyl::ScaledLoopQuality(0.5), 1073741823);
  EXPECT_EQ(zyl::ScaledLoopQuality(2.0), -kHighestInt);
  EXPECT_EQ(zyl::ScaledLoopQuality(2.1), kLowestInt);
}

class LoopSearch : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Bytes, LoopSearch, testing::Values(1, 2, 3, 4));

TEST_P(LoopSearch, EqualsRatingEveryCandidateInOrder) {
  std::mt19937 random(77);
  const int width = GetParam();
  const uint32_t fineLens[] = {0, 1, 2000000000, 4294967295u};
  const int32_t thresholds[] = {0, kLowestInt, -1000000000, 2000000000, 2147483000, kHighestInt};
  // Quiet data of a wide width has the qualities of a narrow width.
  const double quiet = width == 4 ? 3e-5 : width == 3 ? 8e-3 : 0.3;
  for (const double level : {1.0, quiet}) {
    for (const Signal& signal : Signals(random)) {
      constexpr int frames = 3000;
      const Channel channel(width, Make(signal, frames, width, level));
      for (int i = 0; i < 24; ++i) {
        const auto position = [&] { return static_cast<int32_t>(random() % (frames + 20)) - 10; };
        const LoopPoints loop{i % 2 == 0 ? position() / 8 : position(),
                              i % 2 == 0 ? frames - 1 - position() / 8 : position(),
                              fineLens[random() % 4]};
        channel.CheckBoth(loop, position(), position(), thresholds[random() % 6]);
        channel.CheckBoth(loop, kLowestInt, kHighestInt, thresholds[random() % 6]);
      }
    }
  }
}

TEST(LoopSearchRange, AcceptsUnratableLoopsBelowZeroOnly) {
  const Channel channel(2, std::vector<int32_t>(500));
  const LoopPoints unused{100, 400, 0, false};
  channel.CheckBoth(unused, 50, 200, 0);
  channel.CheckBoth(unused, 50, 200, -10);
  Channel(2, {}).CheckBoth({100, 400, 0}, 0, 400, kLowestInt);
}

// Searches candidate p alone with thresholds just below and just above its quality, which checks
// the quality that the search computes.
void CheckSingleCandidate(const Channel& channel, bool start, LoopPoints loop, int32_t p) {
  (start ? loop.start : loop.end) = p;
  const double quality = channel.Quality(loop);
  ASSERT_LT(quality, 1.9);
  (start ? loop.start : loop.end) = start ? 0 : kHighestInt;
  for (const int d : {-9, 9}) {
    channel.CheckBoth(loop, p, p + 1, zyl::ScaledLoopQuality(quality) + d);
  }
}

TEST(LoopSearchRange, FollowsTheFineStartAcrossPowersOfTwo) {
  // Near 2^22 a small fine length is rounded away on one side, and adding 1 to a position may round
  // to the next one, so that a slope is skipped.
  constexpr int32_t middle = 1 << 22;
  std::mt19937 random(10);
  std::vector<int32_t> data(middle + 300);
  for (int32_t& value : data) value = static_cast<int32_t>(random() % 3000) - 1500;
  const Channel channel(2, data);
  for (const uint32_t fineLen : {1u, 2u, 3u, 1u << 31, 4294967294u, 4294967295u}) {
    channel.CheckBoth({middle - 9, middle + 250, fineLen}, middle - 400, middle + 200, 0);
    for (int32_t p = middle - 30; p < middle + 10; ++p) {
      CheckSingleCandidate(channel, true, {0, middle + 200, fineLen}, p);
      CheckSingleCandidate(channel, false, {p, 0, fineLen}, middle + 100);
    }
  }
}

}  // namespace
}  // namespace zyl::test
