// Loops through script methods: fields, counts, limits, notifications, quality and searches.
#include <climits>
#include <cmath>
#include <random>

#include "edit/EditTools.h"

namespace zyl::test {
namespace {

using LoopMethods = EditTest;

TEST_F(LoopMethods, FieldsAreStoredAndToldOfWithTheirNumbers) {
  Open(16, Counting(50, 1));
  program("SampleLoopCount", first, 12);
  Listener listener;
  std::vector<std::string> told;
  listener["OnProgramParameterChanged"] = [&](ROCParams& list, ROCParam**) {
    std::string line;
    for (int i = 1; i < 5; ++i) line += std::to_string(list.Entry(i)->Int()) + " ";
    told.push_back(line);
  };
  program("Register", static_cast<RIOObject*>(&listener));
  EXPECT_EQ(program("SampleLoopStart", first, 11, 20).Int(), 0);
  EXPECT_EQ(program("SampleLoopStart", first, 11, 20).Int(), 20);
  EXPECT_EQ(program("SampleLoopEnd", first, 11, -40).Int(), 0);
  EXPECT_EQ(program("SampleLoopTimes", first, 7, 3).Int(), 0);
  EXPECT_EQ(program("SampleLoopFineLen", first, 11, 5.9).Double(), 0.0);
  EXPECT_EQ(program("SampleLoopFineLen", first, 11, 4294967295.0).Double(), 5.0);
  EXPECT_EQ(program("SampleLoopFineLen", first, 11, -0.9).Double(), 4294967295.0);
  EXPECT_EQ(program("SampleLoopFineLen", first, 11).Double(), 0.0);
  EXPECT_EQ(program("SampleLoopTimes", first, 7).Int(), 3);
  EXPECT_EQ(Points(first)[25], -40);
  EXPECT_EQ(told, (std::vector<std::string>{"302 20 -1 -1 ", "302 20 -1 -1 ", "303 -40 -1 -1 ",
                                            "308 5 -1 -1 ", "308 -1 -1 -1 ", "308 0 -1 -1 "}));
  told.clear();
  for (const char* method : {"SampleLoopStart", "SampleLoopEnd"}) {
    EXPECT_EQ(program(method, first, 12, 7).Int(), -1) << "not in use";
    for (const int index : {16, -1}) ExpectArgValue(program(method, first, index), "LoopIndex", 2);
  }
  EXPECT_EQ(program("SampleLoopFineLen", first, 15, 7.0).Double(), -1.0);
  EXPECT_EQ(program("SampleLoopQual", first, 15).Int(), 0);
  for (const int index : {8, -1}) {
    ExpectArgValue(program("SampleLoopTimes", first, index), "LoopIndex", 2);
  }
  for (const char* method : {"SampleLoopFindStart", "SampleLoopFindEnd"}) {
    ExpectArgValue(program(method, first, 16, 0, 9, 0), "LoopIndex", 2);
    ExpectArgType(program(method, first, 0, 0, 9), "Treshold", kTypeInteger, 5);
  }
  ExpectArgType(program("SampleLoopFineLen", first, 0, 7), "NewValue", kTypeDouble, 3);
  EXPECT_TRUE(told.empty());
}

TEST_F(LoopMethods, AnotherCountResetsTheLoopsBehindIt) {
  Open(16, Counting(50, 2));
  SetPoints(whole, {0, 49, 1, 2, 3, 4, 5, 6, 7, 8});
  Clean();
  EXPECT_EQ(program("SampleLoopCount", first, 4).Int(), 4);
  EXPECT_EQ(Dirt(), "");
  EXPECT_EQ(program("SampleLoopCount", second, 2).Int(), 4);
  EXPECT_EQ(Dirt(), "PR");
  program("SampleLoopCount", first, 16);
  Values expected{0, 49, 1, 2, 3, 4};
  expected.resize(34, 0);
  EXPECT_EQ(Points(whole), expected);
}

TEST_F(LoopMethods, QualityIsScaledAndHeld) {
  // A period of 100: the loop's values and slopes match exactly.
  Open(16, Counting(400, 1));
  SetPoints(first, {0, 399, 150, 350, 0, 200, 250, 300});
  EXPECT_EQ(program("SampleLoopQual", first, 0).Int(), 0x7FFFFFFF);
  EXPECT_EQ(program("SampleLoopQual", first, 1).Int(), 0) << "a start of 0 cannot be rated";
  // 50 meets 0, and slopes of 1 meet one of -99.
  const double terms = 0.025 * 100.0 / 65535.0 * 20.0 * 21.0 / 2.0;
  EXPECT_NEAR(program("SampleLoopQual", first, 2).Int(),
              (1.0 - 50.0 / 65535.0 - terms) * 2147483647.0, 2.0);
  for (const int bits : {16, 32}) {
    const int high = static_cast<int>((int64_t{1} << (bits - 1)) - 1);
    Values rough;
    for (int i = 0; i < 100; ++i) rough.push_back(i % 2 == 0 ? high : -high);
    rough[91] = high;
    rough[90] = high;
    Open(bits, {rough});
    SetPoints(first, {0, 99, 41, 91});
    EXPECT_EQ(program("SampleLoopQual", first, 0).Int(), INT_MIN) << bits;
  }
}

// Against the ratings of all candidates; of equal ratings the methods may know finer differences.
TEST_F(LoopMethods, SearchesTakeABestCandidateAndLeaveTheRestAlone) {
  std::mt19937 random(5);
  Values noise;
  for (int i = 0; i < 400; ++i) noise.push_back(static_cast<int>(random() % 8000) - 4000);
  Open(16, {noise, noise});
  SetPoints(whole, {0, 399, 100, 300});
  program("SampleLoopFineLen", whole, 0, 123456789.0);
  struct Row {
    const char* field;
    const char* search;
    int before, from, to, threshold;
    int low, high;  // the candidates
  };
  const char *start = "SampleLoopStart", *findStart = "SampleLoopFindStart";
  const char *end = "SampleLoopEnd", *findEnd = "SampleLoopFindEnd";
  const Row rows[] = {{start, findStart, 100, 250, 20, 0, 20, 250},
                      {start, findStart, 100, -50, 999, 0, 0, 300},
                      {start, findStart, 100, 300, 350, INT_MIN, 0, 0},
                      {start, findStart, 100, 20, 250, INT_MAX, 20, 250},
                      {end, findEnd, 300, 380, 120, 0, 120, 380},
                      {end, findEnd, 300, 0, 999, 0, 100, 399},
                      {end, findEnd, 300, 0, 100, INT_MIN, 0, 0}};
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.search) + std::to_string(row.from));
    std::map<int, int> ratings;
    int best = row.threshold;
    for (int p = row.low; p < row.high; ++p) {
      program(row.field, whole, 0, p);
      ratings[p] = program("SampleLoopQual", whole, 0).Int();
      best = std::max(best, ratings[p]);
    }
    program(row.field, whole, 0, row.before);
    Clean();
    const int found = program(row.search, whole, 0, row.from, row.to, row.threshold).Int();
    if (best > row.threshold) {
      ASSERT_EQ(ratings.count(found), 1u) << found;
      EXPECT_EQ(ratings[found], best);
    } else {
      EXPECT_EQ(found, row.before);
    }
    EXPECT_EQ(program(row.field, first, 0).Int(), found);
    EXPECT_EQ(program("SampleLoopFineLen", second, 0).Double(), 123456789.0);
    EXPECT_EQ(Dirt(), "");
    program(row.field, whole, 0, row.before);
  }
  EXPECT_EQ(program(findStart, whole, 9, 0, 300, 0).Int(), 0) << "a loop not in use";
}

}  // namespace
}  // namespace zyl::test
