// Program parameters through the slots of a pad.
#include <numeric>
#include <utility>

#include "PadTools.h"
#include "support/ProgramRecord.h"

namespace zyl::test {
namespace {

constexpr int kLoudVel = 15;  // the parameters that the tests use by number
constexpr int kLoudPrs = 17;

class ParameterSlots : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    program.Make();
    program("Dirty", false);
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
  bool IsDirty() const { return program("Dirty").Bool(); }
  uint32_t Stored(int number) const { return Entry(number, Value(number)); }

  Program program;
  Pad pad;
};

TEST_F(ParameterSlots, ASlotIsHeaderEntriesAndZeroPadding) {
  struct Case {
    std::vector<int> numbers;
    std::vector<uint32_t> words;
  };
  const uint32_t none = Entry(0x1234, 0xFFFF);
  const Case cases[] = {
      {{}, {16, 77, 0, 0}},
      {{kLoudVel}, {16, 77, 0, Stored(kLoudVel)}},
      {{kLoudVel, 4}, {24, 77, 0, Stored(kLoudVel), Stored(4), 0}},
      {{4, kLoudVel, 5}, {24, 77, 0, Stored(4), Stored(kLoudVel), Stored(5)}},
      {{0x1234, 0x71234}, {24, 77, 0, none, none, 0}},  // the low half of a number counts
      {{0}, {16, 77, 0, Entry(0, 0xFFFF)}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.numbers.size());
    pad.Set("");
    const Outcome outcome = Write(77, c.numbers);
    EXPECT_TRUE(outcome.Ok()) << outcome.Message();
    EXPECT_EQ(outcome.result, nullptr);
    EXPECT_EQ(pad.Bytes(), Words(c.words));
  }
  EXPECT_FALSE(IsDirty());
  // Numbers of other types count by their low bits, absent entries not at all.
  const uint32_t unnamed = Entry(0, 0xFFFF);
  pad.Set("");
  program("WriteDataToPad", &pad, 1, NullEntry{}, kLoudVel, NullEntry{}, "text", true, 15.0,
          NullObject{}, NullEntry{});
  EXPECT_EQ(pad.Bytes(), Words({32, 1, 0, Stored(kLoudVel), unnamed, Stored(1), unnamed, unnamed}));
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
      {5, {4, 5}, {16, 7, 0, b, 24, 5, 0, a, b, 0, 16, 0xFFFFFFFF, 0, a}},
      {7, {}, {16, 7, 0, 0, 24, 5, 0, a, b, 0, 16, 0xFFFFFFFF, 0, a}},
      {5, {4}, {16, 7, 0, 0, 16, 0xFFFFFFFF, 0, a, 16, 5, 0, a}},
  };
  for (const auto& step : steps) {
    Write(step.id, step.numbers);
    EXPECT_EQ(pad.Bytes(), Words(step.words)) << step.id;
  }
  const std::pair<int, std::vector<uint32_t>> removals[] = {
      {99, steps[7].words},
      {-1, {16, 7, 0, 0, 16, 5, 0, a}},  // the middle slot
      {7, {16, 5, 0, a}},                // the first
      {5, {}}};
  for (const auto& [id, words] : removals) {
    program("RemoveDataFromPad", &pad, id);
    EXPECT_EQ(pad.Bytes(), Words(words)) << id;
  }
}

TEST_F(ParameterSlots, ReadingBackWhatWasWrittenChangesNothing) {
  const ProgramRecord record(program);
  program("Dirty", false);
  int told = 0;
  Listener listener;
  listener["OnProgramParameterChanged"] = [&](ROCParams& arguments, ROCParam**) {
    // The individual output is told of at every set, changed or not.
    const int number = arguments.Entry(1)->Int();
    told += number == 10 || number == 230 ? 0 : 1;
  };
  program("Register", static_cast<RIOObject*>(&listener));
  // 60 entries need padding, 61 do not.
  for (const int count : {60, 61}) {
    std::vector<int> numbers(static_cast<size_t>(count));
    std::iota(numbers.begin(), numbers.end(), 1);
    Write(count, numbers);
    const auto before = record.Image();
    const int channel = program("PRGmidiChannel").Int();
    EXPECT_TRUE(Read(count).Ok());
    EXPECT_EQ(record.Image(), before);
    EXPECT_EQ(program("PRGmidiChannel").Int(), channel);
    EXPECT_FALSE(IsDirty());
    EXPECT_EQ(told, 0);
    // And what was changed meanwhile comes back, with one message for each change.
    program("PRGIntValue", kLoudVel, Value(kLoudVel) - 1);
    program("PRGIntValue", kLoudPrs, Value(kLoudPrs) + 1);
    told = 0;
    EXPECT_NE(record.Image(), before);
    Read(count);
    EXPECT_EQ(record.Image(), before);
    EXPECT_TRUE(IsDirty());
    EXPECT_EQ(std::exchange(told, 0), 2);
    program("Dirty", false);
  }
}

TEST_F(ParameterSlots, ValuesAreSixteenBitsWithASign) {
  std::vector<std::pair<int, int>> told;
  Listener listener;
  listener["OnProgramParameterChanged"] = [&](ROCParams& arguments, ROCParam**) {
    told.emplace_back(arguments.Entry(1)->Int(), arguments.Entry(2)->Int());
  };
  program("Register", static_cast<RIOObject*>(&listener));
  pad.Set(Words({32, 1, 0, Entry(60000, 40000), Entry(4, 0), Entry(4, 3), Entry(0, 1), 0}));
  program("PRGIntValue", 4, 1);
  told.clear();
  Read(1);
  const std::vector<std::pair<int, int>> expected = {{60000, -25536}, {4, 0}, {4, 3}, {0, 1}};
  EXPECT_EQ(told, expected);
  EXPECT_EQ(Value(4), 3);
}

