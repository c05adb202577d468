// How every method reads its arguments, and what it leaves alone when one of them is wrong.
#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

using Arguments = ModuleTest;

constexpr char kNoProgram[] = ": No program loaded. Method can not execute!";

TEST_F(Arguments, WhatIsNotThereIsAbsentAndLaterEntriesAreStillRead) {
  const Program program;
  EXPECT_EQ(CallList(program.Algo(), "MaxIndyOut", nullptr).Int(), 0);
  ExpectArgType(CallList(program.Algo(), "Read", nullptr), "PrgName", kTypeString, 1);
  program.Make();
  ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
  EXPECT_TRUE(program("Read", Path("p.zprg"), NullEntry{}, 7).Bool());
  EXPECT_EQ(program("PRGmidiChannel").Int(), 7);
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
    EXPECT_EQ(list.Entry(12), nullptr);
    EXPECT_EQ(list.Entry(13)->Int(), 14);
    EXPECT_EQ(list.Entry(14), nullptr);
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
  const Program& p = program;
  struct {
    Outcome outcome;
    const char* argument;
    int expected;
    int position;
  } const rows[] = {
      {p("Dirty", 1), "NewDirty", kTypeBool, 1},
      {p("MaxIndyOut", 8.0), "NewMaxIndyOut", kTypeInteger, 1},
      {p("PRGmute", true), "Mute", kTypeInteger, 1},
      {p("Register", 1), "RegisterModule", kTypeObject, 1},
      {p("Create"), "ProgramToCopy", kTypeObject, 1},
      {p("Create", NullObject{}, 1), "CopySamples", kTypeBool, 2},
      {p("Read", "x", 1, "y"), "MC", kTypeInteger, 3},
      {p("Find", "x", 0.5), "MC", kTypeInteger, 2},
      {p("Write", "x", NullEntry{}), "WriteMode", kTypeInteger, 2},
      {p("FileName", 1), "NewFileName", kTypeString, 1},
      {p("GetUsedPhysicalMemory", 1), "Locked", kTypeBool, 1},
      {p("GetSFPresetArray", "x"), "ResultArray", kTypeArray, 2},
      {p("KGSelect", -1, 1), "SelectFlag", kTypeBool, 2},
      {p("KGMove", 0), "To", kTypeInteger, 2},
      {p("KGSort", 100), "Direction", kTypeInteger, 2},
      {p("KGFindByKey", 0, "x"), "StartAt", kTypeInteger, 2},
      {p("KGCreate", 0, 1), "ProgramToCopy", kTypeObject, 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.argument);
    ExpectArgType(row.outcome, row.argument, row.expected, row.position);
  }
  EXPECT_EQ(rows[1].outcome.error->method, "ZylSProgram::MaxIndyOut");
  EXPECT_EQ(p("MaxIndyOut").Int() + p("PRGmute").Int() + p("PRGsolo").Int(), 0);
  EXPECT_TRUE(p("EnableRegisterCall").Bool());
  EXPECT_EQ(p("PRGkeyGroups").Int(), 1) << "a refused call changed or detached the program";
}

TEST_F(Arguments, AnObjectOfTheWrongClassIsNamedAndANullOneIsAWrongValue) {
  const Program program;
  program.Make();
  const std::unique_ptr<RIOObject> brush(ZylNewPlainObject("SolidColor"));
  ExpectArgPType(program("Register", brush.get()), "SolidColor", "ROCAlgo", 1);
  ExpectArgValue(program("Register", NullObject{}), "RegisterModule", 1);
  ExpectArgPType(program("Create", brush.get()), "SolidColor", "ROCAlgo", 1);
  ExpectArgPType(program("KGCreate", 0, brush.get()), "SolidColor", "ROCAlgo", 2);
  EXPECT_TRUE(program("IsValid").Bool()) << "a refused call detached the program";
}

TEST_F(Arguments, WithoutAProgramMethodsThatNeedOneSaySo) {
  const Program program;
  for (const char* method : {"PRGmute", "PRGtmmute", "PRGsolo", "PRGtmMidiChannel", "Write",
                             "SetUniqueFilePath", "FileName", "KGSelect", "KGMove", "KGSort",
                             "KGFindByKey", "KGCreate", "KGDelete", "PRGpoly"}) {
    // Also with arguments of no use: the program is looked for first.
    ExpectException(program(method, 0.5), std::string("ZylSProgram::") + method + kNoProgram);
  }
  for (const char* method : {"IsValid", "IsLocked", "Dirty"}) EXPECT_FALSE(program(method).Bool());
}

}  // namespace
}  // namespace zyl::test
