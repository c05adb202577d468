// How every method reads its arguments, and what it leaves alone when one of them is wrong.
#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

using Arguments = ModuleTest;

constexpr char kNoProgram[] = ": No program loaded. Method can not execute!";

TEST_F(Arguments, ANullListHasNoArguments) {
  const Program program;
  EXPECT_EQ(CallList(program.Algo(), "MaxIndyOut", nullptr).Int(), 0);
  ExpectArgType(CallList(program.Algo(), "Read", nullptr), "PrgName", kTypeString, 1);
}

TEST_F(Arguments, ANullEntryIsAbsentAndLaterOnesAreStillRead) {
  const Program program;
  program.Make();
  ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
  EXPECT_TRUE(program("Read", Path("p.zprg"), NullEntry{}, 7).Bool());
  EXPECT_EQ(program("PRGmidiChannel").Int(), 7);
  EXPECT_EQ(program("MaxIndyOut", NullEntry{}).Int(), 0);
  ExpectArgType(program("Read", NullEntry{}, 1, 7), "PrgName", kTypeString, 1);
}

TEST_F(Arguments, EntriesBeyondTheTwelfthComeFromTheOverflowPart) {
  ROCParam* last = newROCParam(14);
  last->AddReference();
  {
    ROCParams list;
    for (int i = 1; i <= 12; ++i) list.AddTail(newROCParam(i));
    list.AddTail(nullptr);
    list.AddTail(last);
    EXPECT_EQ(list.count, 14);
    EXPECT_EQ(list.Entry(11)->Int(), 12);
    EXPECT_EQ(list.Entry(12), nullptr);
    EXPECT_EQ(list.Entry(13)->Int(), 14);
    EXPECT_EQ(list.Entry(14), nullptr);
    EXPECT_EQ(list.Entry(-1), nullptr);
    const Program program;
    EXPECT_EQ(CallList(program.Algo(), "MaxIndyOut", &list).Int(), 0);
    EXPECT_EQ(program("MaxIndyOut").Int(), 1);
  }
  EXPECT_TRUE(last->DropReference()) << "the list did not give its reference back";
  delete last;
}

TEST_F(Arguments, AWrongTypeIsReportedByNameTypeAndPositionAndStoresNothing) {
  const Program program;
  program.Make();
  struct {
    const char* method;
    const char* argument;
    int expected;
  } const rows[] = {
      {"Dirty", "NewDirty", kTypeBool},          {"EnableRegisterCall", "Enable", kTypeBool},
      {"MaxIndyOut", "NewMaxIndyOut", kTypeInteger}, {"PRGmute", "Mute", kTypeInteger},
      {"PRGtmmute", "Mute", kTypeInteger},       {"PRGsolo", "Solo", kTypeInteger},
      {"PRGtmMidiChannel", "MidiChannel", kTypeInteger},
      {"Register", "RegisterModule", kTypeObject},
      {"Create", "ProgramToCopy", kTypeObject},
      {"GetUsedPhysicalMemory", "Locked", kTypeBool},
      {"KGSelect", "KeyGroupIndex", kTypeInteger},
      {"KGMove", "From", kTypeInteger},          {"KGSort", "SortByData", kTypeInteger},
      {"KGFindByKey", "KeyToFind", kTypeInteger}, {"KGCreate", "NewIndex", kTypeInteger},
      {"KGDelete", "KeyGroupIndex", kTypeInteger},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.method);
    const Outcome before = program(row.method);
    const Outcome outcome = program(row.method, "text");
    ExpectArgType(outcome, row.argument, row.expected, 1);
    EXPECT_EQ(outcome.error->method, std::string("ZylSProgram::") + row.method);
    const Outcome after = program(row.method);
    if (before.result != nullptr) {
      EXPECT_TRUE(*before.result == *after.result);
    }
  }
  ExpectArgType(program("Read", 5), "PrgName", kTypeString, 1);
  ExpectArgType(program("Read", "x", true), "LoadSmpl", kTypeInteger, 2);
  ExpectArgType(program("Read", "x", 1, "y"), "MC", kTypeInteger, 3);
  ExpectArgType(program("Find", "x", 0.5), "MC", kTypeInteger, 2);
  ExpectArgType(program("Create", NullObject{}, 1), "CopySamples", kTypeBool, 2);
  ExpectArgType(program("Write", 1), "PrgPath", kTypeString, 1);
  ExpectArgType(program("Write", "x", NullEntry{}), "WriteMode", kTypeInteger, 2);
  ExpectArgType(program("FileName", 1), "NewFileName", kTypeString, 1);
  ExpectArgType(program("GetSFPresetArray", "x"), "ResultArray", kTypeArray, 2);
  ExpectArgType(program("KGMove", 0), "To", kTypeInteger, 2);
  ExpectArgType(program("KGSort", 100), "Direction", kTypeInteger, 2);
  ExpectArgType(program("KGFindByKey", 0, "x"), "StartAt", kTypeInteger, 2);
  ExpectArgType(program("KGCreate", 0, 1), "ProgramToCopy", kTypeObject, 2);
  ExpectArgType(program("KGSelect", -1, 1), "SelectFlag", kTypeBool, 2);
  EXPECT_TRUE(program("IsValid").Bool()) << "a refused call detached the program";
}

TEST_F(Arguments, AnObjectOfTheWrongClassIsNamedAndANullOneIsAWrongValue) {
  const Program program;
  program.Make();
  const std::unique_ptr<RIOObject> brush(ZylNewPlainObject("SolidColor"));
  ExpectArgPType(program("Register", brush.get()), "SolidColor", "ROCAlgo", 1);
  ExpectArgValue(program("Register", NullObject{}), "RegisterModule", 1);
  ExpectArgPType(program("Create", brush.get()), "SolidColor", "ROCAlgo", 1);
  ExpectArgPType(program("KGCreate", 0, brush.get()), "SolidColor", "ROCAlgo", 2);
  EXPECT_EQ(program("KGFindByKey", 60).Int(), 0) << "a refused call detached the program";
}

TEST_F(Arguments, WithoutAProgramMethodsThatNeedOneSaySo) {
  const Program program;
  for (const char* method : {"PRGmute", "PRGtmmute", "PRGsolo", "PRGtmMidiChannel", "Write",
                             "SetUniqueFilePath", "FileName", "KGSelect", "KGMove", "KGSort",
                             "KGFindByKey", "KGCreate", "KGDelete", "PRGpoly"}) {
    // Also with arguments of no use: the program is looked for first.
    ExpectException(program(method, 0.5), std::string("ZylSProgram::") + method + kNoProgram);
  }
  EXPECT_FALSE(program("IsValid").Bool());
  EXPECT_FALSE(program("IsLocked").Bool());
  EXPECT_FALSE(program("Dirty").Bool());
  EXPECT_TRUE(program("PrepareDelete").Ok());
}

}  // namespace
}  // namespace zyl::test
