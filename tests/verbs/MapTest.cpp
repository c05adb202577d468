// zyl map: the sources of root keys, and the ranges of the mapped samples.
#include <algorithm>
#include <map>
#include <numeric>
#include <random>

#include "verbs/VerbTools.h"

namespace zyl::test {
namespace {

// The JSON object of a file in a list of them.
std::string Of(const std::string& json, const std::string& file) {
  const size_t at = json.find(file + "\"");
  return at == std::string::npos ? "" : json.substr(at, json.find('\n', at) - at);
}

class Map : public Verbs {
 protected:
  Finished RunMap(const std::string& arguments) const { return Zyl("map --json " + arguments); }
};

TEST_F(Map, ReadsNotesAndLayersInNames) {
  // Silence: names alone decide.
  struct Case {
    const char* name;
    int key;
    int lowVelocity;
    int highVelocity;
  };
  const std::vector<std::vector<Case>> batches = {
      {{"Piano_C#3_v2.wav", 49, 64, 127}, {"Piano_C#3_v1.wav", 49, 0, 63}},
      {{"Bb2 vel40.wav", 46, 0, 60}, {"Bb2 vel80.wav", 46, 61, 127}},
      {{"Bb2 v40.wav", 46, 0, 60}, {"Bb2 v80.wav", 46, 61, 127}},
      {{"Eb-1_pp.wav", 3, 0, 72}, {"Eb-1_ff.wav", 3, 73, 127}, {"Cb4.wav", 59, 0, 127}},
      {{"PadF4Soft.flute.wav", 65, 0, 127},
       {"Pad C-4.wav", 60, 0, 127},
       {"Pad_as2.wav", 46, 0, 127}},
      {{"B3 organ C2.wav", 36, 0, 127}, {"B3 organ E2.wav", 40, 0, 127}},
      {{"k-060-064.wav", 60, 0, 95}, {"k-060-127.wav", 60, 96, 127}, {"k-067-064.wav", 67, 0, 127}},
      {{"note 50.wav", 50, 0, 127}, {"note 21.wav", 21, 0, 127}},
  };
  for (const auto& batch : batches) {
    std::string files;
    for (const Case& it : batch) {
      WriteWave(Path(it.name), {std::vector<int16_t>(5000)});
      files += " " + Quoted(it.name);
    }
    const Finished run = RunMap("--dry-run --name-octave 4" + files);
    for (const Case& it : batch) {
      const std::string object = Of(run.out, it.name);
      EXPECT_EQ(Number(object, "key"), it.key) << it.name << run.out;
      EXPECT_EQ(Number(object, "low_velocity"), it.lowVelocity) << it.name;
      EXPECT_EQ(Number(object, "high_velocity"), it.highVelocity) << it.name;
    }
  }
}

TEST_F(Map, AcceptsAnyName) {
  const Finished run = Zyl("run " ZYL_SOURCE "/tests/verbs/Names.lua " ZYL_SOURCE, true);
  EXPECT_EQ(run.status, 0) << run.out;
  std::filesystem::create_directories(Path("empty"));
  const Finished none = Zyl("map --json --dry-run " + Quoted("empty"));
  EXPECT_EQ(none.status, 4);
  EXPECT_EQ(none.out, "[]\n");
}

TEST_F(Map, CountingNumbersAreNotKeys) {
  std::string files;
  for (const char* name : {"take 01.wav", "take 02.wav", "take 03.wav"}) {
    WriteWave(Path(name), {std::vector<int16_t>(5000)});
    files += " " + Quoted(name);
  }
  const Finished run = RunMap("--dry-run" + files);
  EXPECT_EQ(run.status, 4);
  EXPECT_TRUE(Has(run.out, "no root key")) << run.out;
}

TEST_F(Map, PrefersChunksThenNamesThenPitch) {
  Recording("s/C4.wav", 57);
  EXPECT_EQ(Zyl("pitch --set " + Quoted("s/C4.wav")).status, 0);  // the chunk says 57
  Recording("s/G4.wav", 62);
  Recording("s/mystery.wav", 71.2);
  const std::string all = RunMap("--dry-run --name-octave 4 " + Quoted("s")).out;
  EXPECT_EQ(Number(Of(all, "s/C4.wav"), "key"), 57) << all;
  EXPECT_EQ(Number(Of(all, "s/G4.wav"), "key"), 67);
  EXPECT_EQ(Number(Of(all, "s/mystery.wav"), "key"), 71);
  EXPECT_NEAR(Number(Of(all, "s/mystery.wav"), "cents"), 20, 2);
  const std::string names =
      RunMap("--dry-run --name-octave 4 --from name,pitch " + Quoted("s")).out;
  EXPECT_EQ(Number(Of(names, "s/C4.wav"), "key"), 60);
  const Finished checked = Zyl("map --check --name-octave 4 " + Quoted("s"), true);
  EXPECT_TRUE(Has(checked.out, "C4.wav: chunk A2 (57), name C3 (60), pitch A2 (57)"))
      << checked.out;
  EXPECT_TRUE(Has(checked.out, "G4.wav: name G3 (67), pitch D3 (62)"));
}

TEST_F(Map, InfersTheOctaveFromThePitches) {
  for (const int key : {48, 52, 55, 60}) {
    static const std::map<int, const char*> kNames = {
        {48, "C2"}, {52, "E2"}, {55, "G2"}, {60, "C3"}};  // C3 is 60 here
    Recording(std::string("low/") + kNames.at(key) + ".wav", key);
  }
  const std::string automatic = RunMap("--dry-run " + Quoted("low")).out;
  EXPECT_EQ(Number(Of(automatic, "C3.wav"), "key"), 60) << automatic;
  EXPECT_FALSE(Has(Zyl("map --dry-run " + Quoted("low"), true).out, "--name-octave"));
  const Finished other = Zyl("map --dry-run --octave 4 " + Quoted("low"), true);
  EXPECT_TRUE(Has(other.out, "--name-octave 3") && Has(other.out, "C4 (60)")) << other.out;
  EXPECT_EQ(Number(Of(RunMap("--dry-run --name-octave 4 " + Quoted("low")).out, "C3.wav"), "key"),
            48);
}

// Programs that do not know the key write 60, as here with the loops.
TEST_F(Map, VerifiesChunksOfKeySixty) {
  struct Case {
    const char* name;
    double note;
    const char* source;
  };
  const std::vector<std::vector<Case>> batches = {
      {{"C2.wav", 36, "name"}, {"E2.wav", 40, "name"}, {"G2.wav", 43, "name"}},
      {{"Take01.wav", 36, "pitch"}, {"Take02.wav", 60, "chunk"}, {"Take03.wav", 67, "pitch"}},
      {{"only.wav", 52, "pitch"}},
      {{"C4.wav", 60, "chunk"}},
      {{"C3.wav", 60, "chunk"}},  // where C3 is key 60
  };
  for (size_t i = 0; i < batches.size(); ++i) {
    const std::string folder = std::to_string(i);
    for (const Case& it : batches[i]) Recording(folder + "/" + it.name, it.note);
    EXPECT_EQ(Zyl("loops --write --min-quality -99 " + Quoted(folder)).status, 0);
    const std::string out = RunMap("--dry-run " + Quoted(folder)).out;
    for (const Case& it : batches[i]) {
      const std::string object = Of(out, folder + "/" + it.name);
      EXPECT_EQ(Number(object, "key"), it.note) << folder << object;
      EXPECT_TRUE(Has(object, std::string("\"source\": \"") + it.source)) << folder << object;
    }
  }
  const Finished quiet = Zyl("map --quiet --dry-run --from chunk " + Quoted("1"), true);
  EXPECT_TRUE(Has(quiet.out, "1 of 3 files left out")) << quiet.out;
}

TEST_F(Map, WritesRangesLayersAndTuning) {
  Recording("p/x C2.wav", 36);
  Recording("p/x C3_v1.wav", 48);
  for (int layer = 2; layer <= 6; ++layer) {
    Recording("p/x C3_v" + std::to_string(layer) + ".wav", 48);
  }
  Recording("p/odd.wav", 59.3);
  const Finished run = Zyl("map " + Quoted("p") + " -o " + Quoted("p.zprg"), true);
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_TRUE(Has(run.out, "4 keygroups, 8 samples")) << run.out;
  const Program program;
  ASSERT_TRUE(program("Read", Path("p.zprg")).Bool());
  const int ranges[][2] = {{0, 42}, {43, 53}, {43, 53}, {54, 127}};
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(program("KGlowKey", k).Int(), ranges[k][0]);
    EXPECT_EQ(program("KGhighKey", k).Int(), ranges[k][1]);
    EXPECT_TRUE(program("ZoneSampleExists", k, 0).Bool());
  }
  for (int layer = 0; layer < 6; ++layer) {
    const int k = 1 + layer / 4;
    EXPECT_EQ(program("Zonename", k, layer % 4).Text(), "x C3_v" + std::to_string(layer + 1));
    EXPECT_EQ(program("ZonelowVel", k, layer % 4).Int(), 128 * layer / 6);
    EXPECT_EQ(program("ZonehighVel", k, layer % 4).Int(), 128 * (layer + 1) / 6 - 1);
  }
  const Finished four = Zyl("map --layers 4 --dry-run " + Quoted("p"), true);
  EXPECT_TRUE(Has(four.out, "v2.wav: left out: more than 4 layers")) << four.out;
  EXPECT_TRUE(Has(four.out, "v5.wav: left out: more than 4 layers")) << four.out;
  EXPECT_TRUE(Has(four.out, "3 keygroups, 6 samples")) << four.out;
  // A file without a root key has key 60; the zone corrects it.
  EXPECT_EQ(program("ZonetuneOffset", 0, 0).Int(), (60 - 36) * 256);
  EXPECT_NEAR(program("ZonetuneOffset", 3, 0).Int(), (60 - 59.3) * 256, 3);
}

TEST_F(Map, StereoFilesBecomePairsOfZones) {
  std::string files;
  for (int16_t layer = 1; layer <= 3; ++layer) {
    const std::string name = "C3 v" + std::to_string(layer) + ".wav";
    WriteWave(Path(name), {std::vector<int16_t>(50, layer), std::vector<int16_t>(50, -layer)});
    files += " " + Quoted(name);
  }
  WriteWave(Path("C5.wav"), {std::vector<int16_t>(50, 5), std::vector<int16_t>(50, 6),
                             std::vector<int16_t>(50, 7)});
  files += " " + Quoted("C5.wav");
  const Finished run = Zyl("map --name-octave 4 -o " + Quoted("st.zprg") + files, true);
  EXPECT_TRUE(Has(run.out, "C5.wav: 3 channels: channels 1 and 2 are taken")) << run.out;
  EXPECT_TRUE(Has(run.out, "3 keygroups, 4 samples")) << run.out;
  const struct {
    int keygroup, zone, value, pan, lowVelocity;
  } zones[] = {{0, 0, 1, -50, 0},  {0, 1, -1, 50, 0},  {0, 2, 2, -50, 42}, {0, 3, -2, 50, 42},
               {1, 0, 3, -50, 85}, {1, 1, -3, 50, 85}, {2, 0, 5, -50, 0},  {2, 1, 6, 50, 0}};
  const Program program;
  ASSERT_TRUE(program("Read", Path("st.zprg")).Bool());
  for (const auto& it : zones) {
    RIOObject* sample = program("SampleGet", it.keygroup, it.zone).Object();
    EXPECT_EQ(program("SampleValue", sample, 20).Int(), it.value) << it.keygroup << it.zone;
    EXPECT_EQ(program("ZonepanOffset", it.keygroup, it.zone).Int(), it.pan);
    EXPECT_EQ(program("ZonelowVel", it.keygroup, it.zone).Int(), it.lowVelocity);
    EXPECT_EQ(program("KGhighKey", it.keygroup).Int(), it.keygroup < 2 ? 60 : 127);
  }
  // The verbs show a pair as one sample.
  const std::string program1 = Quoted("st.zprg");
  EXPECT_TRUE(Has(Zyl("show " + program1).out, "3+4     42–84   12 st  ±50  stereo"));
  EXPECT_TRUE(Has(Zyl("find 50 --velocity 99 " + program1).out,
                  "2   1+2  C-2–C3 (0–60)      85-127  stereo"));
  EXPECT_EQ(Zyl("view " + program1 + " -o " + Quoted("st.svg")).status, 0);
  const std::string picture = FileBytes(Path("st.svg"));
  EXPECT_TRUE(Has(picture, ">3+4<") && Has(picture, ">Stereo<") && !Has(picture, ">Right<"));

  const struct {
    const char* mono;
    int zones;
    int channel;
  } modes[] = {{"left", 1, 0}, {"right", 1, 1}, {"mix", 2, 0}};
  for (const auto& it : modes) {
    EXPECT_EQ(Zyl("map -o " + Quoted("m.zprg") + " --mono " + it.mono + files).status, 0);
    ASSERT_TRUE(program("Read", Path("m.zprg")).Bool());
    EXPECT_EQ(program("SampleChannel", 0, 0).Int(), it.channel) << it.mono;
    EXPECT_EQ(program("ZonepanOffset", 0, 0).Int(), 0) << it.mono;
    EXPECT_EQ(program("SampleChannel", 0, 1).Int(), it.channel + it.zones - 1) << it.mono;
  }
  EXPECT_EQ(Zyl("map -o " + Quoted("m.zprg") + " --mono both" + files).status, 2);
}

TEST_F(Map, OrdersLayersByLoudnessAndLeavesOutRoundRobins) {
  struct Case {
    const char* name;
    double note;
    double peak;
    int lowVelocity;  // -1: left out as a round robin; -2: left out for other reasons
    int highVelocity;
  };
  const Case cases[] = {
      // No layers in the names: ordered by loudness. 0.5 and 0.55 differ by 0.8 dB.
      {"l/rec 9.wav", 57, 0.05, 0, 41},
      {"l/rec 4.wav", 57, 0.9, 85, 127},
      {"l/rec 2.wav", 57, 0.5, 42, 84},
      {"l/rec 7.wav", 57, 0.55, -1, 0},
      {"l/tone.wav", 57, 0.56, -2, 0},
      // Round robins by name, in spite of their loudness.
      {"l/E4 soft rr2.wav", 64, 0.9, -1, 0},
      {"l/E4 soft rr1.wav", 64, 0.1, 0, 75},
      {"l/E4 hard rr1.wav", 64, 0.1, 76, 127},
      // Takes that rise in small steps are layers, not round robins.
      {"l/C5_1.wav", 72, 0.50, 0, 24},
      {"l/C5_2.wav", 72, 0.53, 25, 50},
      {"l/C5_3.wav", 72, 0.56, 51, 75},
      {"l/C5_4.wav", 72, 0.59, 76, 101},
      {"l/C5_5.wav", 72, 0.62, 102, 127},
  };
  std::filesystem::create_directories(Path("l"));
  for (const Case& it : cases) {
    WriteWave(Path(it.name), {Note(kInstruments[0], HertzOfKey(it.note), 0.6, 11, it.peak)});
  }
  const Finished run = Zyl("map --json --name-octave 4 --dry-run " + Quoted("l"), true);
  for (const Case& it : cases) {
    const std::string object = Of(run.out, Path(it.name));
    EXPECT_EQ(Number(object, "key"), it.note) << object;
    if (it.lowVelocity < 0) {
      const char* reason = it.lowVelocity == -1 ? "round robin of " : "same key and loudness as ";
      EXPECT_TRUE(Has(object, std::string("\"left_out\": \"") + reason)) << object;
      EXPECT_TRUE(Has(run.out, "zyl map: " + Path(it.name) + ": left out: " + reason));
    } else {
      EXPECT_EQ(Number(object, "low_velocity"), it.lowVelocity) << object;
      EXPECT_EQ(Number(object, "high_velocity"), it.highVelocity) << object;
    }
  }
  EXPECT_TRUE(Has(run.out, "those of 2 keys are in order of loudness")) << run.out;
  EXPECT_TRUE(Has(run.out, "3 of 13 files left out"));
}

TEST_F(Map, FindsTheColumnOfKeysByPitch) {
  const struct {
    std::vector<const char*> names;
    const char* says;
  } cases[] = {
      {{"Vib 064 55", "Vib 100 55", "Vib 064 60", "Vib 100 60"},
       "column 2 of their numbers has the keys, column 1 the velocities (4 of 4 pitches)"},
      {{"55 064", "55 100", "60 064", "60 100"},
       "column 1 of their numbers has the keys, column 2 the velocities (4 of 4 pitches)"}};
  for (size_t i = 0; i < std::size(cases); ++i) {
    const std::string folder = std::to_string(i);
    for (size_t k = 0; k < 4; ++k) {
      Recording(folder + "/" + cases[i].names[k] + ".wav", Has(cases[i].names[k], "55") ? 55 : 60);
    }
    const Finished run = Zyl("map --json --dry-run " + Quoted(folder), true);
    EXPECT_TRUE(Has(run.out, cases[i].says)) << run.out;
    for (const char* name : cases[i].names) {
      const std::string object = Of(run.out, folder + "/" + name + ".wav");
      EXPECT_EQ(Number(object, "key"), Has(name, "55") ? 55 : 60) << object;
      EXPECT_EQ(Number(object, "low_velocity"), Has(name, "100") ? 83 : 0) << object;
    }
  }
}

TEST_F(Map, PitchDecidesWhereItContradictsNames) {
  struct File {
    const char* name;
    double note;
    int key;
    const char* source;
  };
  const struct {
    std::vector<File> files;
    const char* says;
  } batches[] = {
      {{{"a-60-40", 60, 60, "name"}, {"a-60-80", 60, 60, "name"}, {"a-60-99", 60, 60, "name"}},
       "column 1 of their numbers has the keys, column 2 the velocities (3 of 3 pitches)"},
      {{{"Take_51", 40, 40, "pitch"}, {"Take_52", 47, 47, "pitch"}, {"Take_53", 71, 71, "pitch"}},
       "their numbers do not match the pitches: not used"},
      {{{"organ 48", 36, 48, "name"}, {"organ 55", 43, 55, "name"}},
       "2 of 2 pitches are 12 keys below their numbers"},
      {{{"Klavier Es4", 63, 63, "name"}}, "C4 is key 60"},
      {{{"Piano_C3", 60, 60, "name"}}, ""},
      {{{"x C4", 60, 60, "name"}, {"x E4", 64, 64, "name"}, {"x G4", 68, 68, "pitch"}},
       "x G4.wav: name G3 (67), pitch G#3 (68): the pitch is used"},
      {{{"x C4", 60, 60, "name"}, {"x E4", 64, 64, "name"}, {"x E5", 64, 76, "name"}},
       "x E5.wav: name E4 (76), pitch E3 (64): the name is used"},
  };
  for (size_t i = 0; i < std::size(batches); ++i) {
    const std::string folder = std::to_string(i);
    for (const File& it : batches[i].files) Recording(folder + "/" + it.name + ".wav", it.note);
    const Finished run = Zyl("map --json --dry-run " + Quoted(folder), true);
    EXPECT_TRUE(Has(run.out, batches[i].says)) << run.out;
    for (const File& it : batches[i].files) {
      const std::string object = Of(run.out, folder + "/" + it.name + ".wav");
      EXPECT_EQ(Number(object, "key"), it.key) << object;
      EXPECT_TRUE(Has(object, std::string("\"source\": \"") + it.source)) << object;
    }
  }
}

TEST_F(Map, JoinsMonoFilesMarkedLeftAndRight) {
  for (const char* name : {"P60_L", "P60_R", "P65-left", "P65-right"}) {
    Recording(std::string("lr/") + name + ".wav", Has(name, "60") ? 60 : 65);
  }
  Recording("lr/P71_L.wav", 71, 0.6);
  Recording("lr/P71_R.wav", 71, 0.9);
  const Finished run = Zyl("map " + Quoted("lr") + " -o " + Quoted("lr.zprg"), true);
  EXPECT_TRUE(Has(run.out, "P60_L.wav + P60_R.wav")) << run.out;
  EXPECT_TRUE(Has(run.out, "P71_L.wav: not joined with ")) << run.out;
  const Program program;
  ASSERT_TRUE(program("Read", Path("lr.zprg")).Bool());
  const char* names[][2] = {{"P60_L", "P60_R"}, {"P65-left", "P65-right"}};
  for (int k = 0; k < 2; ++k) {
    for (int z = 0; z < 2; ++z) {
      EXPECT_EQ(program("Zonename", k, z).Text(), names[k][z]);
      EXPECT_EQ(program("ZonepanOffset", k, z).Int(), z == 0 ? -50 : 50);
      EXPECT_EQ(program("ZonehighVel", k, z).Int(), 127);
    }
  }
  const Finished right = RunMap("--mono right --dry-run " + Quoted("lr"));
  EXPECT_TRUE(Has(Of(right.out, "P60_L.wav"), "\"left_out\": \"--mono right\"")) << right.out;
  EXPECT_EQ(Number(Of(right.out, "P60_R.wav"), "zone"), 1) << right.out;
  EXPECT_TRUE(Has(Zyl("map --unstacked --drums 36 --dry-run " + Quoted("lr")).out,
                  "4 keygroups, 4 samples"));
}

TEST_F(Map, TakesOfADrumShareAKey) {
  const std::pair<const char*, int16_t> drums[] = {{"d/Kick.wav", 900},
                                                   {"d/Snare 1.wav", 9000},
                                                   {"d/Snare 2.wav", 900},
                                                   {"d/Snare 3.wav", 905},
                                                   {"d/rim/Snare 1.wav", 905}};
  std::filesystem::create_directories(Path("d/rim"));
  for (const auto& [name, value] : drums) {
    std::vector<int16_t> sound(300);
    for (size_t i = 0; i < sound.size(); ++i) sound[i] = i % 20 < 10 ? value : -value;
    WriteWave(Path(name), {sound, sound});
  }
  const Finished run = Zyl("map --drums 36 " + Quoted("d") + " -o " + Quoted("kit.zprg"), true);
  EXPECT_TRUE(Has(run.out, "Snare 3.wav: left out: round robin of ")) << run.out;
  const Program program;
  ASSERT_TRUE(program("Read", Path("kit.zprg")).Bool());
  EXPECT_EQ(program("KGlowKey", 1).Int(), 37);
  EXPECT_EQ(program("KGhighKey", 1).Int(), 37);
  EXPECT_EQ(program("ZoneconstantPitch", 1, 3).Int(), 1);
  EXPECT_EQ(program("Zonename", 1, 1).Text(), "Snare 2");
  EXPECT_EQ(program("Zonename", 1, 3).Text(), "Snare 1");
  EXPECT_EQ(program("ZonelowVel", 1, 3).Int(), 64);
  EXPECT_EQ(program("SampleChannel", 1, 3).Int(), 1);
  EXPECT_TRUE(Has(Zyl("map --unstacked --drums 36 --dry-run " + Quoted("d")).out, "4 keygroups"));
  // Folders hold different drums.
  EXPECT_TRUE(Has(Zyl("map --recursive --drums 36 --dry-run " + Quoted("d")).out,
                  "3 keygroups, 4 samples"));
}

TEST_F(Map, RefusesToOverwriteASampleAndSkipsABadFile) {
  Recording("m/C3.wav", 48);
  std::ofstream(Path("m/E3.wav")) << "no sound";
  EXPECT_EQ(Zyl("map " + Quoted("m") + " -o " + Quoted("m/C3.wav")).status, 2);
  EXPECT_EQ(Zyl("map " + Quoted("m") + " -o " + Quoted("m.zprg")).status, 4);
  EXPECT_TRUE(Has(Zyl("find 48 " + Quoted("m.zprg")).out, "C3.wav"));
  EXPECT_EQ(Zyl("map --dry-run " + Quoted("m") + " -o " + Quoted("dry.zprg")).status, 4);
  EXPECT_FALSE(std::filesystem::exists(Path("dry.zprg")));
}

// 88 notes with shuffled names: only the sound gives the root keys.
TEST_F(Map, FindsEveryRootKeyBySound) {
  constexpr double kSeconds = 1.0;
  for (const Instrument& instrument : kInstruments) {
    std::vector<int> keys(88);
    std::iota(keys.begin(), keys.end(), 21);
    std::vector<int> names = keys;
    std::shuffle(names.begin(), names.end(), std::mt19937(5));
    const std::string folder = instrument.name;
    for (size_t i = 0; i < keys.size(); ++i) {
      Recording(folder + "/note " + std::to_string(names[i]) + ".wav", keys[i] + 0.1, kSeconds,
                instrument);
    }
    const Finished run = RunMap("--dry-run --from pitch " + Quoted(folder));
    for (size_t i = 0; i < keys.size(); ++i) {
      // Only keys from 55 Hz to 1.5 kHz must be right.
      if (keys[i] < 33 || keys[i] > 90) continue;
      const std::string object = Of(run.out, "note " + std::to_string(names[i]) + ".wav");
      EXPECT_EQ(Number(object, "key"), keys[i]) << folder << object;
      EXPECT_NEAR(Number(object, "cents"), 10, 5) << folder << object;
    }
  }
}

}  // namespace
}  // namespace zyl::test
