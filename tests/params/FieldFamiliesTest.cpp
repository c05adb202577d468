// Every field method of the method table, family by family: what each one may touch, answer, mark
// and send. The families are found by name, so that a method that is added is checked as well.
#include <functional>
#include <map>
#include <numeric>
#include <set>

#include "support/ProgramRecord.h"
#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

constexpr int32_t kDiffering = INT32_MIN;
constexpr int32_t kPattern = 0x5A5A5A5A;

std::vector<std::string> Family(const std::string& prefix, const std::set<std::string>& others) {
  std::vector<std::string> members;
  for (const ZylFuncInfo* row = ZylClassMethods("ZylSProgram"); row->name != nullptr; ++row) {
    const std::string name = row->name;
    if (name.rfind(prefix, 0) == 0 && others.count(name) == 0) members.push_back(name);
  }
  return members;
}
std::vector<std::string> RegularProgramMethods() {
  return Family("PRG", {"PRGname", "PRGmidiChannel", "PRGindyOutput", "PRGkeyGroups",
                        "PRGmasterDetune", "PRGmute", "PRGsolo", "PRGtmmute", "PRGtmMidiChannel",
                        "PRGIntValue", "PRGStringValue"});
}
std::vector<std::string> KeygroupMethods() {
  auto members = Family("KG", {"KGDelete", "KGCreate", "KGMove", "KGSort", "KGFindByKey",
                               "KGSelect", "KGIntValue", "KGStringValue"});
  members.insert(members.end(), {"TolmoKGreverb", "TolmoKGecho"});
  return members;
}
std::vector<std::string> RegularZoneMethods() {
  return Family("Zone", {"Zonename", "ZoneSamplePath", "ZoneSampleSet", "ZoneSampleExists",
                         "ZoneIntValue", "ZoneStringValue"});
}

// The value that a field of `bytes` bytes answers after all its bits were set.
bool IsAllOnes(int32_t value, size_t bytes) {
  return value == -1 || value == (bytes == 1 ? 0xFF : 0xFFFF);
}

class FieldFamilies : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    program.Make(3);
    program("Register", static_cast<RIOObject*>(&listener));
    listener["OnProgramParameterChanged"] = [this](ROCParams& arguments, ROCParam**) {
      ASSERT_EQ(arguments.count, 5);
      EXPECT_EQ(arguments.Entry(0)->Object(), program.Algo());
      EXPECT_EQ(arguments.Entry(3)->Int(), -1);
      EXPECT_EQ(arguments.Entry(4)->Int(), -1);
      sent.emplace_back(arguments.Entry(1)->Int(), arguments.Entry(2)->Int());
    };
  }
  bool TakeDirty() const { return program("Dirty", false).Bool(); }

  Program program;
  Listener listener;
  std::vector<std::pair<int32_t, int32_t>> sent;  // parameter number and new value
};

// A write of one field changes this one field, whole: no byte belongs to two methods.
class Ownership {
 public:
  void Claim(const std::string& method, const std::vector<size_t>& bytes) {
    ASSERT_TRUE(bytes.size() == 1 || bytes.size() == 2) << method << " changed " << bytes.size();
    EXPECT_EQ(bytes.back() - bytes.front(), bytes.size() - 1) << method << ": bytes lie apart";
    for (const size_t byte : bytes) {
      const auto [owner, fresh] = owners_.emplace(byte, method);
      EXPECT_TRUE(fresh) << method << " shares byte " << byte << " with " << owner->second;
    }
  }

 private:
  std::map<size_t, std::string> owners_;
};

TEST_F(FieldFamilies, AProgramFieldChangesItsOwnBytesAndTellsOnlyOfChanges) {
  const ProgramRecord record(program);
  Ownership ownership;
  std::set<int32_t> numbers;
  for (const std::string& name : RegularProgramMethods()) {
    SCOPED_TRACE(name);
    const char* method = name.c_str();
    const int32_t old = program(method).Int();
    EXPECT_EQ(program(method, 0).Int(), old);
    TakeDirty();
    sent.clear();
    const auto before = record.Image();
    EXPECT_EQ(program(method, kPattern).Int(), 0);
    const auto changed = ProgramRecord::Changed(before, record.Image());
    ownership.Claim(name, changed);
    EXPECT_TRUE(TakeDirty());
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_TRUE(numbers.insert(sent[0].first).second) << "number " << sent[0].first << " twice";
    EXPECT_EQ(sent[0].second, kPattern) << "the caller's own value is sent";
    // The bits that fit decide whether it is a change.
    const int32_t beyond = 1 << (8 * changed.size());
    EXPECT_EQ(program(method, kPattern + beyond).Int(), program(method).Int());
    EXPECT_FALSE(TakeDirty());
    EXPECT_EQ(sent.size(), 1u);
    program(method, -1);
    ExpectArgType(program(method, "7"), "NewValue", kTypeInteger, 1);
    EXPECT_TRUE(IsAllOnes(program(method).Int(), changed.size()));
  }
}