TEST_F(ParameterSlots, BytesThatAreNoSlotAreNeitherReadNorRemoved) {
  const uint32_t change = Entry(kLoudVel, Value(kLoudVel) - 1);
  const std::string good = Words({16, 1, 0, change});
  struct Case {
    const char* what;
    std::string bytes;
  };
  const Case cases[] = {
      {"empty", ""},
      {"a size of 0", Words({0, 1, 0, change})},
      {"a size of 7", Words({7, 1, 0, change}) + good},
      {"7 bytes", good.substr(0, 7)},
      {"a slot behind a size of 0", Words({0, 2, 0, 0}) + good},
      {"a slot behind one that reaches over it", Words({32, 2, 0, change}) + good},
      {"a slot behind a size beyond the end", Words({40, 2, 0, change}) + good},
      {"another id", Words({16, 2, 0, change})},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    pad.Set(c.bytes);
    EXPECT_TRUE(Read(1).Ok());
    EXPECT_FALSE(IsDirty());
    EXPECT_TRUE(program("RemoveDataFromPad", &pad, 1).Ok());
    EXPECT_EQ(pad.Bytes(), c.bytes);
    // A write keeps every byte, and adds its slot.
    Write(1, {kLoudVel});
    EXPECT_EQ(pad.Bytes(), c.bytes + Words({16, 1, 0, Stored(kLoudVel)}));
  }
  pad.Set(Words({16, 1, 1, change}));
  Read(1);
  EXPECT_FALSE(IsDirty()) << "a reserved word is not 0";
}

// A slot may have any size from 8, and ends with the buffer at the latest.
TEST_F(ParameterSlots, ReadsSlotsOfAnySizeFrom8Bytes) {
  const int vel = Value(kLoudVel);
  const int prs = Value(kLoudPrs);
  const uint32_t change = Entry(kLoudVel, vel - 1);
  const uint32_t change2 = Entry(kLoudPrs, prs - 1);
  const std::string other = Words({16, 2, 0, 0});
  struct Case {
    const char* what;
    std::string bytes;
    int read;  // how many of the two changes the slot holds
    std::string rest = "";
  };
  const Case cases[] = {
      {"20 bytes", Words({20, 1, 0, change, change2}) + other, 2, other},
      {"20 bytes after others", other + Words({20, 1, 0, change, change2}), 2, other},
      {"after one of 20 bytes", Words({20, 2, 0, 0, 0, 24, 1, 0, change, change2, 0}), 2,
       Words({20, 2, 0, 0, 0})},
      {"19 bytes", Words({19, 1, 0, change, change2}).substr(0, 19) + other, 1, other},
      {"no entries", Words({12, 1, 0}) + other, 0, other},
      {"no header", Words({8, 1}) + other, 0, other},
      {"beyond the end", other + Words({24, 1, 0, change, change2}), 2, other},
      {"a size that wraps around", other + Words({0xFFFFFFF0, 1, 0, change}), 1, other},
      {"cut in an entry", Words({16, 1, 0, change}).substr(0, 15), 0},
      // One byte short of the reserved word; the byte after the slot is 0.
      {"cut in the header", Words({11, 1, 0}).substr(0, 11) + Words({0x100, 2, 0, 0}), 0,
       Words({0x100, 2, 0, 0})},
      {"cut after the id", other + Words({16, 1}), 0, other},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    pad.Set(c.bytes);
    program("PRGIntValue", kLoudVel, vel);
    program("PRGIntValue", kLoudPrs, prs);
    EXPECT_TRUE(Read(1).Ok());
    EXPECT_EQ(Value(kLoudVel), c.read > 0 ? vel - 1 : vel);
    EXPECT_EQ(Value(kLoudPrs), c.read > 1 ? prs - 1 : prs);
    Write(1, {4, 5, 4});
    EXPECT_EQ(pad.Bytes(), c.rest + Words({24, 1, 0, Stored(4), Stored(5), Stored(4)}));
    pad.Set(c.bytes);
    EXPECT_TRUE(program("RemoveDataFromPad", &pad, 1).Ok());
    EXPECT_EQ(pad.Bytes(), c.rest);
  }
}

TEST_F(ParameterSlots, ANotifiedModuleMayTakeEverythingAway) {
  const int first = Value(4);
  const int second = Value(5);
  const std::string bytes = Words({24, 1, 0, Entry(4, first + 1), Entry(5, second + 1), 0});
  struct Case {
    const char* what;
    std::function<void(Program&, std::unique_ptr<Pad>&)> act;
    bool goesOn;  // the second entry is stored too
  };
  const Case cases[] = {
      {"empties the pad", [](auto& object, auto& p) { object("EmptyPadData", p.get()); }, true},
      {"writes the slot",
       [](auto& object, auto& p) { object("WriteDataToPad", p.get(), 1, 1, 2, 3, 4, 5, 6, 7); },
       true},
      {"drops the pad", [](auto&, auto& p) { p.reset(); }, true},
      {"attaches another program", [](auto& object, auto&) { object("Create", NullObject{}); },
       false},
      {"deletes the program", [](auto& object, auto&) { object.Delete(); }, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Program object;
    object.Make();
    const ProgramRecord record(object);
    auto own = std::make_unique<Pad>(bytes);
    int told = 0;
    Listener listener;
    listener["OnProgramParameterChanged"] = [&](ROCParams&, ROCParam**) {
      if (told++ == 0) c.act(object, own);
    };
    object("Register", static_cast<RIOObject*>(&listener));
    EXPECT_TRUE(object("ReadDataFromPad", own.get(), 1).Ok());
    EXPECT_EQ(told, c.goesOn ? 2 : 1);
  }
}

}  // namespace
}  // namespace zyl::test
