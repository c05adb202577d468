// The program object: channels and masks of objects that share a record, its flags, its end.
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
  const Program other;  // another record: does not count
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
  EXPECT_EQ(MaskOf(first), 0x1u) << "an object that took another record still counts";
  EXPECT_EQ(first("PRGtmMidiChannel", 6).Int(), 1);
  EXPECT_EQ(MaskOf(first), 6u) << "a stored mask stays until the next change of channel";
  first("PRGmidiChannel", 31);
  first("PRGmidiChannel", 32);  // refused
  EXPECT_EQ(MaskOf(first), 0x80000000u);
}

TEST_F(ProgramObject, PlainFieldsAreNotAnnounced) {
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
  EXPECT_TRUE(program("Dirty").Bool()) << "the sample's own mark is not the object's to clear";
  program("PRGkeyGroups", 2);
  program("Dirty", false);
  EXPECT_FALSE(program("Dirty").Bool()) << "a keygroup beyond the count was looked at";
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

}  // namespace
}  // namespace zyl::test
