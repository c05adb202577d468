// The class, its objects and their arguments: registration, channels and masks, flags, reading.
#include <cstdio>
#include <set>

#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

using ProgramObject = ModuleTest;

uint32_t MaskOf(const Program& program) {
  return static_cast<uint32_t>(program("PRGtmMidiChannel").Int());
}

TEST_F(ProgramObject, TheMaskCombinesTheChannelsOfARecordsObjects) {
  const Program first;
  first.Make();
  first("PRGname", "shared");
  first("PRGmidiChannel", 0);
  Program second;
  ASSERT_TRUE(second("Find", "shared", 5).Bool());
  EXPECT_EQ(MaskOf(first), 0x21u);
  const Program other;  // has another record
  other.Make();
  other("PRGmidiChannel", 9);
  second("PRGmidiChannel", -7);
  EXPECT_EQ(second("PRGmidiChannel").Int(), -1);
  EXPECT_EQ(MaskOf(first), 0xFFFFFFFFu);
  second.Delete();
  EXPECT_EQ(MaskOf(first), 0x1u);
  const Program third;
  ASSERT_TRUE(third("Find", "shared", 5).Bool());
  third("Create", NullObject{});
  EXPECT_EQ(MaskOf(first), 0x1u) << "an object that attached another record still counts";
  EXPECT_EQ(first("PRGtmMidiChannel", 6).Int(), 1);
  EXPECT_EQ(MaskOf(first), 6u) << "a stored mask is kept until the channel changes";
  first("PRGmidiChannel", 31);
  first("PRGmidiChannel", 32);  // rejected
  EXPECT_EQ(MaskOf(first), 0x80000000u);
}

TEST_F(ProgramObject, PlainFieldsDoNotNotify) {
  const Program program;
  program.Make();
  const std::string path = program("SetUniqueFilePath").Text();
  EXPECT_EQ(program("FileName").Text(), path);
  Listener listener;
  int calls = 0;
  listener["OnProgramParameterChanged"] = [&](ROCParams&, ROCParam**) { ++calls; };
  program("Register", &listener);
  for (const char* method : {"PRGmute", "PRGtmmute", "PRGsolo"}) {
    EXPECT_EQ(program(method, -70).Int(), 0);
    EXPECT_EQ(program(method).Int(), 186);
  }
  EXPECT_EQ(calls, 0);
  EXPECT_FALSE(program("Dirty").Bool());
}

TEST_F(ProgramObject, DirtyIncludesTheSamplesOfTheKeygroups) {
  WriteWave(Path("a.wav"), {{1, 2, 3}});
  const Program program;
  program.Make(3);
  program("ZoneSampleSet", 2, 3, Path("a.wav"));
  EXPECT_TRUE(program("Dirty", false).Bool());
  EXPECT_FALSE(program("Dirty").Bool());
  program("SampleDirty", 2, 3, true);
  EXPECT_TRUE(program("Dirty", false).Bool());
  EXPECT_TRUE(program("Dirty").Bool())
      << "clearing the program object's flag keeps that of the sample";
  program("PRGkeyGroups", 2);
  program("Dirty", false);
  EXPECT_FALSE(program("Dirty").Bool()) << "a keygroup beyond the count was checked";
}

TEST_F(ProgramObject, LockAllLocksRecordsWhileTheyAreAttached) {
  std::ofstream(Path("profile")) << "; comment\n[Other]\nLockAll=0\n[sampler]\nlockall = 2\n";
  LoadModule(Path("profile"));
  WriteWave(Path("a.wav"), {std::vector<int16_t>(1000)});
  {
    const Program first;
    first.Make();
    first("PRGname", "locked");
    EXPECT_TRUE(first("IsLocked").Bool());
    const int record = getTotalLockedMem();
    EXPECT_EQ(record, getTotalMem());
    first("ZoneSampleSet", 0, 0, Path("a.wav"));
    EXPECT_EQ(getTotalLockedMem(), record + 2000) << "a sample of a locked program is locked too";
    Program second;
    ASSERT_TRUE(second("Find", "locked").Bool());
    second("KGCreate", 0);  // the locked arrays move
    EXPECT_EQ(first("GetUsedPhysicalMemory").Int(), getTotalLockedMem());
    akaiProgram* held = findAkaiProgram(0, "locked");
    EXPECT_EQ(held->lockCount, 2u);
    second.Delete();
    EXPECT_EQ(held->lockCount, 1u);
    ASSERT_TRUE(first("Write", Path("p.zprg")).Bool());
    ASSERT_TRUE(first("Create", NullObject{}).Bool());
    EXPECT_EQ(held->lockCount, 0u) << "detached records are unlocked";
    deleteAkaiProgram(held);
  }
  EXPECT_EQ(getTotalLockedMem(), 0);
  LoadModule();
  const Program plain;
  ASSERT_TRUE(plain("Read", Path("p.zprg")).Bool());
  EXPECT_FALSE(plain("IsLocked").Bool()) << "the lock of the written program was read";
}

