// Field methods: the bytes that each kind changes, the dirty flag and the notification. The golden
// table has every method's number and type.
#include <functional>
#include <numeric>

#include "support/ProgramRecord.h"

namespace zyl::test {
namespace {

constexpr int32_t kDiffering = INT32_MIN;
// One for each kind of record and storage rule.
constexpr const char* kKeygroupMethods[] = {"KGtune", "KGresonance", "KGfilterResonance",
                                            "KGenv3Rate1", "TolmoKGreverb"};

// Resonances are stored by library functions, which set no dirty flag.
bool MarksProgram(const std::string& name) {
  return name != "KGresonance" && name != "KGfilterResonance";
}

class FieldFamilies : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    program.Make(3);
    Listen();
    TakeDirty();
  }
};

TEST_F(FieldFamilies, AStoreChangesOneFieldMarksDirtyAndNotifies) {
  program("TolmoKGecho", -1, 1);
  const ProgramRecord record(program);
  const size_t keygroup = record.KeygroupPlace(1), extension = record.ExtensionPlace(1);
  const struct {
    const char* method;
    std::vector<int> place;
    size_t offset, bytes;
    std::string number = {};
  } rows[] = {{"PRGtune", {}, 65, 2, "18"},
              {"PRGextTriggerThreshold", {}, 177, 1, "76"},
              {"KGtune", {1}, keygroup + 5, 2},
              {"KGresonance", {1}, keygroup + 149, 1},
              {"ZonetuneOffset", {1, 3}, keygroup + 34 + 3 * 24 + 14, 2},
              {"ZonevelStart", {1, 3}, keygroup + 146, 2},
              {"KGfilterResonance", {1}, extension + 62, 2},
              {"TolmoKGecho", {1}, extension + 109, 1},
              {"ZoneTimeStretchOffset", {1, 3}, extension + 70, 2}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.method);
    const auto call = [&](std::optional<int32_t> value) {
      ROCParams arguments;
      for (const int index : row.place) arguments.AddTail(ToParam(index));
      if (value) arguments.AddTail(ToParam(*value));
      return CallList(program.Algo(), row.method, &arguments).Int();
    };
    call(0);
    TakeDirty();
    TakeNotified();
    const auto before = record.Image();
    EXPECT_EQ(call(0x5A5A5A5A), 0);
    std::vector<size_t> changed(row.bytes);
    std::iota(changed.begin(), changed.end(), row.offset);
    EXPECT_EQ(ProgramRecord::Changed(before, record.Image()), changed);
    EXPECT_EQ(TakeDirty(), MarksProgram(row.method));
    // The caller's value is sent untruncated.
    EXPECT_EQ(TakeNotified(), row.number.empty() ? "" : row.number + " 1515870810 -1 -1 ");
    // A value that differs only in truncated bits is no change, except that every store in
    // keygroups sets the dirty flag.
    call(0x5A5A5A5A + (1 << (8 * row.bytes)));
    EXPECT_EQ(TakeDirty(), row.place.size() == 1 && MarksProgram(row.method));
    EXPECT_EQ(TakeNotified(), "");
  }
}

TEST_F(FieldFamilies, AKeygroupIndexAddressesOneAllOrTheSelected) {
  for (int k = 0; k < 3; ++k) program("KGSelect", k, k != 2);
  for (const char* method : kKeygroupMethods) {
    SCOPED_TRACE(method);
    program(method, -1, 0);
    EXPECT_EQ(program(method, -1).Int(), 0);
    program(method, 2, 90);
    EXPECT_EQ(program(method, -1).Int(), kDiffering);
    EXPECT_EQ(program(method, -2).Int(), 0);
    EXPECT_EQ(program(method, -7, 3).Int(), 0)
        << "every index below -1 addresses the selected ones";
    for (const int k : {0, 1}) EXPECT_EQ(program(method, k).Int(), 3);
    EXPECT_EQ(program(method, 2).Int(), 90);
  }
  EXPECT_EQ(notified, "") << "keygroup fields do not notify";
  program("KGSelect", -1, false);
  for (const char* method : kKeygroupMethods) EXPECT_EQ(program(method, -2).Int(), kDiffering);
  for (int k = 0; k < 3; ++k) program("KGDelete", 0);
  const ProgramRecord record(program);
  for (const char* method : kKeygroupMethods) {
    TakeDirty();
    const auto before = record.Image();
    EXPECT_EQ(program(method, -1, 5).Int(), kDiffering);
    EXPECT_EQ(TakeDirty(), MarksProgram(method)) << "even if nothing changes";
    EXPECT_EQ(before, record.Image());
  }
}

