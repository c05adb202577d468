// Program parameters through the slots of a pad.
#include <numeric>

#include "PadTools.h"
#include "support/ProgramRecord.h"

namespace zyl::test {
namespace {

constexpr int kLoudVel = 15;  // the parameters that the tests use by number
constexpr int kLoudPrs = 17;

class ParameterSlots : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    program.Make();
    TakeDirty();
  }
  Outcome Write(int id, const std::vector<int>& numbers) {
    ROCParams arguments;
    arguments.AddTail(ToParam(&pad));
    arguments.AddTail(ToParam(id));
    for (const int number : numbers) arguments.AddTail(ToParam(number));
    return CallList(program.Algo(), "WriteDataToPad", &arguments);
  }
  Outcome Read(int id) { return program("ReadDataFromPad", &pad, id); }
  int Value(int number) const { return program("PRGIntValue", number).Int(); }
  uint32_t Stored(int number) const { return Entry(number, Value(number)); }

  Pad pad;
};

TEST_F(ParameterSlots, ASlotIsHeaderEntriesAndZeroPadding) {
  const uint32_t none = Entry(0x1234, 0xFFFF), vel = Stored(kLoudVel);
  const std::pair<std::vector<int>, std::vector<uint32_t>> cases[] = {
      {{}, {16, 77, 0, 0}},
      {{kLoudVel}, {16, 77, 0, vel}},
      {{kLoudVel, 4}, {24, 77, 0, vel, Stored(4), 0}},
      {{4, kLoudVel, 5}, {24, 77, 0, Stored(4), vel, Stored(5)}},
      {{0x1234, 0x71234}, {24, 77, 0, none, none, 0}},  // the low half of a number counts
      {{0}, {16, 77, 0, Entry(0, 0xFFFF)}},
  };
  for (const auto& [numbers, words] : cases) {
    pad.Set("");
    EXPECT_EQ(Write(77, numbers).result, nullptr);
    EXPECT_EQ(pad.Bytes(), Words(words)) << numbers.size();
  }
  // Numbers of other types count by their low bits, absent entries not at all.
  const uint32_t unnamed = Entry(0, 0xFFFF);
  pad.Set("");
  program("WriteDataToPad", &pad, 1, NullEntry{}, kLoudVel, NullEntry{}, "text", true, 15.0,
          NullObject{}, NullEntry{});
  EXPECT_EQ(pad.Bytes(), Words({32, 1, 0, vel, unnamed, Stored(1), unnamed, unnamed}));
  program("EmptyPadData", &pad);
  EXPECT_EQ(pad.Bytes(), "");
}

TEST_F(ParameterSlots, ASlotThatChangesItsSizeMovesToTheEnd) {
  const uint32_t a = Stored(4);
  const uint32_t b = Stored(5);
  const struct {
    int id;
    std::vector<int> numbers;
    std::vector<uint32_t> words;
  } steps[] = {
      {5, {4}, {16, 5, 0, a}},
      {7, {4}, {16, 5, 0, a, 16, 7, 0, a}},
      {5, {4, 5, 4}, {16, 7, 0, a, 24, 5, 0, a, b, a}},
      {7, {5}, {16, 7, 0, b, 24, 5, 0, a, b, a}},
      {-1, {4}, {16, 7, 0, b, 24, 5, 0, a, b, a, 16, 0xFFFFFFFF, 0, a}},
      {5, {4}, {16, 7, 0, b, 16, 0xFFFFFFFF, 0, a, 16, 5, 0, a}},
  };
  for (const auto& [id, numbers, words] : steps) {
    Write(id, numbers);
    EXPECT_EQ(pad.Bytes(), Words(words)) << id;
  }
  const std::pair<int, std::vector<uint32_t>> removals[] = {
      {99, steps[5].words},
      {-1, {16, 7, 0, b, 16, 5, 0, a}},  // the middle slot
      {7, {16, 5, 0, a}},                // the first
      {5, {}}};
  for (const auto& [id, words] : removals) {
    program("RemoveDataFromPad", &pad, id);
    EXPECT_EQ(pad.Bytes(), Words(words)) << id;
  }
}

