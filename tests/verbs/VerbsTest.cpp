// The verbs for samples, run as a user would.
#include <random>

#include "verbs/VerbTools.h"

namespace zyl::test {
namespace {

TEST_F(Verbs, PitchPrintsAndStoresKeyAndTuning) {
  const double hertz = 440 * std::exp2((57 - 69 + 0.2) / 12);  // 20 cents above key 57
  const std::string file = Tone("a tone é.wav", hertz);
  const Finished shown = Zyl("pitch --json " + file);
  EXPECT_EQ(shown.status, 0);
  EXPECT_EQ(Number(shown.out, "key"), 57) << shown.out;
  EXPECT_NEAR(Number(shown.out, "cents"), 20, 2);
  const std::string before = FileBytes(Path("a tone é.wav"));
  EXPECT_EQ(Zyl("pitch " + file).status, 0);
  EXPECT_TRUE(Has(Zyl("pitch --set --dry-run " + file).out, "would be set"));
  EXPECT_TRUE(Has(Zyl("loops --write --dry-run --crossfade 10 " + file).out, "would be written"));
  EXPECT_TRUE(FileBytes(Path("a tone é.wav")) == before);
  EXPECT_EQ(Zyl("pitch --set " + file).status, 0);
  const Finished stored = Zyl("sample --json " + file);
  EXPECT_EQ(Number(stored.out, "key"), 57) << stored.out;
  EXPECT_NEAR(Number(stored.out, "cents"), 20, 2) << stored.out;
}

TEST_F(Verbs, ABadFileDoesNotStopTheBatch) {
  const std::string good = Tone("good.wav", 220);
  std::ofstream(Path("bad.wav")) << "no sound";
  const std::string both = "'" + Path("bad.wav") + "' " + good;
  for (const char* verb : {"pitch ", "loops ", "sample "}) {
    const Finished run = Zyl(verb + both);
    EXPECT_EQ(run.status, 4) << verb;
    EXPECT_TRUE(Has(run.out, "good.wav")) << verb << run.out;
    EXPECT_TRUE(Has(Zyl(verb + both, true).out, "bad.wav: ")) << verb;
  }
}

TEST_F(Verbs, FoldersExpandToTheirSoundFiles) {
  Recording("in a folder/b.wav", 50);
  Recording("in a folder/a.WAV", 52);
  std::ofstream(Path("in a folder/notes.txt")) << "no sound";
  Recording("in a folder/deeper/c.wav", 52);
  const Finished run =
      Zyl("sample --json " + Quoted("in a folder") + " " + Quoted("in a folder/b.wav"));
  EXPECT_EQ(run.status, 0);
  EXPECT_LT(run.out.find("a.WAV"), run.out.find("b.wav"));
  EXPECT_EQ(run.out.find("b.wav"), run.out.rfind("b.wav")) << run.out;
  EXPECT_FALSE(Has(run.out, "txt") || Has(run.out, "c.wav")) << run.out;
  EXPECT_TRUE(Has(Zyl("sample -r " + Quoted("in a folder")).out, "deeper/c.wav"));
  const Program program;
  program.Make(1);
  for (const char* name : {"in a folder/x.zprg", "in a folder/deeper/any name"}) {
    ASSERT_TRUE(program("Write", Path(name)).Bool());
  }
  EXPECT_EQ(Zyl("edit poly=3 " + Quoted("in a folder")).status, 0);
  const std::string found = Zyl("find -r 60 " + Quoted("in a folder") + " --json").out;
  EXPECT_TRUE(Has(found, "x.zprg") && Has(found, "any name") && !Has(found, "wav")) << found;
  EXPECT_TRUE(Has(Zyl("show -r " + Quoted("in a folder") + " --quiet").out, "3 voices"));
  EXPECT_EQ(Zyl("show " + Quoted("in a folder/deeper/none")).status, 4);
  EXPECT_EQ(Zyl("view -r " + Quoted("in a folder") + " -o " + Quoted("v.svg")).status, 0);
  EXPECT_TRUE(std::filesystem::exists(Path("v-x.svg")) &&
              std::filesystem::exists(Path("v-any name.svg")));
}

TEST_F(Verbs, LoopsFindsAPerfectJoinAndStoresIt) {
  const std::string file = Tone("loop.wav", 441);  // a period of 100 frames exactly
  const Finished found = Zyl("loops --json --min-quality -3 " + file);
  EXPECT_EQ(found.status, 0);
  EXPECT_GT(Number(found.out, "quality_db"), -3) << found.out;
  EXPECT_EQ(std::fmod(Number(found.out, "length"), 100), 0) << found.out;
  EXPECT_EQ(Zyl("loops --write --min-quality -3 " + file).status, 0);
  const std::string shown = Zyl("sample --json " + file).out;
  const std::string loops = shown.substr(shown.find("\"loops\""));
  EXPECT_EQ(Number(loops, "start"), Number(found.out, "start")) << shown;
  EXPECT_EQ(Number(loops, "end"), Number(found.out, "end"));
}

TEST_F(Verbs, LoopsCrossfadesWhatClicks) {
  // A pitch that glides has no loop that joins.
  std::vector<std::vector<int16_t>> glide(2);
  for (int i = 0; i < 88200; ++i) {
    const double phase = 2 * std::numbers::pi * (200 + 40e-5 * i) * i / 44100;
    glide[0].push_back(static_cast<int16_t>(9000 * std::sin(phase) + 4000 * std::sin(3 * phase)));
    glide[1].push_back(static_cast<int16_t>(7000 * std::cos(phase)));
  }
  WriteWave(Path("g.wav"), glide);
  const std::string file = Quoted("g.wav"), before = FileBytes(Path("g.wav"));
  EXPECT_EQ(Zyl("loops --write " + file).status, 4);
  EXPECT_EQ(Zyl("loops --write --dry-run --crossfade 20 " + file).status, 0);
  EXPECT_EQ(FileBytes(Path("g.wav")), before);
  const Finished run = Zyl("loops --write --json --crossfade 20 " + file);
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(Number(run.out, "crossfade"), 882) << run.out;
  EXPECT_GT(Number(run.out, "quality_db"), -3) << run.out;
  const std::string after = FileBytes(Path("g.wav"));
  const auto frame = [](const std::string& bytes, double at) {
    return bytes.substr(44 + 4 * static_cast<size_t>(at), 4);
  };
  const double start = Number(run.out, "start"), last = Number(run.out, "end");
  for (double i = 0; i < 88200; ++i) {
    if (i > last - 882 && i <= last + 882) continue;
    ASSERT_EQ(frame(after, i), frame(before, i)) << i;
  }
  // The last frame is that before the start, up to the weight of the fade there.
  for (const size_t channel : {0U, 2U}) {
    const auto value = [&](const std::string& bytes, double at) {
      const std::string pair = frame(bytes, at).substr(channel, 2);
      return static_cast<int16_t>(static_cast<uint8_t>(pair[0]) | static_cast<uint8_t>(pair[1])
                                                                      << 8);
    };
    EXPECT_NEAR(value(after, last), value(before, start - 1), 3) << channel;
  }
}

TEST_F(Verbs, PitchStoresOnlySteadyPitches) {
  std::mt19937 random(4);
  std::vector<int16_t> noise(30000);
  for (int16_t& value : noise) value = static_cast<int16_t>(random() % 20000 - 10000);
  WriteWave(Path("noise.wav"), {noise});
  const std::string before = FileBytes(Path("noise.wav"));
  EXPECT_EQ(Zyl("loops --write --dry-run --crossfade 20 " + Quoted("noise.wav")).status, 0);
  const Finished refused = Zyl("pitch --set " + Quoted("noise.wav"), true);
  EXPECT_EQ(refused.status, 4);
  EXPECT_TRUE(Has(refused.out, "--force")) << refused.out;
  const std::string picture = " --plot " + Quoted("dry.png") + " ";
  EXPECT_EQ(Zyl("pitch --set --force --dry-run" + picture + Quoted("noise.wav")).status, 0);
  EXPECT_FALSE(std::filesystem::exists(Path("dry.png")));
  EXPECT_TRUE(FileBytes(Path("noise.wav")) == before);
  EXPECT_EQ(Zyl("pitch --set --force " + Quoted("noise.wav")).status, 0);
  EXPECT_FALSE(FileBytes(Path("noise.wav")) == before);
}

TEST_F(Verbs, PipesAreRefused) {
  ASSERT_EQ(Shell("mkfifo " + Quoted("pipe.wav"), true).status, 0);
  for (const char* verb : {"sample", "pitch", "loops", "map --dry-run", "show", "presets",
                           "edit poly=1", "find 60", "view -o x.png"}) {
    const Finished run = Shell(
        std::string("timeout 20 ") + ZYL_PROGRAM + " " + verb + " " + Quoted("pipe.wav"), true);
    EXPECT_EQ(run.status, 4) << verb << run.out;
    EXPECT_TRUE(Has(run.out, "is not a regular file")) << verb << run.out;
  }
}

TEST_F(Verbs, LostOutputIsAFailure) {
  const std::string file = Tone("a.wav", 220);
  const struct {
    std::string line;
    int status;
  } cases[] = {{"methods", 1},         {"help KGSort", 1},    {"--help", 1},
               {"eval 'print(1)'", 1}, {"sample " + file, 1}, {"verify " + file + " " + file, 4}};
  for (const auto& it : cases) {
    const std::string line = std::string(ZYL_PROGRAM) + " " + it.line;
    const Finished run = Shell("{ " + line + " >/dev/full; }", true);
    EXPECT_EQ(run.status, it.status) << it.line;
    EXPECT_TRUE(Has(run.out, "standard output could not be written")) << run.out;
    std::ofstream(Path("line.sh")) << "set -o pipefail; " << line << " | true";
    EXPECT_EQ(Shell("bash " + Quoted("line.sh"), true).status, 0) << it.line;
  }
  Tone("plain.wav", 220);
  EXPECT_TRUE(Has(Zyl("sample " + Quoted("plain.wav")).out, "root key  none"));
  EXPECT_EQ(Zyl("sample --set key=60 " + Quoted("plain.wav")).status, 0);
  EXPECT_TRUE(Has(Zyl("sample " + Quoted("plain.wav")).out, "root key  C3 (60)"));
}

TEST_F(Verbs, ShowAndViewPrintAndDrawAProgram) {
  Program program;
  program.Make(2);
  Tone("a tone.wav", 220);
  program("KGlowKey", 1, 61);
  program("KGhighKey", 1, 71);
  program("ZoneSampleSet", 1, 2, Path("a tone.wav"));
  ASSERT_TRUE(program("Write", Path("a.zprg")).Bool());
  const std::string file = "'" + Path("a.zprg") + "'";
  const std::string table = Zyl("show " + file).out;
  EXPECT_TRUE(Has(table, "C#3–B3") && Has(table, "a tone.wav") && !Has(table, "missing")) << table;
  std::filesystem::remove(Path("a tone.wav"));
  EXPECT_TRUE(Has(Zyl("show " + file).out, "a tone.wav  (missing)"));
  EXPECT_FALSE(Has(Zyl("show --quiet " + file).out, "a tone.wav"));
  const std::string json = Zyl("show --json " + file).out;
  EXPECT_EQ(Number(json.substr(json.rfind("\"low_key\"")), "low_key"), 61) << json;
  for (const char* name : {"p.png", "p.svg"}) {
    const Finished run = Zyl("view --keygroup 2 --dark -o '" + Path(name) + "' " + file);
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_EQ(run.out, Path(name) + "\n");
    EXPECT_GT(std::filesystem::file_size(Path(name)), 1000u);
  }
  EXPECT_TRUE(Has(Zyl("view -o '" + Path("p.svg") + "' " + file, true).out, "1 sample missing"));
  EXPECT_EQ(Zyl("view --keygroup 3 -o '" + Path("q.png") + "' " + file).status, 4);
  EXPECT_EQ(Zyl("view -o /nowhere/q.png " + file).status, 4);
  std::ofstream(Path("bad.zprg")) << "no program";
  EXPECT_EQ(Zyl("show '" + Path("bad.zprg") + "' " + file).status, 4);
  EXPECT_FALSE(std::filesystem::exists(Path("q.png")));
}

TEST_F(Verbs, SampleSetsFieldsOfFiles) {
  const std::string wave = Tone("a.wav", 220);
  const std::string aiff = Quoted("b.aiff");
  Zyl("eval 'local p = host.new(\"ZylSProgram\"); local s = p:ReadTempSample(arg[1], -1); "
      "p:SampleWrite(s, arg[2])' " +
      wave + " " + aiff);
  const std::string before = FileBytes(Path("a.wav"));
  const struct {
    const char* settings;
    int status;
    const char* says;
  } cases[] = {{"key=H9", 2, "is not a note (C3 = 60)"},
               {"tune=5Hz", 2, "not in st or ct"},
               {"tune=200", 2, "outside -127.996 st"},
               {"playback=loud", 2, "is not Loop Rel"},
               {"loops=100", 2, "is not START-END"},
               {"kee=60", 2, "did you mean \"key\""},
               {"name=$'a\tb'", 2, "control character"},
               {"key=60 loops=0-44100", 4, "loop 1 end: frame 44100 is outside 0 to 44099"},
               {"loops=9-8", 4, "loop 1 start: frame 9 is outside 0 to 8"},
               {"start=1.1s", 4, "start: frame 48510 is outside"},
               {"loops=1-2,1-2,1-2,1-2,1-2,1-2,1-2,1-2,1-2x3", 4, "only the first 8"},
               {"key=+70", 0, "key clamped to G8 (127)"},
               {"key=C3 --dry-run", 0, "none  ->  C3 (60)"},
               {"playback='no loops'", 0, "0 values changed"}};
  for (const auto& it : cases) {
    const std::string line =
        std::string("sample --set ") + it.settings + (it.status == 0 ? " --dry-run " : " ") + wave;
    std::ofstream(Path("line.sh")) << ZYL_PROGRAM " " << line;
    const Finished run = Shell("bash " + Quoted("line.sh"), true);
    EXPECT_EQ(run.status, it.status) << it.settings << run.out;
    EXPECT_TRUE(Has(run.out, it.says)) << it.settings << run.out;
    EXPECT_TRUE(FileBytes(Path("a.wav")) == before) << it.settings;
  }
  const std::string all =
      "sample --json --set key=A2 tune=-0.5st name=Tone 'loops=1000-2000+.25x3,0.5s-900ms' "
      "start=100 "
      "end:=0.95s ";
  for (const std::string& file : {wave, aiff}) {
    const Finished set = Zyl(all + file, true);
    EXPECT_EQ(set.status, 0) << set.out;
    EXPECT_TRUE(Has(set.out, "\"new_text\": \"-50 ct\"")) << set.out;
    const Finished shown = Zyl("sample " + file);
    for (const char* part :
         {"Tone", "100 to 41895", "A2 (57)", "-50 ct", "Loop Rel",
          "1000 to 2000, 1001 frames, 0.0227 s, 0.2500 frame longer, 3 times", "22050 to 39690"}) {
      EXPECT_TRUE(Has(shown.out, part)) << part << shown.out;
    }
  }
  EXPECT_EQ(Zyl("sample --set loops=none " + wave).status, 0);
  EXPECT_TRUE(Has(Zyl("sample " + wave).out, "No loops"));
}

TEST_F(Verbs, OneOctaveNamesNotesEverywhere) {
  const std::string sound = Tone("a.wav", 220);  // key 57
  ASSERT_EQ(Zyl("pitch --set " + sound).status, 0);
  ASSERT_EQ(Zyl("map --reach 0 " + sound + " -o " + Quoted("p.zprg")).status, 0);
  ASSERT_EQ(Zyl("edit " + Quoted("p.zprg") + " KGlowKey=0 -o " + Quoted("q.zprg")).status, 0);
  const std::string p = Quoted("p.zprg");
  const std::string q = Quoted("q.zprg");
  for (const int octave : {3, 4}) {
    const std::string note = "A" + std::to_string(octave - 1);
    for (const std::string& line :
         {"pitch " + sound, "sample " + sound, "map --dry-run " + sound, "show " + p,
          "find " + note + " " + p, "edit " + q + " --dry-run KGlowKey=" + note,
          "edit " + q + " --dry-run KGlowKey='" + note + " (57)'", "verify " + p + " " + q}) {
      EXPECT_TRUE(Has(Zyl(line + " --octave " + std::to_string(octave)).out, note + " (57)"))
          << line;
      setenv("ZYL_MIDDLE_C", std::to_string(octave).c_str(), 1);
      EXPECT_TRUE(Has(Zyl(line).out, note + " (57)")) << line;
      unsetenv("ZYL_MIDDLE_C");
    }
    const Finished view =
        Zyl("view -o " + Quoted("v.svg") + " --octave " + std::to_string(octave) + " " + p);
    EXPECT_EQ(view.status, 0) << view.out;
    EXPECT_EQ(Has(FileBytes(Path("v.svg")), ">C-2<"), octave == 3);
  }
  setenv("ZYL_MIDDLE_C", "x", 1);
  EXPECT_EQ(Zyl("show " + p).status, 2);
  unsetenv("ZYL_MIDDLE_C");
}

TEST_F(Verbs, WrongCommandLinesAreReported) {
  for (const char* line : {"pitch", "loops --top none x.wav", "sample --no-such-option x.wav",
                           "view x.zprg", "view -o x.gif x.zprg", "show -o x.png x.zprg"}) {
    EXPECT_EQ(Zyl(line).status, 2) << line;
  }
  EXPECT_EQ(Zyl("pitch --help").status, 0);
}

}  // namespace
}  // namespace zyl::test
