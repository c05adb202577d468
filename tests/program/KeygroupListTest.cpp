// The keygroup list: a keygroup's record, extension and samples stay together.
#include <array>
#include <random>

#include "program/ProgramFileTools.h"

namespace zyl::test {
namespace {

class KeygroupList : public ModuleTest {
 protected:
  // One keygroup for each (low, high) pair; its tune is its first index.
  void MakeKeys(const std::vector<std::pair<int, int>>& keys) {
    program.Make(static_cast<int>(keys.size()));
    for (int k = 0; k < static_cast<int>(keys.size()); ++k) {
      program("KGlowKey", k, keys[static_cast<size_t>(k)].first);
      program("KGhighKey", k, keys[static_cast<size_t>(k)].second);
      Mark(k, k);
    }
  }
  // Stores a number in record, extension and a zone's path of a keygroup.
  void Mark(int k, int mark) {
    program("KGtune", k, mark);
    program("KGenv3Rate1", k, mark);
    program("ZoneSamplePath", k, 3, std::to_string(mark));
  }
  std::vector<int> Order() {
    std::vector<int> order;
    for (int k = 0; program("KGtune", k).Ok(); ++k) {
      order.push_back(program("KGtune", k).Int());
      EXPECT_EQ(program("KGenv3Rate1", k).Int(), order.back()) << "extension of " << k;
      EXPECT_EQ(program("ZoneSamplePath", k, 3).Text(), std::to_string(order.back()));
    }
    return order;
  }
  Program program;
};

TEST_F(KeygroupList, SelectSetsOneOrAll) {
  program.Make(3);
  EXPECT_FALSE(program("KGSelect", 2, true).Bool());
  EXPECT_TRUE(program("KGSelect", 2).Bool());
  EXPECT_FALSE(program("KGSelect", -1).Bool());
  EXPECT_TRUE(program("KGSelect", -1, true).Bool());
  for (int k = 0; k < 3; ++k) EXPECT_TRUE(program("KGSelect", k).Bool());
}

TEST_F(KeygroupList, FindByKeyReturnsTheFirstMatch) {
  MakeKeys({{0, 47}, {48, 71}, {60, 84}});
  for (const auto& [key, startAt, found] :
       std::initializer_list<std::array<int, 3>>{{60, 0, 1},
                                                 {60, 2, 2},
                                                 {60, -5, 1},
                                                 {60, 3, -1},
                                                 {47, 0, 0},
                                                 {84, 0, 2},
                                                 {85, 0, -1},
                                                 {256 + 60, 0, -1}}) {
    EXPECT_EQ(program("KGFindByKey", key, startAt).Int(), found) << key;
  }
}

TEST_F(KeygroupList, SortReversesEqualKeys) {
  const std::tuple<std::vector<std::pair<int, int>>, int, int, std::vector<int>> rows[] = {
      {{{60, 1}, {12, 2}, {36, 3}}, 100, 0, {1, 2, 0}},
      {{{60, 1}, {12, 200}, {36, 30}}, 101, 1, {1, 2, 0}},
      {{{5, 0}, {3, 0}, {3, 0}}, 100, 0, {2, 1, 0}},
      {{{3, 0}, {5, 0}, {5, 0}}, 100, 7, {2, 1, 0}},
      {{{60, 1}, {12, 2}, {36, 3}}, 7, 0, {0, 1, 2}},
  };
  for (const auto& [keys, by, direction, order] : rows) {
    MakeKeys(keys);
    EXPECT_TRUE(program("KGSort", by, direction).Ok());
    EXPECT_EQ(Order(), order) << by << " " << direction;
  }
}

TEST_F(KeygroupList, CreateInsertsAndDeleteRemoves) {
  WriteWave(Path("a.wav"), {{1, 2}});
  MakeKeys({{0, 1}, {0, 1}});
  program("ZoneSampleSet", 1, 0, Path("a.wav"));
  EXPECT_EQ(program("KGCreate", 0).Int(), 2);
  EXPECT_EQ(program("KGhighKey", 0).Int(), 127);
  EXPECT_EQ(program("KGCreate", 99).Int(), 3);
  EXPECT_TRUE(program("ZoneSampleExists", 2, 0).Bool()) << "the sample moved with its keygroup";
  const Program copy;
  copy.Make();
  EXPECT_EQ(copy("KGCreate", 0, program.Algo(), 2).Int(), 1);
  EXPECT_EQ(copy("KGtune", 0).Int(), 1);
  EXPECT_TRUE(copy("ZoneSampleExists", 0, 0).Bool());
  EXPECT_EQ(copy("KGCreate", 0, copy.Algo()).Int(), 2) << "a copy of its keygroup 0";
  for (const int missing : {-1, 5, INT32_MAX}) {
    EXPECT_EQ(copy("KGCreate", 0, program.Algo(), missing).Int(), 2)
        << "the source has no such keygroup";
  }
  EXPECT_EQ(copy("KGCreate", 0, NullObject{}, "x").Int(), 3)
      << "the argument is ignored without a source";
  EXPECT_TRUE(copy("KGDelete", -1).Ok());
  for (int left = 4; left > 0; --left) EXPECT_TRUE(copy("KGDelete", 0).Ok());
  ASSERT_TRUE(copy("Write", Path("none.zprg")).Bool());
  ASSERT_TRUE(copy("Read", Path("none.zprg")).Bool());
  EXPECT_EQ(copy("KGCreate", 0).Int(), 0);
}

TEST_F(KeygroupList, RandomOperationsKeepRecordExtensionAndPathTogether) {
  std::mt19937 random(5);
  const auto below = [&](int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  };
  MakeKeys({{0, 1}});
  const int nowhere[][2] = {{-1, 0}, {0, 1}, {1, 0}, {0, -1}, {INT32_MIN, INT32_MAX}};
  for (const auto& [from, to] : nowhere) EXPECT_TRUE(program("KGMove", from, to).Ok());
  std::vector<int> order = {0};
  for (int step = 1; step < 300; ++step) {
    const int size = static_cast<int>(order.size());
    const int at = below(size);
    switch (size < 3 ? 0 : below(3)) {
      case 0:
        program("KGCreate", at);
        Mark(at, step % 120);
        order.insert(order.begin() + at, step % 120);
        break;
      case 1:
        program("KGDelete", at);
        order.erase(order.begin() + at);
        break;
      default: {
        const int to = below(size);
        program("KGMove", at, to);
        const int moved = order[static_cast<size_t>(at)];
        order.erase(order.begin() + at);
        order.insert(order.begin() + to, moved);
      }
    }
    ASSERT_EQ(Order(), order) << "step " << step;
  }
}

TEST_F(KeygroupList, ACountAboveTheAllocationIsClamped) {
  MakeKeys({{0, 127}});
  EXPECT_EQ(program("PRGkeyGroups", 300).Int(), 1);
  for (const char* method : {"KGSelect", "KGDelete", "KGIntValue", "Zonename", "ZoneSampleSet",
                             "SampleGet", "SampleCreate", "SampleFileName"}) {
    ExpectException(program(method, 5, 0),
                    std::string("ZylSProgram::") + method + ": Keygroup index out of range!");
  }
  program("KGSelect", -1, true);
  program("KGfilterFreq", -2, 80);
  EXPECT_EQ(program("KGFindByKey", 60, 0).Int(), 0);
  EXPECT_TRUE(program("KGSort", 100, 0).Ok());
  EXPECT_TRUE(program("KGMove", 0, 5).Ok());
  ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
  ASSERT_TRUE(program("Read", Path("p.zprg")).Bool());
  EXPECT_EQ(program("PRGkeyGroups", 300).Int(), 1) << "the file has the allocated count";
  EXPECT_EQ(program("KGfilterFreq", 0).Int(), 80);
  EXPECT_EQ(program("KGCreate", 300).Int(), 1);
  EXPECT_EQ(program("PRGkeyGroups", 0).Int(), 2);
  EXPECT_EQ(program("KGFindByKey", 60).Int(), -1);
}

}  // namespace
}  // namespace zyl::test
