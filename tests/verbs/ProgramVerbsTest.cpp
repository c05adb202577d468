// The verbs for programs: edit, verify, find, presets.
#include "verbs/VerbTools.h"

namespace zyl::test {
namespace {

class ProgramVerbs : public Verbs {
 protected:
  void SetUp() override {
    Verbs::SetUp();
    const Program program;
    program.Make(12);
    for (int k = 0; k < 12; ++k) {
      program("KGlowKey", k, 10 * k);
      program("KGhighKey", k, 10 * k + 9);
      program("ZoneSamplePath", k, 0, "s" + std::to_string(k) + ".wav");
      program("ZonehighVel", k, 0, 99);
      program("ZoneSamplePath", k, 1, Path("loud.wav"));
      program("ZonelowVel", k, 1, 100);
    }
    for (const int k : {1, 4}) program("KGSelect", k, true);
    ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
  }
  Finished Edit(const std::string& arguments) const {
    return Zyl("edit " + Quoted("p.zprg") + " " + arguments, true);
  }
  // The values of a method over the keygroups of the written program.
  std::vector<int> Read(const char* method, int zone = -1) const {
    const Program program;
    EXPECT_TRUE(program("Read", Path("p.zprg"), 0).Bool());
    std::vector<int> values;
    for (int k = 0; k < 12; ++k) {
      values.push_back(zone < 0 ? program(method, k).Int() : program(method, k, zone).Int());
    }
    return values;
  }
};

TEST_F(ProgramVerbs, EditChangesTheGivenKeygroupsAndZones) {
  EXPECT_EQ(Edit("filterFreq=50 --keygroups 1-3,12").status, 0);
  EXPECT_EQ(Edit("filterFreq=-7 --keygroups selected").status, 0);
  EXPECT_EQ(Edit("KGtune:=-117.1875ct").status, 0);
  EXPECT_EQ(Edit("panOffset:=-5 --zones 2,4 --keygroups 2").status, 0);
  EXPECT_EQ(Read("KGfilterFreq"),
            (std::vector<int>{50, 43, 50, 99, 92, 99, 99, 99, 99, 99, 99, 50}));
  EXPECT_EQ(Read("KGtune"), std::vector<int>(12, -300));
  EXPECT_EQ(Read("ZonepanOffset", 3)[1], -5);
  EXPECT_EQ(Read("ZonepanOffset", 2)[1], 0);
  EXPECT_EQ(Read("ZonepanOffset", 3)[0], 0);
}

TEST_F(ProgramVerbs, EditWritesAllOrNothing) {
  const std::string before = FileBytes(Path("p.zprg"));
  const struct {
    const char* arguments;
    int status;
    const char* says;
  } cases[] = {
      {"lowKey=2", 2, "is ambiguous: PRGlowKey or KGlowKey"},
      {"poly=257", 2, "outside 1 voice to 256 voices"},
      {"filterFreq=150", 2, "outside 0 to 99"},
      {"filterFreq=300 --raw", 2, "outside 0 to 255"},
      {"loudVel=128", 2, "outside -50 to 50"},
      {"KGfilterResonance=65536", 2, "outside 0 to 65535"},
      {"name=MoreThanTwelve", 2, "12 bytes"},
      {"poly=many", 2, "not a number"},
      {"KGtune=+5,5ct", 2, "is not a number"},
      {"KGfilterFreq=1e999", 2, "is not a number"},
      {"SamplePath=no.wav --dry-run", 0, "24 values changed"},
      {"poly=9.5", 2, "not a whole number of voices"},
      {"filterFreq=5ct", 2, "not a number without a unit"},
      {"KGtune=5Hz", 2, "not in st or ct"},
      {"KGtune=128", 2, "outside -128 st to 127.996 st"},
      {"KGfilterType=LP", 2, "is not LP2, LP2 R"},
      {"KGSelect=perhaps", 2, "neither on nor off"},
      {"PRGkeyGroups=3", 2, "no field"},
      {"poly=9 highVel=+200", 4, "299 is outside"},
      {"poly=9 filterFreq=2 --keygroups 13", 4, "keygroup 13 is outside 1 to 12"},
      {"poly=9 --keygroups 0", 2, "neither a number from 1"},
      {"filterFreq=99999999999999999999", 2, "outside 0 to 99"},
      {"KGhighKey=128", 2, "outside C-2 (0) to G8 (127)"},
      {"lowVel=-200", 4, "outside 0 to 127, the range of ZonelowVel"},
      {"KGlowKey=H", 2, "not a note (C3 = 60) or a number"},
      {"poly=9 --zones 1-9", 2, "outside 1 to 4"},
      {"KGlowKey=G8 --keygroups 5 --dry-run", 0, "keygroup 5  E1 (40)  ->  G8 (127)"},
      {"KGlowKey=G9 --keygroups 5 --dry-run --octave 4", 0, "E2 (40)  ->  G9 (127)"},
      {"KGlowKey=G9 --keygroups 5", 2, "G9' is not a note"},
      {"KGlowKey=50 --keygroups 5 --dry-run", 0, "low is above high"},
      {"KGlowKey=C-2 --keygroups 1", 0, "0 values changed"},
      {"poly=9 --dry-run", 0, "not written"},
      {"poly=16", 0, "0 values changed"},
  };
  for (const auto& it : cases) {
    const Finished run = Edit(it.arguments);
    EXPECT_EQ(run.status, it.status) << it.arguments << run.out;
    EXPECT_TRUE(Has(run.out, it.says)) << it.arguments << run.out;
    EXPECT_TRUE(FileBytes(Path("p.zprg")) == before) << it.arguments;
  }
  EXPECT_EQ(Edit("poly=8 -o " + Quoted("q.zprg")).status, 0);
  EXPECT_TRUE(Has(Edit("poly=9 -o " + Quoted("q.zprg")).out, "q.zprg: replaced a program"));
  EXPECT_TRUE(FileBytes(Path("p.zprg")) == before);
  const Program written;
  ASSERT_TRUE(written("Read", Path("q.zprg"), 0).Bool());
  EXPECT_EQ(written("PRGpoly").Int(), 8);
}

TEST_F(ProgramVerbs, EditReadsAndPrintsUnitsAndNames) {
  const struct {
    const char* change;
    const char* prints;
    const char* method;
    int stored;
  } cases[] = {{"KGtune=+5ct", "0 st  ->  5.1 ct", "KGtune", 13},
               {"KGtune=-0.5st", "5.1 ct  ->  -44.9 ct", "KGtune", -115},
               {"KGtune=-1", "-44.9 ct  ->  -1.449 st", "KGtune", -371},
               {"'KGtune=2 st'", "->  2 st", "KGtune", 512},
               {"KGtune=7 --raw", "512  ->  7", "KGtune", 7},
               {"KGfixedRateDetune=3hz", "0 Hz  ->  3 Hz", "KGfixedRateDetune", 3},
               {"KGfilterType='lp4 r'", "LP2  ->  LP4 R", "KGfilterType", 3},
               {"KGmuteGroup=4", "Off  ->  4", "KGmuteGroup", 4},
               {"KGfilterFreq=150 --raw", "99  ->  150", "KGfilterFreq", 150}};
  for (const auto& it : cases) {
    const Finished run = Edit(it.change);
    EXPECT_TRUE(run.status == 0 && Has(run.out, it.prints)) << it.change << run.out;
    EXPECT_EQ(Read(it.method), std::vector<int>(12, it.stored)) << it.change;
  }
  EXPECT_EQ(Edit("poly=20 midiChannel=Omni PRGbendRangeUp=1oct").status, 0);
  const std::string shown = Zyl("show " + Quoted("p.zprg")).out;
  EXPECT_TRUE(Has(shown, "20 voices, MIDI channel Omni")) << shown;
  const Finished texts = Zyl("run " ZYL_SOURCE "/tests/verbs/Units.lua " ZYL_SOURCE, true);
  EXPECT_EQ(texts.status, 0) << texts.out;
}

TEST_F(ProgramVerbs, EditKeepsKeysOnTheKeyboard) {
  const Finished run = Edit("KGlowKey=+50 KGhighKey=+30");
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(Has(run.out, "KGlowKey of keygroup 9-12 clamped to G8 (127)")) << run.out;
  EXPECT_TRUE(Has(run.out, "KGhighKey of keygroup 10-12 clamped to G8 (127)")) << run.out;
  EXPECT_EQ(Read("KGlowKey"),
            (std::vector<int>{50, 60, 70, 80, 90, 100, 110, 120, 127, 127, 127, 127}));
  EXPECT_TRUE(Has(Edit("KGlowKey=-1oct PRGlowKey=-1").out, "not a number")) << run.out;
  EXPECT_TRUE(Has(Edit("KGlowKey=-99").out, "keygroup 1-5 clamped to C-2 (0)")) << run.out;
}

TEST_F(ProgramVerbs, VerifyDetectsEveryField) {
  const std::string both = Quoted("p.zprg") + " " + Quoted("q.zprg");
  const struct {
    const char* change;
    const char* says;
  } cases[] = {{"poly=3", "PRGpoly"},
               {"KGenv3Rate4=1 --keygroups 12", "keygroup 12"},
               {"velStart=1 --zones 4 --keygroups 2", "keygroup 2 zone 4"},
               {"'masterDetune[12]=1'", "PRGmasterDetune[12]"},
               {"KGSelect=on --keygroups 9", "KGSelect"},
               {"ZoneSamplePath=other.wav --zones 3", "keygroup 1-12 zone 3"}};
  for (const auto& it : cases) {
    EXPECT_EQ(Edit(it.change + std::string(" -o ") + Quoted("q.zprg")).status, 0) << it.change;
    const Finished run = Zyl("verify " + both);
    EXPECT_EQ(run.status, 1) << it.change;
    EXPECT_TRUE(Has(run.out, it.says)) << it.change << run.out;
  }
  std::filesystem::copy_file(Path("p.zprg"), Path("same.zprg"));
  EXPECT_EQ(Zyl("verify " + Quoted("p.zprg") + " " + Quoted("same.zprg")).status, 0);
  EXPECT_EQ(Zyl("verify " + Quoted("p.zprg") + " " + Quoted("missing.zprg")).status, 4);
  std::ofstream(Path("bad")) << "no program";
  // Folders: files with the same names are compared.
  for (const char* name : {"A/in/p.zprg", "B/in/p.zprg", "A/in/only.zprg"}) {
    std::filesystem::create_directories(std::filesystem::path(Path(name)).parent_path());
    std::filesystem::copy_file(Path("p.zprg"), Path(name));
  }
  const std::string folders = Quoted("A") + " " + Quoted("B");
  EXPECT_EQ(Zyl("verify " + folders).status, 4) << "nothing to compare";
  Finished compared = Zyl("verify -r " + folders);
  EXPECT_EQ(compared.status, 1);
  EXPECT_EQ(compared.out, "in/only.zprg: only in A\n1 of 2 files are the same\n");
  std::filesystem::remove(Path("A/in/only.zprg"));
  EXPECT_EQ(Zyl("verify -r " + folders).status, 0);
  EXPECT_EQ(Zyl("edit poly=2 " + Quoted("B/in")).status, 0);
  EXPECT_TRUE(Has(Zyl("verify -r --json " + folders).out, "PRGpoly"));
  EXPECT_EQ(Zyl("verify " + Quoted("A") + " " + Quoted("p.zprg")).status, 2);
  const Finished bad = Zyl("verify --json " + Quoted("p.zprg") + " " + Quoted("bad"));
  EXPECT_EQ(bad.status, 4);
  EXPECT_TRUE(Has(bad.out, "neither a program nor a readable sound") &&
              Has(bad.out, "\"same\": null"))
      << bad.out;
}

TEST_F(ProgramVerbs, VerifyComparesSamples) {
  const std::string both = Tone("a.wav", 220) + " " + Tone("b.wav", 220);
  EXPECT_EQ(Zyl("loops --write --min-quality -99 " + Quoted("b.wav")).status, 0);
  Finished run = Zyl("verify " + both);
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(Has(run.out, "loops") && !Has(run.out, "channel 1")) << run.out;
  std::string bytes = FileBytes(Path("a.wav"));
  bytes[44 + 2 * 1234] ^= 1;
  std::ofstream(Path("a.wav"), std::ios::binary) << bytes;
  EXPECT_TRUE(Has(Zyl("verify " + both).out, "differs from frame 1234 on"));
  EXPECT_EQ(Zyl("verify " + Quoted("a.wav") + " " + Quoted("p.zprg")).status, 2);
}

TEST_F(ProgramVerbs, FindMatchesKeyVelocityAndPlayRange) {
  const struct {
    const char* arguments;
    int status;
    std::vector<const char*> has;
    std::vector<const char*> hasNot;
  } cases[] = {
      {"45 P", 0, {"\"keygroup\": 5", "s4.wav", "loud.wav"}, {"s5.wav"}},
      {"A1 --velocity 99 P", 0, {"s4.wav"}, {"loud.wav"}},
      {"A1 --velocity 100 P", 0, {"loud.wav", "\"zone\": 2"}, {"s4.wav"}},
      {"120 P", 1, {}, {"wav"}},
      {"128 P", 2, {}, {}},
      {"45 P missing.zprg", 4, {"s4.wav"}, {}},
  };
  for (const auto& it : cases) {
    std::string arguments = it.arguments;
    arguments.replace(arguments.find(" P") + 1, 1, Quoted("p.zprg"));
    const Finished run = Zyl("find --json " + arguments);
    EXPECT_EQ(run.status, it.status) << arguments << run.out;
    for (const char* part : it.has) EXPECT_TRUE(Has(run.out, part)) << arguments << run.out;
    for (const char* part : it.hasNot) EXPECT_FALSE(Has(run.out, part)) << arguments << run.out;
  }
  EXPECT_EQ(Edit("PRGhighKey=40").status, 0);
  EXPECT_EQ(Zyl("find 45 " + Quoted("p.zprg")).status, 1);
}

// The default action of SIGXFSZ would terminate the program.
TEST_F(ProgramVerbs, AFileSizeLimitFailsTheSave) {
  const std::string before = FileBytes(Path("p.zprg"));
  const Finished run =
      Shell("ulimit -f 1; " ZYL_PROGRAM " edit " + Quoted("p.zprg") + " PRGpoly=3", true);
  EXPECT_EQ(run.status, 4) << run.out;
  EXPECT_TRUE(Has(run.out, "File too large")) << run.out;
  EXPECT_EQ(FileBytes(Path("p.zprg")), before);
}

TEST_F(ProgramVerbs, PresetsListsBanksInOrderAndReportsBadFiles) {
  const auto chunk = [](const std::string& id, const std::string& data) {
    const auto size = static_cast<uint32_t>(data.size());
    return id + std::string(reinterpret_cast<const char*>(&size), 4) + data;
  };
  const auto preset = [](std::string name, int bank, int program) {
    name.resize(38);
    name[20] = static_cast<char>(program);
    name[22] = static_cast<char>(bank);
    return name;
  };
  const std::string headers = preset("Drums", 127, 0) + preset("Flute 2", 1, 9) +
                              preset("Flute", 0, 73) + preset("Grand", 0, 0) + preset("EOP", 0, 0);
  // Compressed sound of odd length without a padding byte, as some writers store it.
  const std::string sound = chunk("LIST", "sdta" + chunk("smpl", "Ogg"));
  const std::string list = chunk("LIST", "pdta" + chunk("phdr", headers));
  std::ofstream(Path("bank.sf3"), std::ios::binary) << chunk("RIFF", "sfbk" + sound + list);
  const std::string files = Quoted("p.zprg") + " " + Quoted("bank.sf3");
  const Finished run = Zyl("presets " + files);
  EXPECT_EQ(run.status, 4);
  EXPECT_EQ(run.out, Path("bank.sf3") +
                         "\n  bank  program  name\n     0        0  Grand\n     0       73  Flute\n"
                         "     1        9  Flute 2\n   127        0  Drums\n");
  const Finished asJson = Zyl("presets --json " + files);
  EXPECT_TRUE(Has(asJson.out, "\"error\"") && Number(asJson.out, "program") == 0) << asJson.out;
}

}  // namespace
}  // namespace zyl::test
