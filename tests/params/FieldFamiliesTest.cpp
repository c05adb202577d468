// Every field method: the bytes it changes, the dirty mark and the notification. The families are
// found by name, so that new methods are checked as well.
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

bool LibraryStores(const std::string& name) {
  return name == "KGresonance" || name == "KGfilterResonance";
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

TEST_F(FieldFamilies, AStoreChangesTheFieldsOwnBytesMarksDirtyAndNotifies) {
  const ProgramRecord record(program);
  struct Level {
    std::vector<std::string> methods;
    std::vector<int> place;
  };
  std::vector<Level> levels = {{RegularProgramMethods(), {}}, {KeygroupMethods(), {1}}};
  for (int z = 0; z < kZones; ++z) levels.push_back({RegularZoneMethods(), {1, z}});
  const size_t keygroup = record.KeygroupPlace(1);
  const size_t extension = record.ExtensionPlace(1);
  // Zone fields: the offset in the last zone.
  std::map<std::string, size_t> offsets = {{"PRGtune", 65},
                                           {"PRGextTriggerThreshold", 177},
                                           {"KGtune", keygroup + 5},
                                           {"KGresonance", keygroup + 149},
                                           {"ZonetuneOffset", keygroup + 34 + 3 * 24 + 14},
                                           {"ZonevelStart", keygroup + 146},
                                           {"KGfilterResonance", extension + 62},
                                           {"TolmoKGecho", extension + 109},
                                           {"ZoneTimeStretchOffset", extension + 70}};
  std::map<std::string, size_t> found;
  std::map<size_t, std::string> owners;
  std::set<int32_t> numbers;
  program("TolmoKGecho", -1, 1);
  for (const Level& level : levels) {
    for (const std::string& name : level.methods) {
      SCOPED_TRACE(name + " " + testing::PrintToString(level.place));
      const auto call = [&](std::optional<int32_t> value) {
        ROCParams arguments;
        for (const int index : level.place) arguments.AddTail(ToParam(index));
        if (value) arguments.AddTail(ToParam(*value));
        return CallList(program.Algo(), name.c_str(), &arguments).Int();
      };
      call(0);
      TakeDirty();
      sent.clear();
      const auto before = record.Image();
      EXPECT_EQ(call(kPattern), 0);
      const auto changed = ProgramRecord::Changed(before, record.Image());
      ASSERT_TRUE(changed.size() == 1 || changed.size() == 2) << changed.size();
      EXPECT_EQ(changed.back() - changed.front(), changed.size() - 1);
      for (const size_t byte : changed) {
        EXPECT_EQ(record.KeygroupOf(byte), level.place.empty() ? -1 : 1);
        const auto [owner, fresh] = owners.emplace(byte, name);
        EXPECT_TRUE(fresh) << "shares byte " << byte << " with " << owner->second;
      }
      found[name] = changed.front();
      EXPECT_EQ(TakeDirty(), !LibraryStores(name));
      EXPECT_EQ(sent.size(), level.place.empty() ? 1u : 0u);
      for (const auto& [number, value] : sent) {
        EXPECT_TRUE(numbers.insert(number).second) << "number " << number << " twice";
        EXPECT_EQ(value, kPattern) << "the caller's value is sent untruncated";
      }
      // A value that differs only in bits that the field drops is no change, except for keygroups,
      // where every store marks the program.
      call(kPattern + (1 << (8 * changed.size())));
      EXPECT_EQ(TakeDirty(), level.place.size() == 1 && !LibraryStores(name));
      EXPECT_LE(sent.size(), 1u);
      call(-1);
      const int32_t ones = call({});
      EXPECT_TRUE(ones == -1 || ones == (changed.size() == 1 ? 0xFF : 0xFFFF)) << ones;
    }
  }
  for (const auto& [name, offset] : offsets) EXPECT_EQ(found[name], offset) << name;
}

TEST_F(FieldFamilies, AKeygroupIndexAddressesOneAllOrTheSelected) {
  for (int k = 0; k < 3; ++k) program("KGSelect", k, k != 2);
  for (const std::string& name : KeygroupMethods()) {
    SCOPED_TRACE(name);
    const char* method = name.c_str();
    program(method, -1, 0);
    EXPECT_EQ(program(method, -1).Int(), 0);
    program(method, 2, kPattern);
    EXPECT_EQ(program(method, -1).Int(), kDiffering);
    EXPECT_EQ(program(method, -2).Int(), 0);
    EXPECT_EQ(program(method, -7).Int(), 0) << "every index below -1 means the selected ones";
    EXPECT_EQ(program(method, -2, 3).Int(), 0);
    for (const int k : {0, 1}) EXPECT_EQ(program(method, k).Int(), 3);
    EXPECT_EQ(program(method, 2).Int() & 0xFF, kPattern & 0xFF);
  }
  EXPECT_TRUE(sent.empty()) << "keygroup fields are not announced";
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
    EXPECT_EQ(TakeDirty(), !LibraryStores(name)) << "also when nothing changes";
    EXPECT_EQ(before, record.Image());
  }
}