TEST_F(FieldFamilies, IndexesOutsideTheProgramAreRefusedBeforeTheValueIsRead) {
  const std::string range = "ZylSProgram::ZonelowVel: Keygroup index out of range!";
  EXPECT_FALSE(program("KGtune", 3, "7").Ok());
  for (const int k : {-1, 3}) ExpectException(program("ZonelowVel", k, "9"), range);
  for (const int zone : {-1, 4}) {
    ExpectException(program("ZonelowVel", 0, zone, "7"),
                    "ZylSProgram::ZonelowVel: Zone index out of range!");
  }
  EXPECT_FALSE(TakeDirty());
}

TEST_F(FieldFamilies, ProgramMethodsWithSpecialRules) {
  const ProgramRecord record(program);
  const auto expect = [&](bool dirty, const char* notifications) {
    EXPECT_EQ(TakeDirty(), dirty);
    EXPECT_EQ(TakeNotified(), notifications);
  };
  // A name of 12 bytes has no terminator; further bytes are ignored.
  program("PRGname", "short");
  EXPECT_EQ(program("PRGname", "twelve chars").Text(), "short");
  EXPECT_EQ(record->midiProg, 0) << "the byte after the name";
  expect(true, "");
  EXPECT_EQ(program("PRGname", "twelve chars and more").Text(), "twelve chars");
  expect(false, "");
  // These notify on every call, even without a change, and do not set the dirty flag.
  program("PRGmidiChannel", 5);
  program("PRGmidiChannel", 40);
  EXPECT_EQ(record->midiChannel, 5);
  expect(false, "3 5 -1 -1 3 40 -1 -1 ");
  EXPECT_EQ(program("PRGindyOutput", 200).Int(), -1);
  EXPECT_EQ(program("PRGindyOutput", -56).Int(), -56);
  expect(false, "10 -56 -1 -1 230 -56 -1 -1 10 -56 -1 -1 230 -56 -1 -1 ");
  // The count is compared and stored as 32 bits.
  EXPECT_EQ(program("PRGkeyGroups", 3 + 256).Int(), 3);
  EXPECT_EQ(record->keyGroups, 259);
  EXPECT_EQ(record->keyGroupsByte, 255);
  program("PRGkeyGroups", 259);
  EXPECT_EQ(program("PRGkeyGroups", -1).Int(), 259);
  EXPECT_EQ(program("KGtune", -1, 5).Int(), kDiffering) << "no keygroup is addressed";
  expect(true, "21 259 -1 -1 21 -1 -1 -1 ");
  // Storing detune values sets no dirty flag.
  const auto before = record.Image();
  EXPECT_EQ(program("PRGmasterDetune", 12, 200).Int(), 0);
  EXPECT_EQ(program("PRGmasterDetune", 12).Int(), -56);
  EXPECT_EQ(ProgramRecord::Changed(before, record.Image()), (std::vector<size_t>{56}));
  expect(false, "");
  for (const int index : {13, -1}) {
    ExpectArgValue(program("PRGmasterDetune", index, "x"), "Index", 1);
  }
}

TEST_F(FieldFamilies, TheProgramsOrganExtensionIsCreatedOnFirstUse) {
  for (const char* method : {"TolmoPRGreverb", "TolmoPRGstop_before_run"}) {
    program.Make();
    const ProgramRecord record(program);
    TakeDirty();
    EXPECT_FALSE(program(method, "1").Ok());
    EXPECT_FALSE(record->IsTolmoChunk()) << "a rejected call creates nothing";
    const int32_t initial = program(method).Int();
    ASSERT_TRUE(record->IsTolmoChunk());
    EXPECT_FALSE(TakeDirty()) << "reading changes nothing";
    EXPECT_EQ(program(method, 200).Int(), initial);
    EXPECT_TRUE(TakeDirty());
    program(method, 200 + 256);
    EXPECT_FALSE(TakeDirty());
    EXPECT_EQ(program(method).Int(), 200);
  }
  EXPECT_EQ(notified, "");
}

TEST_F(FieldFamilies, AStoreEnablesTheKeygroupsOrganExtension) {
  const ProgramRecord record(program);
  const auto on = [&] {
    std::string text;
    for (int k = 0; k < 3; ++k) text += record->keyGroupExtensions[k].library110[0] ? "1" : "0";
    return text;
  };
  program("KGSelect", 1, true);
  program("TolmoKGreverb", -1);
  EXPECT_EQ(on(), "000");
  program("TolmoKGreverb", -2, 3);
  EXPECT_EQ(on(), "010");
  EXPECT_EQ(program("TolmoKGreverb", -1, 3).Int(), kDiffering);
  EXPECT_EQ(on(), "111");
}

}  // namespace
}  // namespace zyl::test
