// Edits of values in place, and the rules that all edits share: ranges, dirty marks, limits.
#include <climits>
#include <cmath>

#include "edit/EditTools.h"

namespace zyl::test {
namespace {

using ValueEdits = EditTest;

TEST_F(ValueEdits, WholeSamplesReadTheirFirstChannelAndIndexesAreClamped) {
  Open(16, {{1, 2, 3}, {-1, -2, -3}});
  EXPECT_EQ(program("SampleValue", whole, 1, 50).Int(), 2);
  EXPECT_EQ(ReadAll(whole), (std::vector<Values>{{1, 50, 3}, {-1, 50, -3}}));
  EXPECT_EQ(program("SampleGetDCOffset", whole, 999, -9).Int(), 51 / 2);
  EXPECT_EQ(program("SampleGetDCOffset", whole, 1, 1).Int(), 0);
  // One value: the index is clamped, the value is not truncated to 16 bits.
  EXPECT_EQ(program("SampleValue", first, -5, INT_MAX).Int(), 1);
  EXPECT_EQ(program("SampleValue", first, 3, 2).Int(), 3);
  EXPECT_EQ(Read(first, 0), (Values{32767, 50, 2}));
}

// Which marks a call leaves, on a sample with data and on one without any.
TEST_F(ValueEdits, EveryMethodSetsItsDirtyMarks) {
  struct Row {
    const char* name;
    std::function<void(RIOObject*)> call;
    const char* dirt;
  };
  const auto other = [&] { return program("SampleGet", 0, 3).Object(); };
  const Row rows[] = {
      {"Size", [&](auto* o) { program("SampleSize", o, 7); }, ""},
      {"Start", [&](auto* o) { program("SampleStart", o, 3); }, "PR"},
      {"Start, the same", [&](auto* o) { program("SampleStart", o, 0); }, ""},
      {"End", [&](auto* o) { program("SampleEnd", o, 77); }, "PR"},
      {"End, the same", [&](auto* o) { program("SampleEnd", o, 9); }, "R"},
      {"Bits", [&](auto* o) { program("SampleBits", o, 24); }, "PR"},
      {"Bits, the same", [&](auto* o) { program("SampleBits", o, 16); }, ""},
      {"Value", [&](auto* o) { program("SampleValue", o, 0, 0); }, "PR"},
      {"SetValues", [&](auto* o) { program("SampleSetValues", o, 3, 3, 1); }, "R"},
      {"MultiplyValues", [&](auto* o) { program("SampleMultiplyValues", o, 0, 9, 1.0); }, "R"},
      {"OffsetValues", [&](auto* o) { program("SampleOffsetValues", o, 0, 9, 0); }, "R"},
      {"ReverseValues", [&](auto* o) { program("SampleReverseValues", o, 3, 3); }, "R"},
      {"Extract", [&](auto* o) { program("SampleExtract", o, 0, 99); }, "PR"},
      {"Delete", [&](auto* o) { program("SampleDelete", o, 3, 3); }, "PR"},
      {"CopyTo", [&](auto* o) { program("SampleCopyTo", o, other()); }, ""},
      {"CopyFrom", [&](auto* o) { program("SampleCopyFrom", o, other()); }, ""},
      {"LoopCount", [&](auto* o) { program("SampleLoopCount", o, 2); }, "PR"},
      {"LoopCount, the same", [&](auto* o) { program("SampleLoopCount", o, 1); }, ""},
      {"LoopStart", [&](auto* o) { program("SampleLoopStart", o, 0, 2); }, "PR"},
      {"LoopTimes", [&](auto* o) { program("SampleLoopTimes", o, 0, 0); }, "PR"},
      {"LoopFineLen", [&](auto* o) { program("SampleLoopFineLen", o, 0, 0.0); }, "PR"},
      {"FindStart", [&](auto* o) { program("SampleLoopFindStart", o, 0, 0, 9, INT_MIN); }, ""},
      {"FindEnd", [&](auto* o) { program("SampleLoopFindEnd", o, 0, 0, 9, INT_MIN); }, ""},
      {"a wrong type", [&](auto* o) { program("SampleExtract", o, 0, "x"); }, ""},
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
      EXPECT_EQ(Dirt(), row.dirt) << row.name << (empty ? ", empty" : "");
    }
  }
}

TEST_F(ValueEdits, AnArgumentOutOfRangeChangesNothing) {
  Open(16, Counting(10, 2));
  SetPoints(whole, {0, 9, 2, 8});
  Clean();
  struct Row {
    const char* method;
    Values refused;
  };
  const Row rows[] = {{"SampleBits", {0, 33, -16}},
                      {"SampleChannelCount", {0, 17, -1, 1}},  // 1: the second channel is in use
                      {"SampleLoopCount", {-1, 17}}};
  for (const Row& row : rows) {
    for (const int value : row.refused) {
      ExpectArgValue(program(row.method, whole, value), "NewValue", 2);
    }
  }
  ExpectArgValue(program("SampleSize", whole, -1), "NewSize", 2);
  for (const double fine : {-1.0, 4294967296.0, std::nan("")}) {
    ExpectArgValue(program("SampleLoopFineLen", whole, 0, fine), "NewValue", 3);
  }
  for (const int count : {0, 17}) {
    ExpectArgValue(program("SampleCreate", 0, 0, "wav", count), "Channels", 4);
  }
  EXPECT_EQ(ReadAll(whole), Counting(10, 2));
  EXPECT_EQ(Points(whole), (Values{0, 9, 2, 8}));
  EXPECT_EQ(Dirt(), "");
  program("SampleBits", whole, 65536 + 24);
  EXPECT_EQ(Get(whole, "SampleBits"), 24) << "the number is reduced to 16 bits";
}

}  // namespace
}  // namespace zyl::test
