// zyl export: what players read in the files, with readers that share no code with the writers.
#include <map>
#include <set>
#include <sstream>

#include "verbs/VerbTools.h"

namespace zyl::test {
namespace {

namespace fs = std::filesystem;

using Opcodes = std::map<std::string, std::string>;

// The regions of an SFZ text with what they inherit. A value ends at the next "name=".
std::vector<Opcodes> ReadSfz(const std::string& text) {
  std::map<std::string, Opcodes> level;
  std::vector<Opcodes> regions;
  std::string header;
  const auto close = [&] {
    if (header != "region") return;
    Opcodes all = level["region"];
    all.merge(level["group"]);
    all.merge(level["global"]);
    regions.push_back(all);
  };
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    line = line.substr(0, line.find("//"));
    if (line.starts_with("<")) {
      close();
      header = line.substr(1, line.find('>') - 1);
      level[header].clear();
      continue;
    }
    std::istringstream words(line);
    std::string name;
    for (std::string word; words >> word;) {
      const size_t equals = word.find('=');
      if (equals == std::string::npos) {
        level[header][name] += " " + word;
      } else {
        name = word.substr(0, equals);
        level[header][name] = word.substr(equals + 1);
      }
    }
  }
  close();
  return regions;
}

uint32_t U(const std::string& bytes, size_t at, size_t width) {
  uint32_t value = 0;
  for (size_t i = width; i-- > 0;) value = value << 8 | static_cast<uint8_t>(bytes.at(at + i));
  return value;
}

// Whether every character of two bytes is complete.
bool IsWhole(const std::string& text) {
  int open = 0;
  for (const char c : text) open += (c & 0xE0) == 0xC0 ? 1 : (c & 0xC0) == 0x80 ? -1 : 0;
  return open == 0;
}

struct Header {
  std::string name;
  uint32_t start, end, loopStart, loopEnd, rate, link, type;
};

// A SoundFont bank: its chunks, and the generators of the zones of an instrument.
struct Bank {
  std::map<std::string, std::string> chunks;