TEST_F(ParameterSlots, ReadingBackChangesOnlyWhatDiffers) {
  const ProgramRecord record(program);
  Listen();
  // The individual output is announced at every store.
  const std::string kOutput = "10 -1 -1 -1 230 -1 -1 -1 ";
  // 60 entries need padding, 61 do not.
  for (const int count : {60, 61}) {
    std::vector<int> numbers(static_cast<size_t>(count));
    std::iota(numbers.begin(), numbers.end(), 1);
    Write(count, numbers);
    const auto before = record.Image();
    TakeDirty();
    EXPECT_TRUE(Read(count).Ok());
    EXPECT_EQ(record.Image(), before);
    EXPECT_FALSE(TakeDirty());
    EXPECT_EQ(TakeHeard(), kOutput);
    program("PRGIntValue", kLoudVel, Value(kLoudVel) - 1);
    program("PRGIntValue", kLoudPrs, Value(kLoudPrs) + 1);
    EXPECT_NE(record.Image(), before);
    TakeHeard();
    Read(count);
    EXPECT_EQ(record.Image(), before);
    EXPECT_TRUE(TakeDirty());
    EXPECT_EQ(TakeHeard(), kOutput + "15 20 -1 -1 17 0 -1 -1 ");
  }
}

TEST_F(ParameterSlots, ValuesAreSixteenBitsWithASign) {
  program("PRGIntValue", 4, 1);
  Listen();
  pad.Set(Words({32, 1, 0, Entry(60000, 40000), Entry(4, 0), Entry(4, 3), Entry(0, 1), 0}));
  Read(1);
  EXPECT_EQ(heard, "60000 -25536 -1 -1 4 0 -1 -1 4 3 -1 -1 0 1 -1 -1 ");
  EXPECT_EQ(Value(4), 3);
}

// A slot may have any size from 8, and ends with the buffer at the latest. Other bytes are neither
// read nor removed.
TEST_F(ParameterSlots, ReadsSlotsOfAnySizeFrom8Bytes) {
  const int vel = Value(kLoudVel);
  const int prs = Value(kLoudPrs);
  const uint32_t change = Entry(kLoudVel, vel - 1);
  const uint32_t change2 = Entry(kLoudPrs, prs - 1);
  const std::string other = Words({16, 2, 0, 0});
  const std::string good = Words({16, 1, 0, change});
  const std::string sized20 = Words({20, 1, 0, change, change2});
  const auto noSlot = [](const char* what, const std::string& bytes) {
    return std::tuple(what, bytes, 0, bytes);
  };
  // What it is, the bytes, how many of the two changes the slot holds, the bytes without the slot.
  const std::tuple<const char*, std::string, int, std::string> cases[] = {
      {"20 bytes", sized20 + other, 2, other},
      {"20 bytes after others", other + sized20, 2, other},
      {"after one of 20 bytes", Words({20, 2, 0, 0, 0, 24, 1, 0, change, change2, 0}), 2,
       Words({20, 2, 0, 0, 0})},
      {"19 bytes", Words({19, 1, 0, change, change2}).substr(0, 19) + other, 1, other},
      {"no entries", Words({12, 1, 0}) + other, 0, other},
      {"no header", Words({8, 1}) + other, 0, other},
      {"a reserved word that is not 0", Words({16, 1, 1, change}), 0, ""},
      {"beyond the end", other + Words({24, 1, 0, change, change2}), 2, other},
      {"a size that wraps around", other + Words({0xFFFFFFF0, 1, 0, change}), 1, other},
      {"cut in an entry", good.substr(0, 15), 0, ""},
      // One byte short of the reserved word; the byte after the slot is 0.
      {"cut in the header", Words({11, 1, 0}).substr(0, 11) + Words({0x100, 2, 0, 0}), 0,
       Words({0x100, 2, 0, 0})},
      {"cut after the id", other + Words({16, 1}), 0, other},
      noSlot("empty", ""),
      noSlot("a size of 7", Words({7, 1, 0, change}) + good),
      noSlot("7 bytes", good.substr(0, 7)),
      noSlot("a slot after a size of 0", Words({0, 2, 0, 0}) + good),
      noSlot("a slot inside another", Words({32, 2, 0, change}) + good),
      noSlot("another id", Words({16, 2, 0, change})),
  };
  for (const auto& [what, bytes, read, rest] : cases) {
    SCOPED_TRACE(what);
    pad.Set(bytes);
    program("PRGIntValue", kLoudVel, vel);
    program("PRGIntValue", kLoudPrs, prs);
    TakeDirty();
    EXPECT_TRUE(Read(1).Ok());
    EXPECT_EQ(TakeDirty(), read > 0);
    EXPECT_EQ(Value(kLoudVel), read > 0 ? vel - 1 : vel);
    EXPECT_EQ(Value(kLoudPrs), read > 1 ? prs - 1 : prs);
    Write(1, {4, 5, 4});
    EXPECT_EQ(pad.Bytes(), rest + Words({24, 1, 0, Stored(4), Stored(5), Stored(4)}));
    pad.Set(bytes);
    EXPECT_TRUE(program("RemoveDataFromPad", &pad, 1).Ok());
    EXPECT_EQ(pad.Bytes(), rest);
  }
}

}  // namespace
}  // namespace zyl::test