TEST_F(FieldFamilies, AKeygroupFieldIsStoredIntoTheAddressedKeygroupsAndNoOther) {
  const ProgramRecord record(program);
  for (int k = 0; k < 3; ++k) program("KGSelect", k, k != 1);
  Ownership ownership;
  for (const std::string& name : KeygroupMethods()) {
    SCOPED_TRACE(name);
    const char* method = name.c_str();
    const bool libraryStores = name == "KGresonance" || name == "KGfilterResonance";
    program(method, -1, 0);
    EXPECT_EQ(program(method, -1).Int(), 0);
    TakeDirty();
    const auto before = record.Image();
    EXPECT_EQ(program(method, 1, kPattern).Int(), 0);
    EXPECT_EQ(TakeDirty(), !libraryStores);
    const auto changed = ProgramRecord::Changed(before, record.Image());
    ownership.Claim(name, changed);
    for (const size_t byte : changed) EXPECT_EQ(record.KeygroupOf(byte), 1);
    // One of three differs; the selected two do not.
    EXPECT_EQ(program(method, -1).Int(), kDiffering);
    EXPECT_EQ(program(method, -2).Int(), 0);
    EXPECT_EQ(program(method, -7).Int(), 0) << "every index below -1 means the selected ones";
    EXPECT_EQ(program(method, -2, 3).Int(), 0);
    EXPECT_EQ(program(method, 0).Int(), 3);
    EXPECT_EQ(program(method, 1).Int() & 0xFF, kPattern & 0xFF);
    EXPECT_EQ(program(method, -1, -1).Int(), kDiffering);
    EXPECT_TRUE(IsAllOnes(program(method, -1).Int(), changed.size()));
    TakeDirty();
    program(method, -1, -1);
    EXPECT_EQ(TakeDirty(), !libraryStores) << "also when nothing changes";
    ExpectArgType(program(method, NullEntry{}, "7"), "KeyGroupIndex", kTypeInteger, 1);
    ExpectException(program(method, 3, "7"),
                    "ZylSProgram::" + name + ": Keygroup index out of range!");
    ExpectArgType(program(method, 0, "7"), "NewValue", kTypeInteger, 2);
    EXPECT_FALSE(TakeDirty());
  }
  EXPECT_TRUE(sent.empty()) << "keygroup fields are not announced";
}

TEST_F(FieldFamilies, WithoutAddressedKeygroupsTheMarkerIsRead) {
  program("KGSelect", -1, false);
  for (const std::string& name : KeygroupMethods()) {
    EXPECT_EQ(program(name.c_str(), -2).Int(), kDiffering) << name;
  }
  for (int k = 0; k < 3; ++k) program("KGDelete", 0);
  const ProgramRecord record(program);
  for (const std::string& name : KeygroupMethods()) {
    SCOPED_TRACE(name);
    TakeDirty();
    const auto before = record.Image();
    EXPECT_EQ(program(name.c_str(), -1, 5).Int(), kDiffering);
    EXPECT_EQ(TakeDirty(), name != "KGresonance" && name != "KGfilterResonance");
    EXPECT_EQ(before, record.Image());
  }
}

