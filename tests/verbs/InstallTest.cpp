// The installed files work from any folder.
#include "verbs/VerbTools.h"

namespace zyl::test {
namespace {

class Install : public Verbs {
 protected:
  void SetUp() override {
    Verbs::SetUp();
    const Finished run =
        Shell(ZYL_CMAKE " --install " ZYL_BUILD " --prefix " + Quoted("first"), true);
    ASSERT_EQ(run.status, 0) << run.out;
    std::filesystem::rename(Path("first"), Path("moved"));
  }
  // Runs without the build's folders in the environment, but with the sanitizer's suppressions.
  Finished Installed(const std::string& arguments) const {
    return Shell("cd " + Quoted("") +
                     " && env -i PATH=/usr/bin:/bin TSAN_OPTIONS=\"$TSAN_OPTIONS\" " +
                     Quoted("moved/bin/zyl") + " " + arguments,
                 true);
  }
};

TEST_F(Install, RunsExamplesAndVerbs) {
  const Finished made = Installed("run moved/share/zyl/examples/tones.lua notes");
  EXPECT_EQ(made.status, 0) << made.out;
  const Finished run = Installed("run moved/share/zyl/examples/first-program.lua notes out.zprg");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_TRUE(Has(run.out, "read back unchanged")) << run.out;
  EXPECT_EQ(Installed("run moved/share/zyl/examples/automap.lua notes map.zprg").status, 0);
  EXPECT_TRUE(Has(Installed("help KGSort").out, "SortByData"));
  EXPECT_TRUE(Has(Installed("find A2 map.zprg").out, "Pluck_A2_hard.wav"));
  const std::string where = Installed("eval 'print(io.open(\"/proc/self/maps\"):read(\"a\"))'").out;
  EXPECT_TRUE(Has(where, "moved/bin/../lib/zyl/ZylSProgram.so") ||
              Has(where, "moved/lib/zyl/ZylSProgram.so"))
      << where;
  EXPECT_FALSE(Has(where, ZYL_BUILD));
}

TEST_F(Install, IncludesTheManualAndCompletion) {
  const std::string manual = FileBytes(Path("moved/share/man/man1/zyl.1"));
  for (const auto& script : std::filesystem::directory_iterator(ZYL_SOURCE "/verbs")) {
    if (script.path().extension() != ".lua") continue;
    const std::string verb = script.path().stem().string();
    EXPECT_TRUE(Has(manual, "zyl " + verb + " ")) << verb;
  }
  const struct {
    const char* line;
    const char* has;
    const char* hasNot;
  } cases[] = {{"zyl ma", "map", "pitch"},
               {"zyl map --oc", "--octave", "--output"},
               {"zyl methods KGSo", "KGSort", "KGMove"},
               {"zyl edit x.zprg KGfilterFr", "KGfilterFreq=", "KGSort"},
               {"zyl --module x pit", "pitch", "presets"}};
  for (const auto& it : cases) {
    const Finished run = Shell(
        "env -i PATH=" + Quoted("moved/bin") + ":/usr/bin:/bin bash -c 'compopt() { :; }; . " +
            Path("moved") + "/share/bash-completion/completions/zyl; COMP_WORDS=(" + it.line +
            "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _zyl; echo \"${COMPREPLY[@]}\"'",
        true);
    EXPECT_TRUE(Has(run.out, it.has)) << it.line << run.out;
    EXPECT_FALSE(Has(run.out, it.hasNot)) << it.line << run.out;
  }
}

}  // namespace
}  // namespace zyl::test
