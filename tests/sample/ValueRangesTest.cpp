#include "sample/ValueRanges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "host/valueAccess.h"

namespace zyl::test {
namespace {

constexpr int32_t kHighestInt = std::numeric_limits<int32_t>::max();
constexpr int32_t kLowestInt = std::numeric_limits<int32_t>::min();

// Values at an odd address, with guard bytes before and after them that no operation may change.
class GuardedValues {
 public:
  GuardedValues(int bytesPerValue, const std::vector<int32_t>& values)
      : bytes_(values.size() * static_cast<size_t>(bytesPerValue) + 2 * kGuardBytes,
               std::byte{0x5A}),
        buffer_{bytes_.data() + kGuardBytes, static_cast<int32_t>(values.size()), bytesPerValue} {
    for (int32_t i = 0; i < buffer_.frameCount; ++i) {
      zyl::SetValue(buffer_, i, values[static_cast<size_t>(i)]);
    }
  }
  const zyl::ValueBuffer& buffer() const { return buffer_; }
  std::vector<int32_t> Read() const {
    for (size_t i = 0; i < kGuardBytes; ++i) {
      EXPECT_EQ(bytes_[i], std::byte{0x5A});
      EXPECT_EQ(bytes_[bytes_.size() - 1 - i], std::byte{0x5A});
    }
    std::vector<int32_t> values;
    for (int32_t i = 0; i < buffer_.frameCount; ++i) {
      values.push_back(zyl::GetValue(buffer_, i));
    }
    return values;
  }

 private:
  static constexpr size_t kGuardBytes = 9;
  std::vector<std::byte> bytes_;
  zyl::ValueBuffer buffer_;
};

int64_t Highest(int bytesPerValue) { return (int64_t{1} << (8 * bytesPerValue - 1)) - 1; }

int32_t ClampToWidth(int64_t value, int bytesPerValue) {
  const int64_t highest = Highest(bytesPerValue);
  return static_cast<int32_t>(std::clamp(value, -highest - 1, highest));
}

// Random values of a width, including its limits.
std::vector<int32_t> RandomValues(std::mt19937& random, int bytesPerValue, int count) {
  std::vector<int32_t> values;
  for (int i = 0; i < count; ++i) {
    const int64_t pick = random() % 8;
    values.push_back(pick == 0   ? ClampToWidth(kHighestInt, bytesPerValue)
                     : pick == 1 ? ClampToWidth(kLowestInt, bytesPerValue)
                                 : static_cast<int32_t>(random()) >> (32 - 8 * bytesPerValue));
  }
  return values;
}

class EveryWidth : public testing::TestWithParam<int> {
 protected:
  int32_t Clamped(double value) const {
    if (std::isnan(value)) return 0;
    const double reach = std::ldexp(1.0, 8 * GetParam() - 1);
    return static_cast<int32_t>(std::clamp(value, -reach, reach - 1));
  }
  // Applies an edit to random ranges of random data. `rule` returns the expected new value.
  template <class Edit, class Operand, class Rule>
  void Check(Edit edit, Operand operand, Rule rule) {
    const int width = GetParam();
    for (const int count : {1, 2, 7, 8, 33, 200}) {
      std::vector<int32_t> expected = RandomValues(random_, width, count);
      GuardedValues values(width, expected);
      const int start = static_cast<int>(random_() % static_cast<unsigned>(count));
      const int end = start + static_cast<int>(random_() % static_cast<unsigned>(count - start));
      std::transform(expected.begin() + start, expected.begin() + end, expected.begin() + start,
                     [&](int32_t value) { return Clamped(rule(value)); });
      edit(values.buffer(), start, end, operand);
      EXPECT_EQ(values.Read(), expected) << operand << " in " << start << " to " << end;
    }
  }

  std::mt19937 random_{20240};
};

INSTANTIATE_TEST_SUITE_P(Bytes, EveryWidth, testing::Values(1, 2, 3, 4));

TEST_P(EveryWidth, EditsOfValuesClampToTheWidth) {
  for (const int32_t value : {0, 5, -128, 40000, -40000, 65536, kHighestInt, kLowestInt}) {
    Check(zyl::SetValues, value, [=](int32_t) { return 1.0 * static_cast<int16_t>(value); });
  }
  const int64_t highest = Highest(GetParam());
  for (const int64_t offset :
       {int64_t{0}, int64_t{-1000}, highest, -highest - 1, 2 * highest + 1, -2 * highest - 1}) {
    const int32_t step = ClampToWidth(offset, 4);
    Check(zyl::OffsetValues, step, [=](int32_t value) { return 1.0 * value + step; });
  }
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double factor :
       {0.0, -1.0, 0.5, 0.999999, 1.37, -65535.5, 1e7, 1e300, 1e-300, -infinity, std::nan("")}) {
    Check(zyl::MultiplyValues, factor, [=](int32_t value) { return value * factor; });
  }
}

TEST_P(EveryWidth, ReverseValuesIncludesBothEnds) {
  for (int length = 1; length <= 80; ++length) {
    std::vector<int32_t> expected = RandomValues(random_, GetParam(), length + 5);
    GuardedValues values(GetParam(), expected);
    std::reverse(expected.begin() + 2, expected.begin() + 2 + length);
    zyl::ReverseValues(values.buffer(), 2, length + 1);
    ASSERT_EQ(values.Read(), expected) << length;
  }
}

TEST_P(EveryWidth, MeanValueExcludesTheEndAndTruncates) {
  for (const int count : {2, 3, 50, 70000}) {
    const std::vector<int32_t> data = RandomValues(random_, GetParam(), count);
    double sum = 0.0;
    for (int i = 1; i < count - 1; ++i) sum += data[static_cast<size_t>(i)];
    const GuardedValues values(GetParam(), data);
    const double mean = count == 2 ? 0.0 : sum / (count - 2);
    EXPECT_EQ(zyl::MeanValue(values.buffer(), 1, count - 1), static_cast<int32_t>(mean));
  }
  const int32_t lowest = ClampToWidth(kLowestInt, GetParam());
  const GuardedValues loud(GetParam(), std::vector<int32_t>(200000, lowest));
  EXPECT_EQ(zyl::MeanValue(loud.buffer(), 0, 200000), lowest);
}

TEST(ValueRanges, MeanValueOfLoudLongDataRoundsAsInOrderAddition) {
  // Beyond 2^53 doubles represent only even sums: each addition of this odd value loses 1, so the
  // mean is below the value.
  constexpr int32_t frames = 6'000'000;
  constexpr int32_t value = 2147483645;
  std::vector<std::byte> bytes(size_t{frames} * 4);
  const zyl::ValueBuffer buffer{bytes.data(), frames, 4};
  for (int32_t i = 0; i < frames; ++i) zyl::SetValue(buffer, i, value);
  EXPECT_EQ(zyl::MeanValue(buffer, 0, frames), value - 1);
}

}  // namespace
}  // namespace zyl::test