  explicit Bank(const std::string& bytes) {
    EXPECT_EQ(bytes.substr(0, 4) + bytes.substr(8, 4), "RIFFsfbk");
    EXPECT_EQ(U(bytes, 4, 4) + 8, bytes.size());
    Walk(bytes.substr(12));
  }
  void Walk(const std::string& bytes) {
    for (size_t at = 0; at < bytes.size();) {
      const std::string id = bytes.substr(at, 4);
      const uint32_t size = U(bytes, at + 4, 4);
      ASSERT_LE(at + 8 + size, bytes.size()) << id;
      const std::string data = bytes.substr(at + 8, size);
      if (id == "LIST") Walk(data.substr(4));
      chunks[id] = data;
      at += 8 + size + size % 2;
    }
  }
  std::vector<Header> Headers() const {
    std::vector<Header> headers;
    const std::string& shdr = chunks.at("shdr");
    for (size_t at = 0; at + 46 < shdr.size(); at += 46) {
      headers.push_back({std::string(shdr.substr(at, 20).c_str()), U(shdr, at + 20, 4),
                         U(shdr, at + 24, 4), U(shdr, at + 28, 4), U(shdr, at + 32, 4),
                         U(shdr, at + 36, 4), U(shdr, at + 42, 2), U(shdr, at + 44, 2)});
    }
    return headers;
  }
  int Value(size_t frame) const {  // with 24 bits
    const auto upper = static_cast<int16_t>(U(chunks.at("smpl"), 2 * frame, 2));
    return upper * 256 + static_cast<int>(U(chunks.at("sm24"), frame, 1));
  }
  // Zones without the global one, with its generators.
  std::vector<std::map<int, int>> Zones(size_t instrument) const {
    const std::string& ibag = chunks.at("ibag");
    const size_t first = U(chunks.at("inst"), 22 * instrument + 20, 2);
    const size_t end = U(chunks.at("inst"), 22 * instrument + 42, 2);
    std::map<int, int> global;
    std::vector<std::map<int, int>> zones;
    for (size_t bag = first; bag < end; ++bag) {
      std::map<int, int> zone;
      for (size_t g = U(ibag, 4 * bag, 2); g < U(ibag, 4 * bag + 4, 2); ++g) {
        const uint32_t amount = U(chunks.at("igen"), 4 * g + 2, 2);
        const int number = static_cast<int>(U(chunks.at("igen"), 4 * g, 2));
        zone[number] =
            number == 43 || number == 44 ? static_cast<int>(amount) : static_cast<int16_t>(amount);
      }
      if (bag == first && !zone.contains(53)) {
        global = zone;
        continue;
      }
      zone.merge(std::map<int, int>(global));
      zones.push_back(zone);
    }
    return zones;
  }
};

constexpr int kFrames = 600;
int Left(int frame) { return 10001 * frame - 3000000; }
int Right(int frame) { return 77 - 9999 * frame; }

class Export : public Verbs {
 protected:
  void SetUp() override {
    Verbs::SetUp();
    FieldWriter wave(ByteOrder::kLittle);
    wave.Text("RIFF").U32(36 + 6 * kFrames).Text("WAVEfmt ").U32(16).U16(1).U16(2).U32(48000);
    wave.U32(288000).U16(6).U16(24).Text("data").U32(6 * kFrames);
    for (int i = 0; i < kFrames; ++i) {
      for (const int value : {Left(i), Right(i)}) {
        wave.U16(static_cast<uint32_t>(value) & 0xFFFF)
            .U8(static_cast<uint32_t>(value) >> 16 & 255);
      }
    }
    WriteBytes(Path("st.wav"),
               {reinterpret_cast<const char*>(wave.block.data()), wave.block.size()});
    std::vector<int16_t> mono(200);
    for (int i = 0; i < 200; ++i) mono[static_cast<size_t>(i)] = static_cast<int16_t>(100 * i + 1);
    const std::string longName = "Ein Klang äöü äöü äöü";  // cut within a character at 20 bytes
    for (const std::string& name : {std::string("edge"), longName + "1", longName + "2"}) {
      WriteWave(Path(name + ".wav"), {mono});
    }
    mono[0] = 7;
    WriteWave(Path("drum.wav"), {mono});
    EXPECT_EQ(Zyl("sample --set loops=100-499 " + Quoted("st.wav")).status, 0);
    EXPECT_EQ(Zyl("sample --set loops=3-12 " + Quoted("edge.wav")).status, 0);
    EXPECT_EQ(
        Zyl("sample --set loops=150-199 'playback=Loop >Rel' " + Quoted(longName + "1.wav")).status,
        0);
    EXPECT_EQ(Zyl("sample --set loops=20-99 start=10 end=150 " + Quoted("drum.wav")).status, 0);
    const struct {
      int keygroup, zone;
      std::string sample;
      int channel, pan, low, high;
    } zones[] = {{0, 0, "st.wav", 0, -50, 0, 127},
                 {0, 1, "st.wav", 1, 50, 0, 127},
                 {1, 0, "edge.wav", 0, 0, 0, 63},
                 {1, 1, longName + "1.wav", 0, 0, 64, 127},
                 {1, 2, longName + "2.wav", 0, 0, 100, 127},
                 {2, 0, "drum.wav", 0, 0, 0, 127},
                 {3, 0, "st.wav", 1, -30, 0, 127}};
    const Program program;
    program.Make(4);
    program("PRGname", "Test");
    program("PRGmidiProg", 7);
    for (const auto& it : zones) {
      program("ZoneSampleSet", it.keygroup, it.zone, Path(it.sample));
      if (it.channel > 0) program("SampleChannel", it.keygroup, it.zone, it.channel);
      program("ZonepanOffset", it.keygroup, it.zone, it.pan);
      program("ZonelowVel", it.keygroup, it.zone, it.low);
      program("ZonehighVel", it.keygroup, it.zone, it.high);
      program("ZonetuneOffset", it.keygroup, it.zone, it.keygroup == 0 ? 3 * 256 + 64 : 0);
    }
    program("KGhighKey", 0, 50);
    program("KGlowKey", 1, 51);
    program("KGlowKey", 2, 61);
    program("KGhighKey", 2, 61);
    program("KGfilterFreq", 0, 60);
    program("KGfilterVel", 0, 10);
    program("KGmuteGroup", 2, 2);
    program("KGfilterEnv2", 0, 10);
    program("KGampVelModAtt", 1, 20);
    program("KGpitchModLFO1", 3, 10);
    program("PRGLFOdepth", 99);
    program("KGenv2Level2", 3, 33);  // not attack, decay, sustain and release
    program("KGenvPitch", 3, 50);
    program("ZoneconstantPitch", 2, 0, 1);
    program("Zoneplaybacktype", 2, 0, 4);
    program("ZoneloudnessOffset", 3, 0, -20);
    program("KGtimeStretchModGain1", 3, 9);
    program("KGtimeStretchModSel1", 3, 5);
    program("PRGLFOSpeedModGain", 9);  // without a source
    program("PRGbendRangeUp", 12);
    ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
  }
};

TEST_F(Export, SfzHasTheOpcodesOfEachRegion) {
  const Finished run = Zyl("export " + Quoted("p.zprg") + " -o " + Quoted("out/p.sfz"));
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(Has(run.out, "KGtimeStretchModGain1, keygroup 4: 9")) << run.out;
  EXPECT_FALSE(Has(run.out, "PRGLFO")) << run.out;
  const auto regions = ReadSfz(FileBytes(Path("out/p.sfz")));
  ASSERT_EQ(regions.size(), 6u);
  const std::string none = "(none)";
  const struct {
    size_t region;
    const char* name;
    std::string text;
  } cases[] = {
      {0, "sample", "../st.wav"},
      {0, "hikey", "50"},
      {0, "pitch_keycenter", "57"},
      {0, "tune", "25"},
      {0, "loop_mode", "loop_continuous"},
      {0, "loop_start", "100"},
      {0, "loop_end", "499"},
      {0, "pan", none},
      {0, "cutoff", "1280"},
      {0, "fil_type", "lpf_2p"},
      {0, "fil_veltrack", "1200"},
      {0, "end", none},
      {0, "bend_up", "1200"},
      {1, "hivel", "63"},
      {1, "cutoff", none},
      {2, "loop_mode", "loop_sustain"},
      {2, "sample", "../Ein Klang äöü äöü äöü1.wav"},
      {3, "loop_mode", "no_loop"},
      {3, "lovel", "100"},
      {4, "loop_mode", "one_shot"},
      {4, "loop_start", none},
      {4, "offset", "10"},
      {4, "end", "150"},
      {4, "pitch_keytrack", "0"},
      {4, "group", "2"},
      {4, "off_by", "2"},
      {5, "sample", "st 2.wav"},
      {5, "pan", "-60"},
      {5, "volume", "-10"},
      {0, "fileg_depth", "1200"},
      {1, "ampeg_vel2attack", "0.0064"},
      {5, "lfo01_pitch", "240"},
      {5, "lfo01_freq", "5"},
      {5, "eg01_level2", "0.3333"},
      {5, "eg01_sustain", "3"},
      {5, "eg01_pitch", "1200"},
      {0, "amp_veltrack", "68.3772"},
  };
  for (const auto& it : cases) {
    const auto found = regions[it.region].find(it.name);
    EXPECT_EQ(found == regions[it.region].end() ? none : found->second, it.text)
        << it.region << " " << it.name;
  }
  const std::string channel = Zyl("sample " + Quoted("out/st 2.wav")).out;
  EXPECT_TRUE(Has(channel, "channels  1") && Has(channel, "600 frames")) << channel;
}

TEST_F(Export, Sf2HasLegalLoopsLinkedPairsAndAllBits) {
  const Finished run = Zyl("export --json " + Quoted("p.zprg") + " -o " + Quoted("p.sf2"));
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(Has(run.out, "PRGbendRangeUp")) << run.out;
  const Bank bank(FileBytes(Path("p.sf2")));
  EXPECT_EQ(U(bank.chunks.at("phdr"), 20, 2), 7u);
  const auto headers = bank.Headers();
  ASSERT_EQ(headers.size(), 7u);  // the same sound alone and in a pair has two
  std::set<std::string> names;
  for (const Header& it : headers) {
    EXPECT_TRUE(names.insert(it.name).second) << it.name;
    EXPECT_TRUE(it.name.size() <= 20 && IsWhole(it.name)) << it.name;
    for (uint32_t i = 0; i < 46; ++i) EXPECT_EQ(bank.Value(it.end + i), 0);
    if (it.loopEnd == it.loopStart) continue;
    EXPECT_GE(it.loopStart, it.start + 8) << it.name;
    EXPECT_GE(it.loopEnd, it.loopStart + 32) << it.name;
    EXPECT_GE(it.end, it.loopEnd + 8) << it.name;
    for (uint32_t i = 0; i < 8; ++i) {
      EXPECT_EQ(bank.Value(it.loopEnd + i), bank.Value(it.loopStart + i)) << it.name << i;
    }
  }
  EXPECT_EQ(headers[0].type * 10 + headers[1].type, 42u);
  EXPECT_EQ(headers[0].link * 10 + headers[1].link, 10u);
  EXPECT_EQ(headers[6].start, headers[1].start);  // stored once
  for (const size_t channel : {0u, 1u}) {
    const Header& it = headers[channel];
    EXPECT_EQ(it.rate * 1000 + it.loopStart - it.start, 48000u * 1000 + 100);
    EXPECT_EQ(it.loopEnd - it.start, 500u);
    for (int i = 0; i < 500; ++i) {
      EXPECT_EQ(bank.Value(it.start + static_cast<uint32_t>(i)), channel == 0 ? Left(i) : Right(i));
    }
  }
  EXPECT_EQ(headers[5].end - headers[5].start, 141u);
  const auto zones = bank.Zones(0);
  ASSERT_EQ(zones.size(), 7u);
  const struct {
    size_t zone;
    int generator, value;
  } cases[] = {
      {0, 17, -500}, {1, 17, 500}, {0, 43, 50 << 8}, {0, 58, 57},      {0, 52, 25},
      {0, 54, 1},    {0, 8, 8749}, {0, 34, -11959},  {2, 44, 63 << 8}, {3, 54, 3},
      {5, 56, 0},    {5, 57, 2},   {5, 38, 8000},    {6, 17, -300},    {6, 48, 100},
      {0, 11, 1200}, {6, 6, 240},  {6, 24, -851},    {6, 7, 1200},
  };
  for (const auto& it : cases) {
    EXPECT_TRUE(zones[it.zone].contains(it.generator) &&
                zones[it.zone].at(it.generator) == it.value)
        << it.zone << " " << it.generator;
  }
  EXPECT_FALSE(zones[5].contains(54));
  const auto modulators = [&](std::vector<uint32_t> record) {  // source, target, amount
    const std::string& imod = bank.chunks.at("imod");
    int count = 0;
    for (size_t at = 0; at < imod.size(); at += 10) {
      count +=
          std::vector<uint32_t>{U(imod, at, 2), U(imod, at + 2, 2), U(imod, at + 4, 2)} == record;
    }
    return count;
  };
  EXPECT_EQ(modulators({0x0502, 48, 0}), 1);    // in place of the standard's
  EXPECT_EQ(modulators({0x0102, 48, 100}), 1);  // 10 dB by velocity
  EXPECT_EQ(modulators({0x0002, 34, 3464}), 3);
  EXPECT_EQ(modulators({0x0002, 8, 1200}), 2);
}

TEST_F(Export, WritesAllOrNothingAndCanBeUndone) {
  fs::copy(Path("p.zprg"), Path("q.zprg"));
  const std::string both = Quoted("p.zprg") + " " + Quoted("q.zprg");
  EXPECT_EQ(Zyl("export " + both + " -o " + Quoted("b.sf2")).status, 0);
  const Bank bank(FileBytes(Path("b.sf2")));
  EXPECT_EQ(bank.chunks.at("phdr").size(), 3u * 38);
  EXPECT_EQ(U(bank.chunks.at("phdr"), 38 + 20, 2), 8u);
  EXPECT_EQ(bank.Headers().size(), 7u);
  EXPECT_EQ(Zyl("undo --last").status, 0);
  EXPECT_FALSE(fs::exists(Path("b.sf2")));
  EXPECT_EQ(Zyl("export --collect " + both + " -o " + Quoted("all/")).status, 0);
  EXPECT_EQ(std::distance(fs::directory_iterator(Path("all")), {}), 2 + 6);
  const struct {
    std::string arguments;
    int status;
    const char* says;
  } cases[] = {
      {both + " -o " + Quoted("b.sfz"), 2, "need a folder"},
      {both + " -o " + Quoted("b.wav"), 2, "not sfz or sf2"},
      {both, 2, "-o OUT is missing"},
      {both + " --collect -o " + Quoted("all"), 4, "exists"},
      {both + " --dry-run -o " + Quoted("b.sf2"), 0, "not written"},
      {Quoted("st.wav") + " " + both + " -o " + Quoted("b.sf2"), 4, "not a program"},
      {Quoted("p.zprg") + " -o " + Quoted("drum.wav/b.sf2"), 4, "nothing was written"},
  };
  for (const auto& it : cases) {
    const Finished run = Zyl("export " + it.arguments, true);
    EXPECT_EQ(run.status, it.status) << it.arguments << run.out;
    EXPECT_TRUE(Has(run.out, it.says)) << it.arguments << run.out;
    EXPECT_FALSE(fs::exists(Path("b.sf2")) || fs::exists(Path("b.sfz"))) << it.arguments;
  }
  fs::remove(Path("edge.wav"));
  const Finished run = Zyl("export " + both + " -o " + Quoted("b.sf2"), true);
  EXPECT_EQ(run.status, 4);
  EXPECT_TRUE(Has(run.out, "edge.wav is missing")) << run.out;
}

TEST_F(Export, PlayRendersLayersPitchAndSides) {
  Tone("soft.wav", 220);
  Tone("loud.wav", 330);
  const Program program;
  program.Make();
  for (const int zone : {0, 1}) {
    program("ZoneSampleSet", 0, zone, Path(zone == 0 ? "soft.wav" : "loud.wav"));
    program("ZonetuneOffset", 0, zone, 256 * 3);
    program("ZonelowVel", 0, zone, zone == 0 ? 0 : 64);
    program("ZonehighVel", 0, zone, zone == 0 ? 63 : 127);
    program("ZonepanOffset", 0, zone, zone == 0 ? -50 : 50);
  }
  ASSERT_TRUE(program("Write", Path("tones.zprg")).Bool());
  const struct {
    const char* note;
    double hertz;
    size_t silentChannel;
  } cases[] = {{"57:63:0.8", 220, 1}, {"57:64:0.8", 330, 0}, {"69:20:0.4", 440, 1}};
  for (const auto& it : cases) {
    const Finished run = Zyl(
        "play " + Quoted("tones.zprg") + " " + it.note + " --force -o " + Quoted("out.wav"), true);
    if (Has(run.out, "is not installed")) GTEST_SKIP() << run.out;
    ASSERT_EQ(run.status, 0) << run.out;
    const std::string bytes = FileBytes(Path("out.wav"));
    const auto value = [&](size_t frame, size_t channel) {
      return static_cast<int32_t>(U(bytes, 44 + 6 * frame + 3 * channel, 3) << 8) / 256.0;
    };
    std::vector<double> rises;  // frames at which the sound rises through 0
    for (size_t i = 1001; i < 16000; ++i) {
      EXPECT_EQ(value(i, it.silentChannel), 0);
      const double before = value(i - 1, 1 - it.silentChannel);
      const double after = value(i, 1 - it.silentChannel);
      if (before < 0 && after >= 0) {
        rises.push_back(static_cast<double>(i) - after / (after - before));
      }
    }
    ASSERT_GT(rises.size(), 2u);
    const double period = (rises.back() - rises.front()) / static_cast<double>(rises.size() - 1);
    EXPECT_NEAR(1200 * std::log2(44100 / period / it.hertz), 0, 2) << it.note;
  }
}

TEST_F(Export, NeverReplacesASampleThatAProgramPlays) {
  const std::vector<int16_t> left(2000, 1000), right(2000, -1000), other(2000, 500);
  WriteWave(Path("kick.wav"), {left, right});
  WriteWave(Path("kick 1.wav"), {other});
  const std::string before = FileBytes(Path("kick 1.wav"));
  const Program program;
  program.Make();
  program("ZoneSampleSet", 0, 0, Path("kick.wav"));
  program("SampleChannel", 0, 0, 0);
  program("ZoneSampleSet", 0, 1, Path("kick 1.wav"));
  ASSERT_TRUE(program("Write", Path("k.zprg")).Bool());
  ASSERT_EQ(Zyl("export --force " + Quoted("k.zprg") + " -o " + Quoted("k.sfz")).status, 0);
  EXPECT_EQ(FileBytes(Path("kick 1.wav")), before);
  const std::string sfz = FileBytes(Path("k.sfz"));
  EXPECT_TRUE(Has(sfz, "sample=kick 1.wav") && Has(sfz, "sample=kick 1 2.wav")) << sfz;
}

TEST_F(Export, PlayReportsWhatItCannotPlay) {
  Recording("C3.wav", 60);
  ASSERT_EQ(Zyl("map " + Quoted("C3.wav") + " -o " + Quoted("p.zprg")).status, 0);
  const std::string play = "play " + Quoted("p.zprg");
  for (const char* word :
       {" H3", " C3:0", " C3:100:0", " C3:1:1:1", " 128", " a.mid C3", " a.mid b.mid"}) {
    EXPECT_EQ(Zyl(play + word).status, 2) << word;
  }
  EXPECT_EQ(Zyl("play " + Quoted("missing.zprg") + " -o " + Quoted("o.wav")).status, 4);
  EXPECT_EQ(Zyl(play + " " + Quoted("C3.wav") + " -o " + Quoted("o.wav")).status, 2);
  EXPECT_EQ(Zyl(play + " C3 -o " + Quoted("p.zprg")).status, 2);
  EXPECT_EQ(Zyl(play + " C3 -o " + Quoted("C3.wav")).status, 2);  // exists
  std::ofstream(Path("bad.mid")) << "not a song";
  EXPECT_EQ(Zyl(play + " " + Quoted("bad.mid") + " -o " + Quoted("o.wav")).status, 4);
  EXPECT_FALSE(std::filesystem::exists(Path("o.wav")));
}

}  // namespace
}  // namespace zyl::test
