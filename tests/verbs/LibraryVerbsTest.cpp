// The verbs for libraries of programs and samples: uses, rename, collect.
#include "verbs/VerbTools.h"

namespace zyl::test {
namespace {

namespace fs = std::filesystem;

// lib/a.zprg and lib/deep/b.zprg use lib/s/x.wav and lib/s/y.wav; b also uses lib/deep/x.wav, whose
// content differs, and the second channel of y.
class LibraryVerbs : public Verbs {
 protected:
  void SetUp() override {
    Verbs::SetUp();
    fs::create_directories(Path("lib/s"));
    fs::create_directories(Path("lib/deep"));
    WriteWave(Path("lib/s/x.wav"), {std::vector<int16_t>(300, 1)});
    WriteWave(Path("lib/s/y.wav"), {std::vector<int16_t>(300, 2), std::vector<int16_t>(300, 3)});
    WriteWave(Path("lib/deep/x.wav"), {std::vector<int16_t>(300, 4)});
    WriteWave(Path("lib/s/unused.wav"), {std::vector<int16_t>(300, 5)});
    const Program program;
    program.Make(2);
    program("KGlowKey", 1, 60);
    program("ZoneSampleSet", 0, 0, Path("lib/s/x.wav"));
    program("ZoneSampleSet", 1, 0, Path("lib/s/y.wav"));
    ASSERT_TRUE(program("Write", Path("lib/a.zprg")).Bool());
    program("ZoneSampleSet", 1, 1, Path("lib/s/y.wav"));
    program("SampleChannel", 1, 1, 1);
    program("ZoneSampleSet", 1, 2, Path("lib/deep/x.wav"));
    ASSERT_TRUE(program("Write", Path("lib/deep/b.zprg")).Bool());
  }
  // The bytes of the samples of a program's zones, "-" for a missing one.
  std::string Sounds(const std::string& name) const {
    const Program program;
    if (!program("Read", Path(name), 0).Bool()) return "no program";
    std::string sounds;
    for (int i = 0; i < 8; ++i) {
      const std::string path = program("ZoneSamplePath", i / 4, i % 4).Text();
      const std::string bytes = FileBytes(path);
      if (!path.empty()) sounds += bytes.empty() ? "-" : std::to_string(bytes[44]);
    }
    return sounds;
  }
  // All files below lib and their contents.
  std::string Snapshot() const {
    std::vector<std::string> all;
    for (const auto& file : fs::recursive_directory_iterator(Path("lib"))) {
      if (file.is_regular_file()) all.push_back(file.path().string() + FileBytes(file.path()));
    }
    std::sort(all.begin(), all.end());
    std::string text;
    for (const std::string& file : all) text += file;
    return text;
  }
};

TEST_F(LibraryVerbs, UsesListsUsersMissingAndUnused) {
  fs::rename(Path("lib/s/x.wav"), Path("away.wav"));
  const struct {
    std::string arguments;
    int status;
    std::vector<std::string> has;
    std::vector<std::string> hasNot;
  } cases[] = {
      {"-r " + Quoted("lib"), 0, {"s/x.wav (missing)", "s/unused.wav", "b.zprg"}, {}},
      {Quoted("lib"), 0, {"a.zprg"}, {"b.zprg", "unused"}},
      {"-r --missing " + Quoted("lib"), 0, {"s/x.wav"}, {"deep/x.wav", "y.wav", "unused.wav"}},
      {"-r --unused " + Quoted("lib"), 0, {"unused.wav"}, {"x.wav", "y.wav"}},
      {"-r --sample " + Quoted("lib/deep/x.wav") + " " + Quoted("lib"), 0, {"b.zprg"}, {"a.zprg"}},
      {"-r --sample 'y*' --json " + Quoted("lib"), 0, {"\"zone\": 2", "a.zprg"}, {"x.wav"}},
      {"-r --sample z " + Quoted("lib"), 1, {}, {"wav"}},
      {Quoted("lib/none"), 4, {}, {"wav"}},
  };
  for (const auto& it : cases) {
    const Finished run = Zyl("uses " + it.arguments);
    EXPECT_EQ(run.status, it.status) << it.arguments;
    for (const auto& part : it.has) EXPECT_TRUE(Has(run.out, part)) << it.arguments << run.out;
    for (const auto& part : it.hasNot) EXPECT_FALSE(Has(run.out, part)) << it.arguments << run.out;
  }
}

TEST_F(LibraryVerbs, RenameKeepsReferencesAndRefusesCollisions) {
  const std::string before = Snapshot();
  const struct {
    std::string arguments;
    int status;
    std::vector<std::string> files;
    const char* says = "";
  } cases[] = {
      {"--samples '{program}_{low}_{name}' " + Quoted("lib/a.zprg"),
       0,
       {"lib/s/a_C-2_x.wav", "lib/s/a_C3_y.wav", "lib/deep/x.wav"}},
      {"--replace x=z --replace 'y=%1' " + Quoted("lib/deep/b.zprg"),
       0,
       {"lib/s/z.wav", "lib/s/%1.wav", "lib/deep/z.wav"}},
      // A cycle, and a name that is only free because its file is renamed too.
      {"--replace x=t --replace y=x --replace t=y " + Quoted("lib/a.zprg"), 0, {"lib/s/x.wav"}},
      {"-r --files '{name}{number}' --names N{number} " + Quoted("lib"),
       0,
       {"lib/a1.zprg", "lib/deep/b2.zprg"}},
      {"--samples same " + Quoted("lib/a.zprg"), 4, {}, "would both be named"},
      {"--samples unused --replace uu= " + Quoted("lib/a.zprg"), 4, {}},
      {"--replace x=unused " + Quoted("lib/a.zprg"), 4, {}, "that file exists"},
      {"--samples a/b " + Quoted("lib/a.zprg"), 4, {}, "not a file name"},
      {"--names MoreThanTwelveBytes " + Quoted("lib/a.zprg"), 4, {}, "12 bytes"},
      {"--samples '{nam}' " + Quoted("lib/a.zprg"), 2, {}, "there is no {nam}"},
      {"--replace x=q --dry-run " + Quoted("lib/a.zprg"), 0, {}},
      {"--replace x=q " + Quoted("lib/a.zprg") + " " + Quoted("lib/none.zprg"), 4, {}},
  };
  for (const auto& it : cases) {
    const Finished run = Zyl("rename " + it.arguments, true);
    EXPECT_EQ(run.status, it.status) << it.arguments << run.out;
    EXPECT_TRUE(Has(run.out, it.says)) << it.arguments << run.out;
    for (const auto& file : it.files) EXPECT_TRUE(fs::exists(Path(file))) << it.arguments << file;
    if (it.files.empty()) {
      EXPECT_TRUE(Snapshot() == before) << it.arguments;
      continue;
    }
    EXPECT_FALSE(Snapshot() == before) << it.arguments;
    const bool moved = !fs::exists(Path("lib/a.zprg"));
    EXPECT_EQ(Sounds(moved ? "lib/a1.zprg" : "lib/a.zprg"), "12") << it.arguments;
    EXPECT_EQ(Sounds(moved ? "lib/deep/b2.zprg" : "lib/deep/b.zprg"), "1224") << it.arguments;
    EXPECT_EQ(Zyl("undo --last").status, 0);
    EXPECT_TRUE(Snapshot() == before) << it.arguments;
  }
  // Titles of samples, also of those that are renamed, and a program elsewhere.
  const Program far;
  ASSERT_TRUE(far("Read", Path("lib/a.zprg"), 0).Bool());
  fs::create_directories(Path("far/away"));
  ASSERT_TRUE(far("Write", Path("far/away/c.zprg"), 16).Bool());
  const Finished titled = Zyl("rename --samples new_{name} --zones 'T {name}' " +
                                  Quoted("lib/a.zprg") + " --search " + Quoted("far"),
                              true);
  EXPECT_EQ(titled.status, 0);
  EXPECT_TRUE(Has(titled.out, "searched below " + Path("far"))) << titled.out;
  EXPECT_EQ(Sounds("far/away/c.zprg"), "12");
  EXPECT_TRUE(Has(Zyl("sample " + Quoted("lib/s/new_x.wav")).out, "T x"));
  EXPECT_EQ(Sounds("lib/deep/b.zprg"), "1224");
  EXPECT_EQ(Zyl("undo --last").status, 0);
  EXPECT_TRUE(Snapshot() == before);
  // A program cannot be written: all changes are undone.
  fs::permissions(Path("lib/a.zprg"), fs::perms{0444});
  EXPECT_EQ(Zyl("rename --replace x=q " + Quoted("lib/a.zprg")).status, 4);
  EXPECT_TRUE(Snapshot() == before);
}

TEST_F(LibraryVerbs, CollectCopiesAndRelinks) {
  const std::string out = " -o " + Quoted("out") + " ";
  fs::create_directories(Path("out"));
  WriteWave(Path("out/x.wav"), {std::vector<int16_t>(300, 9)});  // another sound with the name
  EXPECT_EQ(Zyl("collect -r" + out + Quoted("lib")).status, 0);
  fs::rename(Path("lib"), Path("gone"));
  fs::rename(Path("out"), Path("moved"));
  EXPECT_EQ(Sounds("moved/a.zprg"), "12");
  EXPECT_EQ(Sounds("moved/b.zprg"), "1224");
  EXPECT_TRUE(fs::exists(Path("moved/x 2.wav")) && fs::exists(Path("moved/x 3.wav")));
  EXPECT_EQ(std::distance(fs::directory_iterator(Path("moved")), {}), 6);
  const std::string shown = Zyl("find 60 --json " + Quoted("moved/b.zprg")).out;
  EXPECT_TRUE(Has(shown, "\"channel\": 2")) << shown;
  // Missing samples are found by name, and among different files with the name by the folder.
  for (const char* name : {"gone/s/x.wav", "gone/deep/x.wav", "gone/s/y.wav"}) {
    fs::create_directories(Path("found/" + fs::path(name).parent_path().filename().string()));
    fs::rename(Path(name), Path("found/" + fs::path(name).parent_path().filename().string() + "/" +
                                fs::path(name).filename().string()));
  }
  const struct {
    std::string arguments;
    int status;
    std::string sounds;
  } cases[] = {
      {Quoted("gone/deep/b.zprg"), 4, "no program"},
      {Quoted("gone/deep/b.zprg") + " --partial", 0, "----"},
      {Quoted("gone/deep/b.zprg") + " --dry-run --search " + Quoted("found"), 0, "no program"},
      {Quoted("gone/deep/b.zprg") + " --search " + Quoted("found"), 0, "1224"},
      {Quoted("gone/deep/b.zprg") + " " + Quoted("none.zprg") + " --search " + Quoted("found"), 4,
       "no program"},
  };
  for (const auto& it : cases) {
    fs::remove_all(Path("out"));
    const Finished run = Zyl("collect" + out + it.arguments, true);
    EXPECT_EQ(run.status, it.status) << it.arguments << run.out;
    EXPECT_EQ(Sounds("out/b.zprg"), it.sounds) << it.arguments << run.out;
  }
  // Candidates that cannot be distinguished.
  fs::rename(Path("found/s"), Path("found/one"));
  fs::rename(Path("found/deep"), Path("found/two"));
  const Finished unclear =
      Zyl("collect" + out + Quoted("gone/a.zprg") + " --search " + Quoted("found"), true);
  EXPECT_EQ(unclear.status, 4);
  EXPECT_TRUE(Has(unclear.out, "several different files")) << unclear.out;
  // A file that is no sound, or lacks a channel, is not taken for a sample.
  fs::remove_all(Path("found/two"));
  std::ofstream(Path("found/one/x.wav")) << "text";
  WriteWave(Path("found/one/y.wav"), {std::vector<int16_t>(300, 2)});
  const Finished wrong =
      Zyl("collect" + out + Quoted("gone/deep/b.zprg") + " --search " + Quoted("found"), true);
  EXPECT_EQ(wrong.status, 4);
  EXPECT_TRUE(Has(wrong.out, "x.wav: not a readable sound") &&
              Has(wrong.out, "y.wav: has no channel 2"))
      << wrong.out;
  EXPECT_EQ(Zyl("collect --partial -o " + Quoted("gone") + " " + Quoted("gone/a.zprg")).status, 4);
  EXPECT_EQ(Zyl("collect" + out + Quoted("gone/a.zprg") + " --search none").status, 2);
}

TEST_F(LibraryVerbs, AChannelThatIsPlayedIsNotRemovedSilently) {
  const std::string before = FileBytes(Path("lib/s/y.wav"));
  const std::string convert = "convert --mono left " + Quoted("lib/s/y.wav") + " ";
  const std::string search = "--search " + Quoted("lib");  // b is in a folder beside that of y
  EXPECT_EQ(Zyl(convert + search).status, 4);
  const Finished other = Zyl("convert --mono right " + Quoted("lib/s/y.wav"), true);
  EXPECT_EQ(other.status, 4);
  EXPECT_TRUE(Has(other.out, "a.zprg plays channel 1")) << other.out;
  EXPECT_EQ(FileBytes(Path("lib/s/y.wav")), before);
  const Finished forced = Zyl(convert + search + " --force", true);
  EXPECT_EQ(forced.status, 0);
  EXPECT_TRUE(Has(forced.out, "b.zprg plays channel 2, which --mono left removes")) << forced.out;
  EXPECT_TRUE(Has(Zyl("show " + Quoted("lib/deep/b.zprg")).out, "y.wav  (no channel 2)"));
  EXPECT_TRUE(
      Has(Zyl("find 60 --json " + Quoted("lib/deep/b.zprg")).out, "\"channel_missing\": true"));
  const Finished uses = Zyl("uses -r --missing " + Quoted("lib"));
  EXPECT_TRUE(Has(uses.out, "y.wav (no channel 2)") && !Has(uses.out, "x.wav")) << uses.out;
}

}  // namespace
}  // namespace zyl::test
