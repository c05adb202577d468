// zyl slice: the files that it makes of a recording.
#include <map>

#include "verbs/VerbTools.h"

namespace zyl::test {
namespace {

namespace fs = std::filesystem;

constexpr uint32_t kRate = 48000;
constexpr size_t kFrameBytes = 6;  // 24 bits, two channels

struct Played {
  double time;
  double key;
  double peak;
  double seconds = 0.6;
};

class Slice : public Verbs {
 protected:
  // Writes a recording of plucked notes, 24 bits, the channels different, each note released within
  // 30 ms; returns its sound.
  std::string Record(const std::string& name, const std::vector<Played>& notes,
                     double seconds) const {
    std::vector<double> sound(static_cast<size_t>(seconds * kRate));
    for (const Played& it : notes) {
      const auto values = Note(kInstruments[2], HertzOfKey(it.key), it.seconds, 5, it.peak, kRate);
      const auto at = static_cast<size_t>(it.time * kRate);
      for (size_t i = 0; i < values.size() && at + i < sound.size(); ++i) {
        const double left = static_cast<double>(values.size() - i) / (0.03 * kRate);
        sound[at + i] += values[i] * std::min(left, 1.0);
      }
    }
    FieldWriter data(ByteOrder::kLittle);
    for (size_t i = 0; i < sound.size(); ++i) {
      for (const double level : {230, 201}) {
        const auto value = static_cast<uint32_t>(std::lround(level * sound[i]));
        data.U16(value & 0xFFFF).U8(value >> 16 & 0xFF);
      }
    }
    std::string bytes(reinterpret_cast<const char*>(data.block.data()), data.block.size());
    const auto size = static_cast<uint32_t>(bytes.size());
    FieldWriter head(ByteOrder::kLittle);
    head.Text("RIFF").U32(36 + size).Text("WAVEfmt ").U32(16).U16(1).U16(2).U32(kRate);
    head.U32(kRate * kFrameBytes).U16(kFrameBytes).U16(24).Text("data").U32(size);
    std::ofstream(Path(name), std::ios::binary)
        << std::string(reinterpret_cast<const char*>(head.block.data()), head.block.size())
        << bytes;
    return bytes;
  }
  std::vector<std::string> Files(const std::string& folder) const {
    std::vector<std::string> names;
    if (!fs::exists(Path(folder))) return names;
    for (const auto& it : fs::directory_iterator(Path(folder)))
      names.push_back(it.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }
  // The objects of a JSON list, one on each line.
  static std::vector<std::string> Objects(const std::string& json) {
    std::vector<std::string> list;
    for (size_t at = json.find('{'); at != std::string::npos; at = json.find("\n {", at + 1)) {
      list.push_back(json.substr(at, json.find('\n', at + 1) - at));
    }
    return list;
  }
};

using Names = std::vector<std::string>;

TEST_F(Slice, NamesFilesByKeyAndLayerAndKeepsTheSound) {
  const std::vector<Played> notes = {{0.4, 48, 0.5},   {1.5, 48, 0.1},   {2.6, 60.2, 0.05},
                                     {3.7, 60.2, 0.2}, {4.8, 60.2, 0.6}, {5.9, 67, 0.3, 2}};
  const std::string sound = Record("take 1.wav", notes, 7);
  const std::string arguments = "slice --json " + Quoted("take 1.wav") + " --name Harp -o ";
  const Finished dry = Zyl(arguments + Quoted("out") + " --dry-run --count 6");
  EXPECT_EQ(dry.status, 0);
  EXPECT_FALSE(fs::exists(Path("out")));
  const Finished run = Zyl(arguments + Quoted("out"));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Files("out"), (Names{"Harp C2 v1.wav", "Harp C2 v2.wav", "Harp C3 v1.wav",
                                 "Harp C3 v2.wav", "Harp C3 v3.wav", "Harp G3 v1.wav"}));
  const auto slices = Objects(run.out);
  ASSERT_EQ(slices.size(), notes.size()) << run.out;
  for (size_t i = 0; i < notes.size(); ++i) {
    const double early = notes[i].time - Number(slices[i], "start");
    EXPECT_TRUE(early >= 0 && early < 0.007) << early;
    const auto first = static_cast<size_t>(Number(slices[i], "first"));
    const size_t frames = static_cast<size_t>(Number(slices[i], "last")) + 1 - first;
    const size_t at = slices[i].find(": \"") + 3;
    const std::string file = FileBytes(slices[i].substr(at, slices[i].find('"', at) - at));
    EXPECT_TRUE(file.substr(44, frames * kFrameBytes) ==
                sound.substr(first * kFrameBytes, frames * kFrameBytes))
        << slices[i];
  }
  const Finished map = Zyl("map --quiet --json --dry-run " + Quoted("out"));
  const std::string layers = map.out.substr(map.out.find("Harp C3 v2.wav"));
  EXPECT_EQ(Number(layers, "key"), 60);
  EXPECT_EQ(Number(layers, "low_velocity"), 42);
  EXPECT_NEAR(Number(layers, "cents"), 20, 3);
  // Existing files are kept, also by a run that could write others.
  fs::remove(Path("out/Harp C2 v1.wav"));
  const Finished refused = Zyl(arguments + Quoted("out"), true);
  EXPECT_EQ(refused.status, 4);
  EXPECT_TRUE(Has(refused.out, "see --force")) << refused.out;
  EXPECT_EQ(Files("out").size(), 5U);
  EXPECT_EQ(Zyl(arguments + Quoted("out") + " --force").status, 0);
  EXPECT_EQ(Zyl("undo --last").status, 0);
  EXPECT_EQ(Files("out").size(), 5U);
  EXPECT_EQ(Zyl("slice --count 7 -o " + Quoted("out") + " " + Quoted("take 1.wav")).status, 4);
}

TEST_F(Slice, CutsNotesWithoutPausesInAGrid) {
  const std::vector<Played> notes = {
      {0.5, 50, 0.4, 1}, {0.9, 53, 0.4, 1}, {1.3, 56, 0.4, 0.35}, {1.7, 59, 0.4, 0.35}};
  const std::string sound = Record("run.wav", notes, 3.5);
  const Finished run =
      Zyl("slice --json --drums --grid 0.4 -o " + Quoted("out") + " " + Quoted("run.wav"));
  EXPECT_EQ(Files("out"), (Names{"run 01.wav", "run 02.wav", "run 03.wav", "run 04.wav"}))
      << run.out;  // and none of the silence
  for (const std::string& slice : Objects(run.out)) {
    const bool cut = Has(slice, "\"cut\": true");
    EXPECT_EQ(cut, !Has(slice, "run 04"));
    const std::string file = FileBytes(Path("out/" + slice.substr(slice.find("run 0"), 10)));
    const auto first = static_cast<size_t>(Number(slice, "first"));
    const size_t bytes = (static_cast<size_t>(Number(slice, "last")) + 1 - first) * kFrameBytes;
    const size_t kept = bytes - (cut ? 384 * kFrameBytes : 0);  // 8 ms
    EXPECT_TRUE(file.substr(44, kept) == sound.substr(first * kFrameBytes, kept)) << slice;
    if (cut) {
      EXPECT_TRUE(file.substr(44 + bytes - kFrameBytes, kFrameBytes) ==
                  std::string(kFrameBytes, 0));
    }
  }
}

// A song of four notes, with a change of tempo in another track. `division` is in ticks per
// quarter.
std::string Song(uint16_t format = 1, uint16_t division = 100) {
  FieldWriter song(ByteOrder::kBig);
  song.Text("MThd").U32(6).U16(format).U16(2).U16(division);
  const std::string tempo = std::string("\0\xFF\x51\3\x07\xA1\x20", 7)  // 500 ms per quarter
                            + std::string("\x81\x48\xFF\x51\3\x0F\x42\x40", 8)  // 1 s from 200 on
                            + std::string("\0\xFF\x2F\0", 4);
  const std::string notes = std::string("\0\x90\x24\x50", 4)      // 0 s
                            + std::string("\x81\x48\x24\0", 4)    // running status
                            + std::string("\0\x24\x28", 3)        // 1 s
                            + std::string("\0\xF0\2\1\xF7", 5)    // system exclusive
                            + std::string("\x64\x99\x26\x50", 4)  // 2 s
                            + std::string("\x64\x99\x24\x50", 4)  // 3 s
                            + std::string("\0\xFF\x2F\0", 4);
  for (const std::string& track : {tempo, notes}) {
    song.Text("MTrk").U32(static_cast<uint32_t>(track.size()));
    for (const char byte : track) song.U8(static_cast<uint8_t>(byte));
  }
  return {reinterpret_cast<const char*>(song.block.data()), song.block.size()};
}

TEST_F(Slice, TakesKeysAndVelocitiesFromASong) {
  Record("kit.wav", {{0.7, 60, 0.4}, {1.7, 61, 0.4}, {2.7, 62, 0.4}, {3.7, 63, 0.4}}, 5);
  std::ofstream(Path("song.mid"), std::ios::binary) << Song();
  const std::string arguments =
      "slice " + Quoted("kit.wav") + " --midi " + Quoted("song.mid") + " -o " + Quoted("out");
  const Finished run = Zyl(arguments, true);
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(Files("out"), (Names{"kit C1 vel40.wav", "kit C1 vel80 rr2.wav", "kit C1 vel80.wav",
                                 "kit D1 vel80.wav"}))
      << run.out;
  EXPECT_EQ(Number(Zyl("sample --json " + Quoted("out/kit D1 vel80.wav")).out, "key"), 38);
  const std::string good = Song();
  const struct {
    std::string bytes;
    const char* reason;
  } broken[] = {
      {"", "not a standard MIDI file"},
      {"RIFF" + good.substr(4), "not a standard MIDI file"},
      {Song(2), "format 2"},
      {Song(1, 0), "no division"},
      {good.substr(0, good.size() - 3), "track 2 is truncated"},
      {good.substr(0, 14), "has no notes"},
      {good.substr(0, 22) + "\x80" + good.substr(23), "invalid event"},
      {good.substr(0, 22) + "\xFF\xFF\xFF\xFF" + good.substr(26), "more than four bytes"},
      {good.substr(0, 26) + std::string(3, '\0') + good.substr(29), "invalid tempo"},
  };
  for (const auto& it : broken) {
    std::ofstream(Path("song.mid"), std::ios::binary) << it.bytes;
    const Finished failed = Zyl(arguments + " --force", true);
    EXPECT_EQ(failed.status, 2) << it.reason;
    EXPECT_TRUE(Has(failed.out, it.reason)) << it.reason << failed.out;
  }
}

TEST_F(Slice, ReportsWhatItCannotCut) {
  WriteWave(Path("silence.wav"), {std::vector<int16_t>(44100)});
  const struct {
    const char* arguments;
    int status;
    const char* reason;
  } cases[] = {{"silence.wav -o out", 4, "no note found"},
               {"missing.wav -o out", 4, "No such file"},
               {"silence.wav", 2, "-o FOLDER"},
               {"silence.wav -o silence.wav", 2, "not a folder"},
               {"silence.wav -o out --name a/b", 2, "--name"},
               {"silence.wav -o out --from 1", 2, "--from"}};
  for (const auto& it : cases) {
    const Finished run =
        Shell("cd " + Quoted("") + " && " ZYL_PROGRAM " slice " + it.arguments, true);
    EXPECT_EQ(run.status, it.status) << it.arguments << run.out;
    EXPECT_TRUE(Has(run.out, it.reason)) << run.out;
    EXPECT_FALSE(fs::exists(Path("out")));
  }
}

}  // namespace
}  // namespace zyl::test
