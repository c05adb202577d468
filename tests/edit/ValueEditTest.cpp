// Edits of values in place, and the rules that all edits share: ranges, dirty marks, limits.
#include <climits>
#include <cmath>

#include "edit/EditTools.h"

namespace zyl::test {
namespace {

using ValueEdits = EditTest;

TEST_F(ValueEdits, RangesAreClampedOrderedAndEndWhereTheOperationSays) {
  using Rule = std::function<void(Values&, int, int)>;
  const auto each = [](std::function<double(double)> change) -> Rule {
    return [change](Values& values, int s, int e) {
      for (int i = s; i < e; ++i) {
        int& value = values[static_cast<size_t>(i)];
        value = static_cast<int>(change(value));
      }
    };
  };
  struct Row {
    std::function<Outcome(RIOObject*, int, int)> edit;
    Rule rule;
  };
  const Row rows[] = {
      {[&](auto* o, int s, int e) { return program("SampleSetValues", o, s, e, -7); },
       each([](double) { return -7; })},
      {[&](auto* o, int s, int e) { return program("SampleOffsetValues", o, s, e, 5); },
       each([](double v) { return v + 5; })},
      {[&](auto* o, int s, int e) { return program("SampleMultiplyValues", o, s, e, -0.5); },
       each([](double v) { return std::trunc(v * -0.5); })},
      {[&](auto* o, int s, int e) { return program("SampleReverseValues", o, s, e); },
       [](Values& values, int s, int e) {
         std::reverse(values.begin() + s, values.begin() + e + 1);
       }},
  };
  struct Range {
    int s, e, low, high;
  };
  const Range ranges[] = {{2, 5, 2, 5},  {5, 2, 2, 5},   {3, 3, 3, 3},
                          {-4, 4, 0, 4}, {7, 999, 7, 9}, {INT_MAX, INT_MIN, 0, 9}};
  for (const int bits : {8, 16, 24, 32}) {
    for (const int target : {0, 1, -1}) {  // one channel of two, or the whole
      for (size_t row = 0; row < std::size(rows); ++row) {
        std::vector<Values> expected = Counting(10, 2);
        Open(bits, expected);
        RIOObject* sample = target == 0 ? first : target == 1 ? second : whole;
        for (const Range& range : ranges) {
          for (int c = 0; c < 2; ++c) {
            if (target < 0 || target == c) {
              rows[row].rule(expected[static_cast<size_t>(c)], range.low, range.high);
            }
          }
          const Outcome outcome = rows[row].edit(sample, range.s, range.e);
          EXPECT_TRUE(outcome.Ok());
          EXPECT_EQ(outcome.result, nullptr);
          EXPECT_EQ(ReadAll(first), expected) << bits << " bits, channel " << target << ", edit "
                                              << row << ", " << range.s << " " << range.e;
        }
      }
    }
  }
}

TEST_F(ValueEdits, NumbersAreReducedFirstAndThenHeldAtTheWidth) {
  Open(16, Counting(12, 1));
  const auto all = [&](const char* method, auto value) {
    program(method, first, 0, 10, value);
    const Values values = Read(first, 0);
    for (size_t i = 1; i < 10; ++i) EXPECT_EQ(values[i], values[0]);
    EXPECT_EQ(values[10], 10) << "the end is not part of the range";
    return values[0];
  };
  EXPECT_EQ(all("SampleSetValues", 40000), -25536);
  EXPECT_EQ(all("SampleSetValues", 32000), 32000);
  EXPECT_EQ(all("SampleOffsetValues", 1000), 32767);
  EXPECT_EQ(all("SampleOffsetValues", INT_MIN), -32768);
  EXPECT_EQ(all("SampleMultiplyValues", -1.0), 32767);
  EXPECT_EQ(all("SampleMultiplyValues", 0.99), 32439);
  EXPECT_EQ(all("SampleMultiplyValues", -1e30), -32768);
  EXPECT_EQ(all("SampleMultiplyValues", std::nan("")), 0);
  for (const int bits : {8, 16, 24, 32}) {
    const int high = static_cast<int>((int64_t{1} << (bits - 1)) - 1);
    Open(bits, Counting(12, 1));
    for (const int value : {INT_MAX, INT_MIN, 40000, -1}) {
      EXPECT_EQ(program("SampleValue", first, 3, value).Int(), Read(first, 0)[3]);
      EXPECT_EQ(program("SampleValue", first, 3).Int(), std::clamp(value, -high - 1, high));
    }
    program("SampleValue", first, -5, 1);
    program("SampleValue", first, 12, 2);
    EXPECT_EQ(Read(first, 0)[0], 1);
    EXPECT_EQ(Read(first, 0)[11], 2);
    program("SampleMultiplyValues", first, 0, 12, 1e30);
    EXPECT_EQ(Read(first, 0)[1], high);
  }
}

TEST_F(ValueEdits, AWholeSampleReadsItsFirstChannelAndChangesAll) {
  Open(16, {{1, 2, 3}, {-1, -2, -3}});
  EXPECT_EQ(program("SampleValue", whole, 1, 50).Int(), 2);
  EXPECT_EQ(ReadAll(whole), (std::vector<Values>{{1, 50, 3}, {-1, 50, -3}}));
  EXPECT_EQ(program("SampleGetDCOffset", whole, 0, 2).Int(), 25);
  EXPECT_EQ(program("SampleGetDCOffset", second, 0, 2).Int(), 24);
}

TEST_F(ValueEdits, TheMeanLeavesTheEndOutAndIsTruncated) {
  Open(16, {{1000, 1, 2, 3, 4, 5, 6, 7, 9, 1000}});
  EXPECT_EQ(program("SampleGetDCOffset", first, 9, 1).Int(), 37 / 8);
  EXPECT_EQ(program("SampleGetDCOffset", first, 5, 5).Int(), 0);
  EXPECT_EQ(program("SampleGetDCOffset", first, -9, 999).Int(), 1037 / 9);
  program("SampleMultiplyValues", first, 0, 9, -1.0);
  EXPECT_EQ(program("SampleGetDCOffset", first, 1, 9).Int(), -4);
  EXPECT_EQ(Dirt(), "R");
}

// Which marks a call leaves, on a sample with data and on one without any.
TEST_F(ValueEdits, DirtyMarksAreSetAsEachMethodSaysAlsoWhenItFails) {
  struct Row {
    const char* name;
    std::function<void(RIOObject*)> call;
    const char* dirt;
    const char* dirtOfEmpty;
  };
  const auto other = [&] { return program("SampleGet", 0, 3).Object(); };
  const Row rows[] = {
      {"GetSize", [&](auto* o) { program("SampleGetSize", o); }, "", ""},
      {"Size", [&](auto* o) { program("SampleSize", o, 7); }, "", ""},
      {"Start", [&](auto* o) { program("SampleStart", o, 3); }, "PR", "PR"},
      {"Start, the same", [&](auto* o) { program("SampleStart", o, 0); }, "", ""},
      {"End", [&](auto* o) { program("SampleEnd", o, 77); }, "PR", "PR"},
      {"End, the same", [&](auto* o) { program("SampleEnd", o, 9); }, "R", "R"},
      {"End, asked", [&](auto* o) { program("SampleEnd", o); }, "", ""},
      {"Bits", [&](auto* o) { program("SampleBits", o, 24); }, "PR", "PR"},
      {"Bits, the same", [&](auto* o) { program("SampleBits", o, 16); }, "", ""},
      {"ChannelCount", [&](auto* o) { program("SampleChannelCount", o, 2); }, "", ""},
      {"Value, asked", [&](auto* o) { program("SampleValue", o, 0); }, "", ""},
      {"Value", [&](auto* o) { program("SampleValue", o, 0, 0); }, "PR", "PR"},
      {"SetValues", [&](auto* o) { program("SampleSetValues", o, 3, 3, 1); }, "R", "R"},
      {"MultiplyValues", [&](auto* o) { program("SampleMultiplyValues", o, 0, 9, 1.0); }, "R", "R"},
      {"OffsetValues", [&](auto* o) { program("SampleOffsetValues", o, 0, 9, 0); }, "R", "R"},
      {"ReverseValues", [&](auto* o) { program("SampleReverseValues", o, 3, 3); }, "R", "R"},
      {"Extract",
       [&](auto* o) {
         EXPECT_EQ(program("SampleExtract", o, 0, 99).Bool(),
                   program("SampleGetSize", o).Int() > 0);
       },
       "PR", "PR"},
      {"Delete",
       [&](auto* o) {
         EXPECT_EQ(program("SampleDelete", o, 3, 3).Bool(), program("SampleGetSize", o).Int() > 0);
       },
       "PR", "PR"},
      {"CopyTo", [&](auto* o) { EXPECT_TRUE(program("SampleCopyTo", o, other()).Bool()); }, "", ""},
      {"CopyFrom", [&](auto* o) { EXPECT_TRUE(program("SampleCopyFrom", o, other()).Bool()); }, "",
       ""},
      {"LoopCount", [&](auto* o) { program("SampleLoopCount", o, 2); }, "PR", "PR"},
      {"LoopCount, the same", [&](auto* o) { program("SampleLoopCount", o, 1); }, "", ""},
      {"LoopStart", [&](auto* o) { program("SampleLoopStart", o, 0, 2); }, "PR", "PR"},
      {"LoopTimes", [&](auto* o) { program("SampleLoopTimes", o, 0, 0); }, "PR", "PR"},
      {"LoopFineLen", [&](auto* o) { program("SampleLoopFineLen", o, 0, 0.0); }, "PR", "PR"},
      {"LoopEnd, unused", [&](auto* o) { program("SampleLoopEnd", o, 1, 5); }, "", ""},
      {"FindStart", [&](auto* o) { program("SampleLoopFindStart", o, 0, 0, 9, INT_MIN); }, "", ""},
      {"FindEnd", [&](auto* o) { program("SampleLoopFindEnd", o, 0, 0, 9, INT_MIN); }, "", ""},
      {"Bits, refused", [&](auto* o) { program("SampleBits", o, 40); }, "", ""},
      {"a wrong type", [&](auto* o) { program("SampleExtract", o, 0, "x"); }, "", ""},
  };
  for (const Row& row : rows) {
    for (const bool empty : {false, true}) {
      Open(16, Counting(10, 1));
      program("SampleCreate", 0, 3, "wav");
      program("SampleSize", other(), 4);
      if (empty) program("SampleSize", first, 0);
      SetPoints(first, {0, 9, 2, 8});
      Clean();
      row.call(first);
      EXPECT_EQ(Dirt(), empty ? row.dirtOfEmpty : row.dirt) << row.name << (empty ? ", empty" : "");
    }
  }
}

TEST_F(ValueEdits, WhatIsOutOfRangeIsAnErrorOfThatArgumentAndChangesNothing) {
  Open(16, Counting(10, 2));
  SetPoints(whole, {0, 9, 2, 8});
  Clean();
  for (const int size : {-1, INT_MIN})
    ExpectArgValue(program("SampleSize", whole, size), "NewSize", 2);
  for (const int bits : {0, 33, -16, 65536}) {
    ExpectArgValue(program("SampleBits", whole, bits), "NewValue", 2);
  }
  for (const int count : {0, 17, -1, 1}) {  // 1: the second channel is in use
    ExpectArgValue(program("SampleChannelCount", whole, count), "NewValue", 2);
  }
  for (const int count : {-1, 17}) {
    ExpectArgValue(program("SampleLoopCount", whole, count), "NewValue", 2);
  }
  for (const double fine : {-1.0, 4294967296.0, std::nan("")}) {
    ExpectArgValue(program("SampleLoopFineLen", whole, 0, fine), "NewValue", 3);
  }
  for (const int count : {0, 17}) {
    ExpectArgValue(program("SampleCreate", 0, 0, "wav", count), "Channels", 4);
  }
  ExpectArgType(program("SampleCreate", 0, 0, 7), "Extension", kTypeString, 3);
  ExpectArgType(program("SampleCreate", 0, 0, "wav", true), "Channels", kTypeInteger, 4);
  ExpectArgType(program("SampleMultiplyValues", whole, 0, 9, 2), "Value", kTypeDouble, 4);
  ExpectArgType(program("SampleSetValues", whole, 0, 9), "Value", kTypeInteger, 4);
  ExpectArgType(program("SampleGetBuffer", whole), "Buffer", kTypeInteger, 2);
  EXPECT_EQ(ReadAll(whole), Counting(10, 2));
  EXPECT_EQ(Points(whole), (Values{0, 9, 2, 8}));
  EXPECT_EQ(program("SampleGet", 0, 0).Object(), first);
  EXPECT_EQ(Dirt(), "");
  EXPECT_EQ(program("SampleBits", whole, 65536 + 24).Int(), 16);
  EXPECT_EQ(Get(whole, "SampleBits"), 24) << "the number is reduced to 16 bits";
}

}  // namespace
}  // namespace zyl::test
