// How every method reads its arguments, and what it leaves alone when one of them is wrong.
#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

using Arguments = ModuleTest;

TEST_F(Arguments, WhatIsNotThereIsAbsentAndLaterEntriesAreStillRead) {
  const Program program;
  EXPECT_EQ(CallList(program.Algo(), "MaxIndyOut", nullptr).Int(), 0);
  ExpectArgType(CallList(program.Algo(), "Read", nullptr), "PrgName", kTypeString, 1);
  program.Make();
  ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
  EXPECT_TRUE(program("Read", Path("p.zprg"), NullEntry{}, 7).Bool());
  EXPECT_EQ(program("PRGmidiChannel").Int(), 7);
}

TEST_F(Arguments, AWrongTypeIsReportedByNameTypeAndPositionAndStoresNothing) {
  WriteWave(Path("a.wav"), {{1, 2}});
  const Program p;
  p.Make();
  p("ZoneSampleSet", 0, 0, Path("a.wav"));
  RIOObject* sample = p("SampleGet", 0, 0).Object();
  struct {
    Outcome outcome;
    const char* argument;
    int expected;
    int position;
  } const rows[] = {
      {p("Dirty", 1), "NewDirty", kTypeBool, 1},
      {p("MaxIndyOut", 8.0), "NewMaxIndyOut", kTypeInteger, 1},
      {p("Register", 1), "RegisterModule", kTypeObject, 1},
      {p("Create"), "ProgramToCopy", kTypeObject, 1},
      {p("Create", NullObject{}, 1), "CopySamples", kTypeBool, 2},
      {p("Read", "x", 1, "y"), "MC", kTypeInteger, 3},
      {p("GetSFPresetArray", "x"), "ResultArray", kTypeArray, 2},
      {p("KGSelect", -1, 1), "SelectFlag", kTypeBool, 2},
      {p("ZoneSampleSet", 0, 0, 1.5), "NewSample", kTypeString, 3},
      {p("SampleLock", sample, 1), "NewValue", kTypeBool, 2},
      {p("SampleLock", sample, true, true), "TempSample", kTypeInteger, 3},
      {p("SampleFileName", sample, 1), "NewValue", kTypeString, 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.argument);
    ExpectArgType(row.outcome, row.argument, row.expected, row.position);
  }
  EXPECT_EQ(rows[1].outcome.error->method, "ZylSProgram::MaxIndyOut");
  EXPECT_EQ(p("MaxIndyOut").Int(), 0);
  EXPECT_FALSE(p("SampleLock", sample).Bool());
  EXPECT_TRUE(p("EnableRegisterCall").Bool());
  EXPECT_EQ(p("PRGkeyGroups").Int(), 1) << "a refused call changed or detached the program";
}

TEST_F(Arguments, AnObjectOfTheWrongClassIsNamedAndANullOneIsAWrongValue) {
  const Program program;
  program.Make();
  const std::unique_ptr<RIOObject> brush(ZylNewPlainObject("SolidColor"));
  for (const char* method : {"Register", "Create"}) {
    ExpectArgPType(program(method, brush.get()), "SolidColor", "ROCAlgo", 1);
  }
  ExpectArgValue(program("Register", NullObject{}), "RegisterModule", 1);
  ExpectArgPType(program("KGCreate", 0, brush.get()), "SolidColor", "ROCAlgo", 2);
  EXPECT_TRUE(program("IsValid").Bool()) << "a refused call detached the program";
}

TEST_F(Arguments, AreReadBeforeACallbackCanChangeTheCallersVariables) {
  WriteWave(Path("a.wav"), {{1, 2}});
  const Program p;
  p.Make(2);
  const ROCParamPtr path(newROCParam(""));
  const ROCParamPtr number(newROCParam(0));
  Listener listener;
  const auto change = [&](ROCParams&, ROCParam**) {
    *path = ROCParam(true);
    *number = ROCParam("a text in place of a number");
  };
  listener["OnDeletingSmpl"] = change;
  listener["OnProgramParameterChanged"] = change;
  p("Register", &listener);
  p("ZoneSampleSet", 0, 0, Path("a.wav"));
  ASSERT_NE(p("SampleGet", 0, 0).Object(), nullptr);
  *path = ROCParam(std::string_view(Path("a.wav")));
  EXPECT_TRUE(p("ZoneSampleSet", number.get(), 0, path.get()).Ok());
  EXPECT_EQ(path->Type(), kTypeBool) << "the callback was called";
  EXPECT_TRUE(p("ZoneSampleExists", 0, 0).Bool());
  // The new value is stored in both keygroups although the first notice changes the variable.
  *number = ROCParam(3);
  EXPECT_TRUE(p("MaxIndyOut", 8).Ok());
  EXPECT_TRUE(p("ZoneIntValue", -1, 1, 230, number.get()).Ok());
  EXPECT_EQ(number->Type(), kTypeString);
  for (const int k : {0, 1}) EXPECT_EQ(p("ZoneIntValue", k, 1, 230).Int(), 3);
}

}  // namespace
}  // namespace zyl::test