// ---- Arguments ----

using Arguments = ModuleTest;

TEST_F(Arguments, AbsentArgumentsDoNotHideLaterOnes) {
  const Program program;
  EXPECT_EQ(CallList(program.Algo(), "MaxIndyOut", nullptr).Int(), 0);
  ExpectError(CallList(program.Algo(), "Read", nullptr), "ArgType");
  program.Make();
  const std::string message = program("GetSFPresetArray", "x").Message();
  EXPECT_NE(message.find(" an array"), std::string::npos) << message;
  ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
  EXPECT_TRUE(program("Read", Path("p.zprg"), NullEntry{}, 7).Bool());
  EXPECT_EQ(program("PRGmidiChannel").Int(), 7);
}

TEST_F(Arguments, ARefusedCallChangesNothing) {
  const Program program;
  program.Make();
  ExpectArgValue(program("Register", NullObject{}), "RegisterModule", 1);
  const std::unique_ptr<RIOObject> brush(ZylNewPlainObject("SolidColor"));
  ExpectError(program("Create", brush.get()), "ArgPType");
  EXPECT_TRUE(program("IsValid").Bool()) << "the program was detached";
}

TEST_F(Arguments, AreReadBeforeCallbacksCanChangeThem) {
  const Program program;
  program.Make(2);
  program("MaxIndyOut", 8);
  const ROCParamPtr number(newROCParam(3));
  Listener listener;
  listener["OnProgramParameterChanged"] = [&](ROCParams&, ROCParam**) { *number = ROCParam("x"); };
  program("Register", &listener);
  EXPECT_TRUE(program("ZoneIntValue", -1, 1, 230, number.get()).Ok());
  EXPECT_EQ(number->Type(), kTypeString) << "the callback was called";
  for (const int k : {0, 1}) EXPECT_EQ(program("ZoneIntValue", k, 1, 230).Int(), 3);
}

// ---- Registration with the host ----

using Registration = ModuleTest;

TEST_F(Registration, TheModuleExportsRegisterAllClassesAndNothingElse) {
  if (std::system("nm --version > /dev/null 2>&1") != 0) GTEST_SKIP() << "no nm here";
  FILE* pipe = ::popen(("nm -D --defined-only '" + std::string(ModulePath()) + "'").c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::set<std::string> names;
  char name[512];
  while (std::fscanf(pipe, "%*s %*s %511s", name) == 1) names.insert(name);
  ASSERT_EQ(::pclose(pipe), 0);
  EXPECT_EQ(names, std::set<std::string>{"RegisterAllClasses"});
}

TEST_F(Registration, ObjectsShareOneLookupTableThatCanBeRebuilt) {
  const Program program;
  const Program other;
  ZylDispatch* dispatch = program.Algo()->GetDispatch(true);
  EXPECT_EQ(dispatch->owner, program.Algo());
  EXPECT_TRUE(ZylIsKindOf(dispatch, "ZylDisplayObject"));
  EXPECT_EQ(*dispatch->GetAuxTable(), 0u);
  EXPECT_EQ(ZylNewScriptObject("NoSuchClass"), nullptr);
  EXPECT_EQ(program("NoSuchMethod").status, ZylDispatch::kNoSuchMethod);
  const hashEntry* rebuilt = dispatch->RebuildHashTable();
  EXPECT_EQ(rebuilt, other.Algo()->GetDispatch(true)->GetHashTable());
  for (const ZylFuncInfo* row = dispatch->GetFuncTable(); row->name != nullptr; ++row) {
    EXPECT_EQ(rebuilt->Find(row->name), row) << row->name;
  }
}

TEST_F(Registration, TheTableHas295CallableRows) {
  const Program empty;
  int rows = 0, needProgram = 0;
  for (const ZylFuncInfo* row = ZylClassMethods("ZylSProgram"); row->name != nullptr; ++row) {
    ++rows;
    EXPECT_EQ(row->flag, 1) << row->name;
    const Outcome outcome = empty(row->name, "wrong", "wrong", 1.5);
    EXPECT_EQ(outcome.status != 0, outcome.error.has_value()) << row->name;
    if (!outcome.error || outcome.error->kind != ZylScriptError::kException) continue;
    ++needProgram;
    ExpectException(outcome, "ZylSProgram::" + std::string(row->name) +
                                 ": No program loaded. Method can not execute!");
  }
  EXPECT_EQ(rows, 295);
  EXPECT_EQ(needProgram, 220);
}

TEST_F(Registration, TheClassIsRegisteredWhileTheModuleIsLoaded) {
  LoadedModule().reset();
  EXPECT_EQ(ZylNewScriptObject("ZylSProgram"), nullptr);
  LoadModule();
  EXPECT_TRUE(Program()("IsValid").Ok());
}

}  // namespace
}  // namespace zyl::test