TEST_F(FieldFamilies, AZoneFieldChangesItsZoneOnly) {
  const ProgramRecord record(program);
  Ownership ownership;
  for (const std::string& name : RegularZoneMethods()) {
    SCOPED_TRACE(name);
    const char* method = name.c_str();
    for (int z = 0; z < kZones; ++z) {
      program(method, 2, z, 0);
      TakeDirty();
      const auto before = record.Image();
      EXPECT_EQ(program(method, 2, z, kPattern).Int(), 0);
      const auto changed = ProgramRecord::Changed(before, record.Image());
      ownership.Claim(name + " of zone " + std::to_string(z), changed);
      for (const size_t byte : changed) EXPECT_EQ(record.KeygroupOf(byte), 2);
      EXPECT_TRUE(TakeDirty());
      program(method, 2, z, kPattern + (1 << (8 * changed.size())));
      EXPECT_FALSE(TakeDirty()) << "what does not fit is no change";
      program(method, 2, z, -1);
      EXPECT_TRUE(IsAllOnes(program(method, 2, z).Int(), changed.size()));
    }
    const std::string index = "ZylSProgram::" + name + ": Keygroup index out of range!";
    const std::string zone = "ZylSProgram::" + name + ": Zone index out of range!";
    ExpectArgType(program(method, "0", 9), "KeyGroupIndex", kTypeInteger, 1);
    for (const int keygroup : {-1, 3}) ExpectException(program(method, keygroup, "9"), index);
    ExpectArgType(program(method, 0), "ZoneIndex", kTypeInteger, 2);
    for (const int outside : {-1, 4}) ExpectException(program(method, 0, outside, "7"), zone);
    TakeDirty();
    ExpectArgType(program(method, 0, 0, true), "NewValue", kTypeInteger, 3);
    EXPECT_FALSE(TakeDirty());
  }
  EXPECT_TRUE(sent.empty());
}

// Where a few fields lie, among them those at odd offsets, and how they are read back.
TEST_F(FieldFamilies, FieldsLieWhereOthersLookForThem) {
  const ProgramRecord record(program);
  struct Spot {
    const char* method;
    std::vector<int> index;
    size_t place;
    int32_t minusOne;
  };
  const size_t keygroup1 = record.KeygroupPlace(1);
  const size_t extension1 = record.ExtensionPlace(1);
  const Spot spots[] = {
      {"PRGtune", {}, 65, -1},
      {"PRGextTriggerThreshold", {}, 177, 255},
      {"KGtune", {1}, keygroup1 + 5, -1},
      {"KGresonance", {1}, keygroup1 + 149, 255},
      {"ZonetuneOffset", {1, 1}, keygroup1 + 34 + 24 + 14, -1},
      {"ZonevelStart", {1, 3}, keygroup1 + 146, -1},
      {"KGfilterResonance", {1}, extension1 + 62, 65535},
      {"TolmoKGecho", {1}, extension1 + 109, 255},
      {"ZoneTimeStretchOffset", {1, 3}, extension1 + 70, -1},
  };
  program("TolmoKGecho", -1, 1);
  for (const Spot& spot : spots) {
    SCOPED_TRACE(spot.method);
    const auto call = [&](std::optional<int> value) {
      ROCParams arguments;
      for (const int index : spot.index) arguments.AddTail(ToParam(index));
      if (value) arguments.AddTail(ToParam(*value));
      return CallList(program.Algo(), spot.method, &arguments).Int();
    };
    call(0);
    const auto before = record.Image();
    call(-1);
    const auto changed = ProgramRecord::Changed(before, record.Image());
    ASSERT_FALSE(changed.empty());
    EXPECT_EQ(changed.front(), spot.place);
    EXPECT_EQ(call(std::nullopt), spot.minusOne);
  }
}

TEST_F(FieldFamilies, WithoutAProgramEveryMethodSaysSo) {
  const Program empty;
  for (const char* prefix : {"PRG", "KG", "Zone", "Tolmo", "FileName", "SetUnique", "Write"}) {
    for (const std::string& name : Family(prefix, {"WriteDataToPad", "WriteSampleToPad"})) {
      const Outcome outcome = empty(name.c_str(), "wrong", "wrong", 1.5);
      ExpectException(outcome,
                      "ZylSProgram::" + name + ": No program loaded. Method can not execute!");
    }
  }
}

