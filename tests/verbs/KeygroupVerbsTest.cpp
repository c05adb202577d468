// The verbs that move keygroups: transpose, split, merge, copy.
#include "verbs/VerbTools.h"

namespace zyl::test {
namespace {

class KeygroupVerbs : public Verbs {
 protected:
  // Three keygroups, 36-47, 48-59 and 60-71; the last has constant pitch. The sample is missing,
  // and its second zone plays the second channel.
  void SetUp() override {
    Verbs::SetUp();
    WriteWave(Path("s.wav"), {std::vector<int16_t>(300, 1), std::vector<int16_t>(300, 2)});
    const Program program;
    program.Make(3);
    for (int k = 0; k < 3; ++k) {
      program("KGlowKey", k, 36 + 12 * k);
      program("KGhighKey", k, 47 + 12 * k);
      program("KGfilterFreq", k, 10 + k);
      for (int z = 0; z < 2; ++z) program("ZoneSampleSet", k, z, Path("s.wav"));
      program("SampleChannel", k, 1, 1);
      program("ZonetuneOffset", k, 0, 256);
    }
    program("ZoneconstantPitch", 2, 0, 1);
    program("PRGlowKey", 36);
    program("PRGname", "A long name");
    ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
    std::filesystem::remove(Path("s.wav"));
    before_ = FileBytes(Path("p.zprg"));
  }
  // "low-high:filter" of each keygroup.
  std::string Keygroups(const std::string& name) const {
    const Program program;
    if (!program("Read", Path(name), 0).Bool()) return "none";
    std::string text;
    for (int k = 0; k < program("PRGkeyGroups").Int(); ++k) {
      text += std::to_string(program("KGlowKey", k).Int()) + "-" +
              std::to_string(program("KGhighKey", k).Int()) + ":" +
              std::to_string(program("KGfilterFreq", k).Int()) + " ";
      EXPECT_TRUE(Has(program("ZoneSamplePath", k, 1).Text(), "s.wav")) << name;
    }
    return text;
  }
  std::string before_;
};

TEST_F(KeygroupVerbs, TransposeMovesRangesAndSound) {
  const struct {
    const char* arguments;
    int status;
    const char* keygroups;
    int tune;    // of the first zone
    int lowest;  // key of the program
    const char* says;
  } cases[] = {
      {"+12", 0, "48-59:10 60-71:11 72-83:12 ", 256 - 12 * 256, 48, "3 keygroups moved"},
      {"-40", 0, "0-7:10 8-19:11 20-31:12 ", 41 * 256, 0, "clamped to keys 0 to 127: keygroup 1\n"},
      {"--keep-roots -50", 0, "0-0:10 0-9:11 10-21:12 ", 256, 0,
       "outside the keyboard, now a single key: keygroup 1\n"},
      {"2 --keygroups 2", 0, "36-47:10 50-61:11 60-71:12 ", 256, 36, "1 keygroup moved"},
      {"2 --dry-run", 0, "36-47:10 48-59:11 60-71:12 ", 256, 36, "not written"},
      {"-127", 4, "36-47:10 48-59:11 60-71:12 ", 256, 36, "exceed 128 semitones"},
      {"0", 2, "36-47:10 48-59:11 60-71:12 ", 256, 36, "KEYS is 0"},
      {"1oct --dry-run", 0, "36-47:10 48-59:11 60-71:12 ", 256, 36, "C1–B1 (36–47)"},
  };
  for (const auto& it : cases) {
    std::ofstream(Path("p.zprg"), std::ios::binary) << before_;
    const Finished run = Zyl("transpose " + Quoted("p.zprg") + " " + it.arguments, true);
    EXPECT_EQ(run.status, it.status) << it.arguments << run.out;
    EXPECT_TRUE(Has(run.out, it.says)) << it.arguments << run.out;
    EXPECT_EQ(Keygroups("p.zprg"), it.keygroups) << it.arguments;
    const Program program;
    ASSERT_TRUE(program("Read", Path("p.zprg"), 0).Bool());
    EXPECT_EQ(program("ZonetuneOffset", 0, 0).Int(), it.tune) << it.arguments;
    EXPECT_EQ(program("ZonetuneOffset", 2, 0).Int(), 256) << "constant pitch";
    EXPECT_EQ(program("PRGlowKey").Int(), it.lowest) << it.arguments;
  }
}

TEST_F(KeygroupVerbs, SplitCutsAtTheBoundaries) {
  const struct {
    const char* arguments;
    int status;
    const char* first;
    const char* second;
  } cases[] = {
      {"--at 54", 0, "36-47:10 48-53:11 ", "54-59:11 60-71:12 "},
      {"--at C3 --dry-run", 0, "none", "none"},
      {"--ranges 40,E2-C4", 0, "40-40:10 ", "52-59:11 60-71:12 "},
      {"--ranges 0-30,C3-C4", 0, "none", "60-71:12 "},
      {"--ranges 0-30", 4, "none", "none"},
      {"--at 60,54", 2, "none", "none"},
      {"--at 54 --ranges 1-3", 2, "none", "none"},
      {"--at 54 -o /nowhere/x", 4, "none", "none"},
  };
  for (const auto& it : cases) {
    std::filesystem::remove(Path("p-1.zprg"));
    std::filesystem::remove(Path("p-2.zprg"));
    EXPECT_EQ(Zyl("split " + Quoted("p.zprg") + " " + it.arguments).status, it.status)
        << it.arguments;
    EXPECT_EQ(Keygroups("p-1.zprg"), it.first) << it.arguments;
    EXPECT_EQ(Keygroups("p-2.zprg"), it.second) << it.arguments;
  }
  EXPECT_EQ(FileBytes(Path("p.zprg")), before_);
  // All parts or none: the second one cannot be written.
  std::filesystem::copy_file(Path("p.zprg"), Path("p-2.zprg"));
  std::filesystem::permissions(Path("p-2.zprg"), std::filesystem::perms{0444});
  for (const char* limit : {"1G", "0"}) {
    const Finished run = Shell("ZYL_UNDO_LIMIT=" + std::string(limit) +
                                   " " ZYL_PROGRAM " split --at 54 --force " + Quoted("p.zprg"),
                               true);
    EXPECT_EQ(run.status, 4) << run.out;
    EXPECT_EQ(Keygroups("p-1.zprg"), "none");
  }
}

TEST_F(KeygroupVerbs, MergeAndCopyTakeWholeKeygroups) {
  EXPECT_EQ(Zyl("split --at 60 " + Quoted("p.zprg")).status, 0);
  const std::string low = Quoted("p-1.zprg");
  const std::string high = Quoted("p-2.zprg");
  EXPECT_EQ(Zyl("edit poly=3 KGmuteGroup=2 " + high).status, 0);
  EXPECT_EQ(Zyl("edit KGmuteGroup=2 " + low).status, 0);
  const Finished merged = Zyl("merge " + high + " " + low + " -o " + Quoted("m.zprg"), true);
  EXPECT_TRUE(Has(merged.out, "1 header field is not used") && Has(merged.out, "PRGpoly") &&
              Has(merged.out, "mute group 2 is also used"))
      << merged.out;
  EXPECT_EQ(Keygroups("m.zprg"), "60-71:12 36-47:10 48-59:11 ");
  EXPECT_EQ(Zyl("edit 'name=A long nam 1' poly=16 " + Quoted("m.zprg")).status, 0);
  // Except for their order these are the keygroups of the program, with the channels of the zones.
  EXPECT_EQ(Zyl("copy --before 1 " + Quoted("m.zprg") + " 2-3 " + high).status, 0);
  EXPECT_EQ(Keygroups("p-2.zprg"), "36-47:10 48-59:11 60-71:12 ");
  EXPECT_EQ(Zyl("copy " + low + " 2 " + high + " " + Quoted("m.zprg")).status, 0);
  EXPECT_EQ(Keygroups("m.zprg"), "60-71:12 36-47:10 48-59:11 48-59:11 ");
  EXPECT_EQ(Zyl("undo --last").status, 0);
  EXPECT_EQ(Zyl("edit poly=16 KGmuteGroup=0 'name=A long name' " + high).status, 0);
  const Finished same = Zyl("verify " + Quoted("p.zprg") + " " + high);
  EXPECT_EQ(same.status, 0) << same.out;
  const std::string now = FileBytes(Path("p-2.zprg"));
  const struct {
    std::string line;
    int status;
  } cases[] = {{"copy " + low + " 3 " + high, 4},
               {"copy " + low + " 1 --before 5 " + high, 4},
               {"copy " + low + " 1 " + high + " --dry-run", 0},
               {"copy " + low + " x " + high, 2},
               {"copy " + low + " " + high, 2},
               {"merge " + low + " " + Quoted("none") + " -o " + high, 4},
               {"merge " + low + " -o " + high, 2}};
  for (const auto& it : cases) {
    EXPECT_EQ(Zyl(it.line).status, it.status) << it.line;
    EXPECT_EQ(FileBytes(Path("p-2.zprg")), now) << it.line;
  }
}

}  // namespace
}  // namespace zyl::test
