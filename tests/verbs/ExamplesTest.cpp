// The example scripts.
#include "verbs/VerbTools.h"

namespace zyl::test {
namespace {

class Examples : public Verbs {
 protected:
  Finished RunExample(const std::string& name, const std::string& arguments) const {
    // A copy elsewhere, as users make one, must find its modules too.
    const std::string copy = Path(name + ".lua");
    std::filesystem::copy_file(ZYL_SOURCE "/examples/" + name + ".lua", copy,
                               std::filesystem::copy_options::overwrite_existing);
    return Zyl("run '" + copy + "' " + arguments, true);
  }
};

TEST_F(Examples, FilterSweepChangesOnlySelectedKeygroups) {
  const Program program;
  program.Make(5);
  for (const int k : {1, 2, 4}) program("KGSelect", k, true);
  ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
  const Finished run = RunExample("filter-sweep", "10 30 " + Quoted("p.zprg") + " missing.zprg");
  EXPECT_EQ(run.status, 4) << run.out;
  ASSERT_TRUE(program("Read", Path("p.zprg")).Bool());
  const int expected[] = {99, 10, 20, 99, 30};
  for (int k = 0; k < 5; ++k) EXPECT_EQ(program("KGfilterFreq", k).Int(), expected[k]) << k;
}

TEST_F(Examples, LoopCleanupDropsBadLoops) {
  Tone("t.wav", 441);  // a period of 100 frames
  const Program program;
  RIOObject* sample = program("ReadTempSample", Path("t.wav"), -1).Object();
  program("SampleLoopCount", sample, 2);
  const int loops[][2] = {{10000, 19999}, {20020, 29949}};  // the second jumps
  for (int i = 0; i < 2; ++i) {
    program("SampleLoopStart", sample, i, loops[i][0]);
    program("SampleLoopEnd", sample, i, loops[i][1]);
  }
  ASSERT_TRUE(program("SampleWrite", sample).Bool());
  program("DeleteTempSample");
  const Finished run = RunExample("loop-cleanup", Quoted("t.wav"));
  EXPECT_TRUE(Has(run.out, "1 dropped, 0 found, 1 loops now")) << run.out;
  const std::string shown = Zyl("sample --json " + Quoted("t.wav")).out;
  const std::string left = shown.substr(shown.find("\"loops\""));
  EXPECT_EQ(Number(left, "start"), 10000) << shown;
  EXPECT_EQ(Number(left, "end"), 19999) << shown;
}

TEST_F(Examples, PadsReturnWhatWasWritten) {
  const Program program;
  program.Make(1);
  program("PRGpoly", 7);
  program("PRGLFO2speed", 33);
  ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
  WriteWave(Path("s.wav"),
            {Note(kInstruments[0], 300, 0.2, 1), Note(kInstruments[2], 200, 0.2, 2)});
  const Finished run = RunExample("pad-round-trip", Quoted("p.zprg") + " " + Quoted("s.wav"));
  EXPECT_EQ(run.status, 0) << run.out;
  for (const char* part :
       {"slot 1, parameter 4: 7", "slot 2, parameter 40: 33", "8820 frames: read back unchanged"}) {
    EXPECT_TRUE(Has(run.out, part)) << part << run.out;
  }
}

TEST_F(Examples, EditorPictureDraws) {
  const Finished run = RunExample("editor-picture", Quoted(""));
  EXPECT_EQ(run.status, 0) << run.out;
  for (const char* name : {"keyboard.png", "editor.png"}) {
    const std::string bytes = FileBytes(Path(name));
    EXPECT_GT(bytes.size(), 1000u) << name;
    EXPECT_TRUE(Has(bytes, "IEND")) << name;
  }
}

TEST_F(Examples, PitchReportPrintsAndDraws) {
  Recording("r/x.wav", 61.12);
  const Finished run = RunExample("pitch-report", Quoted("r") + " " + Quoted("r.svg"));
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_TRUE(Has(run.out, "C#3 (61)") && Has(run.out, "+12.0")) << run.out;
  EXPECT_TRUE(Has(FileBytes(Path("r.svg")), ">+25</text>"));
}

}  // namespace
}  // namespace zyl::test