TEST_F(FieldFamilies, SomeProgramMethodsFollowRulesOfTheirOwn) {
  const ProgramRecord record(program);
  using Sent = std::vector<std::pair<int32_t, int32_t>>;
  const auto expect = [&](bool dirty, const Sent& notifications) {
    EXPECT_EQ(TakeDirty(), dirty);
    EXPECT_EQ(std::exchange(sent, {}), notifications);
  };
  TakeDirty();
  // A name of 12 bytes has no end mark; what comes after them makes no difference.
  program("PRGname", "short");
  expect(true, {});
  EXPECT_EQ(program("PRGname", "twelve chars").Text(), "short");
  EXPECT_EQ(record->midiProg, 0) << "the byte behind the name";
  expect(true, {});
  EXPECT_EQ(program("PRGname", "twelve chars and more").Text(), "twelve chars");
  expect(false, {});
  // These tell of every call, also when nothing changes, and leave no mark.
  program("PRGmidiChannel", 5);
  program("PRGmidiChannel", 40);
  EXPECT_EQ(record->midiChannel, 5);
  expect(false, {{3, 5}, {3, 40}});
  EXPECT_EQ(program("PRGindyOutput", 200).Int(), -1);
  EXPECT_EQ(program("PRGindyOutput", -56).Int(), -56);
  expect(false, {{10, -56}, {230, -56}, {10, -56}, {230, -56}});
  // The count is compared and stored whole.
  EXPECT_EQ(program("PRGkeyGroups", 3 + 256).Int(), 3);
  EXPECT_EQ(record->keyGroups, 259);
  EXPECT_EQ(record->keyGroupsByte, 255);
  program("PRGkeyGroups", 259);
  EXPECT_EQ(program("PRGkeyGroups", -1).Int(), 259);
  EXPECT_EQ(program("KGtune", -1, 5).Int(), kDiffering) << "there are none to be reached";
  expect(true, {{21, 259}, {21, -1}});
  // The detune values are stored as they come.
  const auto before = record.Image();
  EXPECT_EQ(program("PRGmasterDetune", 12, 200).Int(), 0);
  EXPECT_EQ(program("PRGmasterDetune", 12).Int(), -56);
  EXPECT_EQ(ProgramRecord::Changed(before, record.Image()), (std::vector<size_t>{56}));
  expect(false, {});
  ExpectArgType(program("PRGmasterDetune"), "Index", kTypeInteger, 1);
  ExpectArgValue(program("PRGmasterDetune", 13, "x"), "Index", 1);
  ExpectArgValue(program("PRGmasterDetune", -1), "Index", 1);
  ExpectArgType(program("PRGmasterDetune", 0, "x"), "NewValue", kTypeInteger, 2);
  ExpectArgType(program("PRGname", 1), "NewString", kTypeString, 1);
}

TEST_F(FieldFamilies, TheProgramsOrganExtensionAppearsAtTheFirstTouch) {
  for (const std::string& name : Family("TolmoPRG", {})) {
    SCOPED_TRACE(name);
    const char* method = name.c_str();
    program.Make();
    const ProgramRecord record(program);
    TakeDirty();
    ExpectArgType(program(method, "1"), "NewValue", kTypeInteger, 1);
    EXPECT_FALSE(record->IsTolmoChunk()) << "a refused call creates nothing";
    const int32_t initial = program(method).Int();
    ASSERT_TRUE(record->IsTolmoChunk());
    EXPECT_FALSE(TakeDirty()) << "reading is no change";
    const TolmoChunk before = *record->tolmoChunk;
    EXPECT_EQ(program(method, 200).Int(), initial);
    EXPECT_TRUE(TakeDirty());
    const auto* was = reinterpret_cast<const uint8_t*>(&before);
    const auto* is = reinterpret_cast<const uint8_t*>(record->tolmoChunk.get());
    const auto differs = std::not_equal_to<>();
    EXPECT_EQ(std::inner_product(was, was + sizeof before, is, 0, std::plus<>(), differs), 1);
    const int32_t value = program(method, 200 + 256).Int();
    EXPECT_TRUE(value == 200 || value == -56) << value;
    EXPECT_FALSE(TakeDirty());
  }
  EXPECT_TRUE(sent.empty());
  program("TolmoPRGattack", 200);
  EXPECT_EQ(program("TolmoPRGattack").Int(), -56);
  program("TolmoPRGstop_before_run", 200);
  EXPECT_EQ(ProgramRecord(program)->tolmoChunk->stop_before_run, 200);
}

TEST_F(FieldFamilies, AKeygroupsOrganExtensionIsSwitchedOnWhereItIsWritten) {
  const ProgramRecord record(program);
  const auto isOn = [&](int k) { return record->keyGroupExtensions[k].library110[0] != 0; };
  program("KGSelect", 1, true);
  program("TolmoKGreverb", -1);
  EXPECT_FALSE(isOn(0) || isOn(1) || isOn(2));
  program("TolmoKGreverb", -2, 3);
  EXPECT_TRUE(!isOn(0) && isOn(1) && !isOn(2));
  EXPECT_EQ(program("TolmoKGreverb", -1, 3).Int(), kDiffering);
  EXPECT_TRUE(isOn(0) && isOn(1) && isOn(2));
  EXPECT_FALSE(record->IsTolmoChunk()) << "the program's own is another matter";
}

}  // namespace
}  // namespace zyl::test
