// What is heard: zyl play renders programs through the exported bank.
#include <gtest/gtest.h>

#include "verbs/VerbTools.h"

namespace zyl::test {
namespace {

using Play = Verbs;

TEST_F(Play, RendersTheKeysAndVelocitiesOfTheProgram) {
  Recording("p/C3 soft.wav", 60, 1.0);
  Recording("p/C3 hard.wav", 60, 1.0, kInstruments[3]);
  ASSERT_EQ(Zyl("map " + Quoted("p") + " -o " + Quoted("p.zprg")).status, 0);
  for (const int key : {55, 60, 67}) {
    const std::string note = " " + std::to_string(key) + ":100:0.9";
    ASSERT_EQ(Zyl("play " + Quoted("p.zprg") + note + " -o " + Quoted("o.wav")).status, 0);
    const Finished heard = Zyl("pitch --json " + Quoted("o.wav"));
    EXPECT_EQ(Number(heard.out, "key"), key) << heard.out;
    EXPECT_NEAR(Number(heard.out, "cents"), 0, 3) << key;
  }
  const auto peak = [this](const char* notes) {
    return Number(Zyl("play --dry-run --json " + Quoted("p.zprg") + notes).out, "peak_db");
  };
  EXPECT_LT(peak(" C3:30"), peak(" C3:110"));
  EXPECT_NEAR(Number(Zyl("play --dry-run --json " + Quoted("p.zprg") + " C3 D3 E3").out, "seconds"),
              3, 0.5);
}

TEST_F(Play, ReportsWhatItCannotPlay) {
  Recording("C3.wav", 60);
  ASSERT_EQ(Zyl("map " + Quoted("C3.wav") + " -o " + Quoted("p.zprg")).status, 0);
  const std::string play = "play " + Quoted("p.zprg");
  for (const char* word :
       {" H3", " C3:0", " C3:100:0", " C3:1:1:1", " 128", " a.mid C3", " a.mid b.mid"}) {
    EXPECT_EQ(Zyl(play + word).status, 2) << word;
  }
  EXPECT_EQ(Zyl("play " + Quoted("missing.zprg") + " -o " + Quoted("o.wav")).status, 4);
  EXPECT_EQ(Zyl(play + " " + Quoted("C3.wav") + " -o " + Quoted("o.wav")).status, 2);
  std::ofstream(Path("bad.mid")) << "not a song";
  EXPECT_EQ(Zyl(play + " " + Quoted("bad.mid") + " -o " + Quoted("o.wav")).status, 4);
  EXPECT_FALSE(std::filesystem::exists(Path("o.wav")));
}

}  // namespace
}  // namespace zyl::test
