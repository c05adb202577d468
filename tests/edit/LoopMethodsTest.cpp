// Loops through script methods: fields, counts, limits, notifications, quality and searches.
#include <algorithm>
#include <climits>

#include "edit/EditTools.h"

namespace zyl::test {
namespace {

using LoopMethods = EditTest;

TEST_F(LoopMethods, FieldsAreStoredAndNotifiedByNumber) {
  Open(16, Counting(50, 1));
  program("SampleLoopCount", first, 12);
  Listen();
  EXPECT_EQ(program("SampleLoopStart", first, 11, 20).Int(), 0);
  EXPECT_EQ(program("SampleLoopStart", first, 11, 20).Int(), 20);
  EXPECT_EQ(program("SampleLoopEnd", first, 11, -40).Int(), 0);
  EXPECT_EQ(program("SampleLoopTimes", first, 7, 3).Int(), 0);
  EXPECT_EQ(program("SampleLoopFineLen", first, 11, 5.9).Double(), 0.0);
  EXPECT_EQ(program("SampleLoopFineLen", first, 11, 4294967295.0).Double(), 5.0);
  EXPECT_EQ(program("SampleLoopFineLen", first, 11).Double(), 4294967295.0);
  EXPECT_EQ(program("SampleLoopTimes", first, 7).Int(), 3);
  EXPECT_EQ(Points(first)[25], -40);
  EXPECT_EQ(heard, "302 20 -1 -1 302 20 -1 -1 303 -40 -1 -1 308 5 -1 -1 308 -1 -1 -1 ");
  heard.clear();
  for (const char* method : {"SampleLoopStart", "SampleLoopEnd"}) {
    EXPECT_EQ(program(method, first, 12, 7).Int(), -1) << "not in use";
    for (const int index : {16, -1}) ExpectArgValue(program(method, first, index), "LoopIndex", 2);
  }
  EXPECT_EQ(program("SampleLoopFineLen", first, 15, 7.0).Double(), -1.0);
  EXPECT_EQ(program("SampleLoopQual", first, 15).Int(), 0);
  for (const int index : {8, -1}) {
    ExpectArgValue(program("SampleLoopTimes", first, index), "LoopIndex", 2);
  }
  ExpectArgValue(program("SampleLoopFindStart", first, 16, 0, 9, 0), "LoopIndex", 2);
  EXPECT_TRUE(heard.empty());
}

TEST_F(LoopMethods, AnotherCountResetsTheLoopsBeyondIt) {
  Open(16, Counting(50, 2));
  SetPoints(whole, {0, 49, 1, 2, 3, 4, 5, 6, 7, 8});
  Clean();
  EXPECT_EQ(program("SampleLoopCount", second, 2).Int(), 4);
  EXPECT_EQ(Dirt(), "PR");
  program("SampleLoopCount", first, 16);
  Values expected{0, 49, 1, 2, 3, 4};
  expected.resize(34, 0);
  EXPECT_EQ(Points(whole), expected);
}

TEST_F(LoopMethods, QualityIsScaled) {
  // A period of 100: the loop's values and slopes match exactly.
  Open(16, Counting(400, 1));
  SetPoints(first, {0, 399, 150, 350, 0, 200});
  EXPECT_EQ(program("SampleLoopQual", first, 0).Int(), 0x7FFFFFFF);
  EXPECT_EQ(program("SampleLoopQual", first, 1).Int(), 0) << "a start of 0 cannot be rated";
}

TEST_F(LoopMethods, SearchesMoveOnePointInAllChannelsAndLeaveTheRestAlone) {
  // Only a loop from 100 to 300 joins well.
  Values sound(400);
  for (int i = 0; i < 400; ++i) sound[static_cast<size_t>(i)] = i % 2 == 0 ? i * 20 : -i * 30;
  std::fill_n(sound.begin() + 100, 22, 0);
  std::fill_n(sound.begin() + 299, 2, 0);
  Open(16, {sound, sound});
  SetPoints(whole, {0, 399, 50, 350});
  program("SampleLoopFineLen", whole, 0, 123456.0);
  Clean();
  EXPECT_EQ(program("SampleLoopFindEnd", whole, 0, 320, 310, INT_MAX).Int(), 350) << "none better";
  program("SampleLoopStart", whole, 0, 105);
  Clean();
  EXPECT_EQ(program("SampleLoopFindEnd", whole, 0, 380, 130, 0).Int(), 300);
  EXPECT_EQ(program("SampleLoopFindStart", whole, 0, 300, 350, INT_MIN).Int(), 105)
      << "after the loop end";
  program("SampleLoopStart", whole, 0, 50);
  Clean();
  EXPECT_EQ(program("SampleLoopFindStart", whole, 0, 20, 250, 0).Int(), 101);
  EXPECT_EQ(Points(second), (Values{0, 399, 101, 300}));
  EXPECT_EQ(program("SampleLoopFineLen", second, 0).Double(), 123456.0);
  EXPECT_EQ(Dirt(), "");
  EXPECT_EQ(program("SampleLoopFindStart", whole, 9, 0, 300, 0).Int(), 0) << "a loop not in use";
}

}  // namespace
}  // namespace zyl::test