TEST_F(FieldFamilies, IndexesOutsideTheProgramAreRefusedBeforeTheValueIsRead) {
  TakeDirty();
  for (const std::string& name : KeygroupMethods()) {
    ExpectException(program(name.c_str(), 3, "7"),
                    "ZylSProgram::" + name + ": Keygroup index out of range!");
  }
  for (const std::string& name : RegularZoneMethods()) {
    const std::string start = "ZylSProgram::" + name;
    for (const int keygroup : {-1, 3}) {
      ExpectException(program(name.c_str(), keygroup, "9"),
                      start + ": Keygroup index out of range!");
    }
    for (const int zone : {-1, 4}) {
      ExpectException(program(name.c_str(), 0, zone, "7"), start + ": Zone index out of range!");
    }
  }
  EXPECT_FALSE(TakeDirty());
}

TEST_F(FieldFamilies, WithoutAProgramMethodsReportIt) {
  const Program empty;
  for (const char* prefix : {"PRG", "KG", "Zone", "Tolmo", "FileName", "SetUnique", "Write",
                             "ListFill", "DrawKey", "UpdateKey", "CalcKey", "CalcProgram",
                             "ClearProgram", "SampleIntValue", "SampleStringValue"}) {
    for (const std::string& name : Family(prefix, {"WriteDataToPad", "WriteSampleToPad"})) {
      const Outcome outcome = empty(name.c_str(), "wrong", "wrong", 1.5);
      ExpectException(outcome,
                      "ZylSProgram::" + name + ": No program loaded. Method can not execute!");
    }
  }
}

TEST_F(FieldFamilies, ProgramMethodsWithSpecialRules) {
  const ProgramRecord record(program);
  using Sent = std::vector<std::pair<int32_t, int32_t>>;
  const auto expect = [&](bool dirty, const Sent& notifications) {
    EXPECT_EQ(TakeDirty(), dirty);
    EXPECT_EQ(std::exchange(sent, {}), notifications);
  };
  TakeDirty();
  // A name of 12 bytes has no terminator; further bytes are ignored.
  program("PRGname", "short");
  expect(true, {});
  EXPECT_EQ(program("PRGname", "twelve chars").Text(), "short");
  EXPECT_EQ(record->midiProg, 0) << "the byte after the name";
  expect(true, {});
  EXPECT_EQ(program("PRGname", "twelve chars and more").Text(), "twelve chars");
  expect(false, {});
  // These announce every call, even without a change, and do not mark the program dirty.
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
  EXPECT_EQ(program("KGtune", -1, 5).Int(), kDiffering) << "no keygroup is addressed";
  expect(true, {{21, 259}, {21, -1}});
  // Detune values are stored without a mark.
  const auto before = record.Image();
  EXPECT_EQ(program("PRGmasterDetune", 12, 200).Int(), 0);
  EXPECT_EQ(program("PRGmasterDetune", 12).Int(), -56);
  EXPECT_EQ(ProgramRecord::Changed(before, record.Image()), (std::vector<size_t>{56}));
  expect(false, {});
  ExpectArgValue(program("PRGmasterDetune", 13, "x"), "Index", 1);
  ExpectArgValue(program("PRGmasterDetune", -1), "Index", 1);
}

TEST_F(FieldFamilies, TheProgramsOrganExtensionIsCreatedOnFirstUse) {
  for (const std::string& name : Family("TolmoPRG", {})) {
    SCOPED_TRACE(name);
    const char* method = name.c_str();
    program.Make();
    const ProgramRecord record(program);
    TakeDirty();
    EXPECT_FALSE(program(method, "1").Ok());
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
    program(method, 200 + 256);
    EXPECT_FALSE(TakeDirty());
  }
  EXPECT_TRUE(sent.empty());
  program("TolmoPRGstop_before_run", 200);
  EXPECT_EQ(ProgramRecord(program)->tolmoChunk->stop_before_run, 200);
}

TEST_F(FieldFamilies, AKeygroupsOrganExtensionIsSwitchedOnByAStore) {
  const ProgramRecord record(program);
  const auto isOn = [&](int k) { return record->keyGroupExtensions[k].library110[0] != 0; };
  program("KGSelect", 1, true);
  program("TolmoKGreverb", -1);
  EXPECT_FALSE(isOn(0) || isOn(1) || isOn(2));
  program("TolmoKGreverb", -2, 3);
  EXPECT_TRUE(!isOn(0) && isOn(1) && !isOn(2));
  EXPECT_EQ(program("TolmoKGreverb", -1, 3).Int(), kDiffering);
  EXPECT_TRUE(isOn(0) && isOn(1) && isOn(2));
}

}  // namespace
}  // namespace zyl::test
