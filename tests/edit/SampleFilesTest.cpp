// Sample files through script methods, checked with libsndfile and against the chunks themselves.
#include <cmath>
#include <fstream>

#include "edit/EditTools.h"

namespace zyl::test {
namespace {

namespace fs = std::filesystem;

std::string Bytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}
void Store(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// The data of a chunk, empty when there is none.
std::string Chunk(const std::string& path, const std::string& id) {
  for (const ChunkInfo& chunk : ListFileChunks(path)) {
    if (chunk.id == id) return Bytes(path).substr(chunk.offset, chunk.size);
  }
  return {};
}
uint32_t Word(const std::string& bytes, size_t at, size_t count, bool big) {
  uint32_t value = 0;
  for (size_t i = 0; i < count; ++i) {
    value = value << 8 | static_cast<uint8_t>(bytes.at(at + (big ? i : count - 1 - i)));
  }
  return value;
}

class SampleFiles : public EditTest {
 protected:
  size_t Entries() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(Path("")), {}));
  }
};

TEST_F(SampleFiles, SoundPassesBothContainersInEveryWidth) {
  for (const int bits : {8, 16, 24, 32}) {
    for (const char* name : {"written.WAV", "written.aif"}) {
      SCOPED_TRACE(std::to_string(bits) + name);
      const int high = static_cast<int>((int64_t{1} << (bits - 1)) - 1);
      const std::vector<Values> sound{{0, 1, -1, high, -high - 1}, {high, 5, 4, 3, 2}};
      Open(bits, sound);
      EXPECT_TRUE(program("SampleWrite", second, Path(name)).Bool()) << diagnostics;
      const Sound read(Path(name));
      EXPECT_EQ(read.channels, sound);
      EXPECT_EQ(read.bits, bits);
      EXPECT_EQ(read.IsWave(), name[8] == 'W');
      EXPECT_EQ(program("GetChannelCount", Path(name)).Int(), 2);
      EXPECT_EQ(ReadAll(Whole(Path(name))), sound);
      program("DeleteTempSample");
      fs::remove(Path(name));
    }
  }
  EXPECT_EQ(program("GetChannelCount", Path("missing.wav")).Int(), 0);
  EXPECT_FALSE(program("SampleWrite", first, Path("written.mp3")).Bool());
}

// Each value is made by one edit method, written, and read by the other library.
TEST_F(SampleFiles, EveryValueOf16And24BitsIsWrittenAsItIs) {
  for (const int bits : {16, 24}) {
    const int count = 1 << bits;
    program("SampleCreate", 0, 0, "wav");
    RIOObject* sample = program("SampleGet", 0, 0).Object();
    program("SampleBits", sample, bits);
    program("SampleSize", sample, count);
    // Doubling: the upper half is the lower one, raised by its length.
    program("SampleSize", sample, 1);
    program("SampleValue", sample, 0, -count / 2);
    program("SampleCreate", 0, 1, "wav");
    RIOObject* upper = program("SampleGet", 0, 1).Object();
    for (int half = 1; half < count; half *= 2) {
      program("SampleCopyFrom", upper, sample, 0, half);
      program("SampleSize", upper, half + 1);  // the last position is no part of a range
      program("SampleOffsetValues", upper, 0, half, half);
      program("SampleSize", upper, half);
      program("SampleSize", sample, half + 1);
      program("SampleCopyTo", sample, upper, half);
      program("SampleSize", sample, 2 * half);
    }
    for (const char* name : {"all.wav", "all.aif"}) {
      ASSERT_TRUE(program("SampleWrite", sample, Path(name)).Bool());
      const Sound read(Path(name));
      ASSERT_EQ(read.info.frames, count);
      int wrong = 0;
      for (int i = 0; i < count; ++i) {
        wrong += read.channels[0][static_cast<size_t>(i)] != i - count / 2 ? 1 : 0;
      }
      EXPECT_EQ(wrong, 0) << name << ", " << bits << " bits";
    }
  }
}

TEST_F(SampleFiles, KeysTuningsAndLoopsStandInTheChunks) {
  Open(16, Counting(1000, 1));
  const std::string wav = Path("loops.wav"), aif = Path("loops.aif");
  program("Samplekey", first, 64);
  program("SampleplaybackType", first, 1);
  for (int cents = -50; cents <= 50; ++cents) {
    program("Sampletune", first, static_cast<int>(std::lround(cents * 2.56)));
    ASSERT_TRUE(program("SampleWrite", first, wav).Bool());
    ASSERT_TRUE(program("SampleWrite", first, aif).Bool());
    const std::string smpl = Chunk(wav, "smpl"), inst = Chunk(aif, "INST");
    const double pitch = Word(smpl, 12, 4, false) + Word(smpl, 16, 4, false) / 4294967296.0;
    EXPECT_NEAR(pitch, 64 + cents / 100.0, 0.002) << cents;
    EXPECT_EQ(inst[0], 64);
    EXPECT_EQ(inst[1], cents);
  }
  program("SampleLoopCount", first, 16);
  for (int i = 0; i < 16; ++i) {
    program("SampleLoopStart", first, i, 10 * i);
    program("SampleLoopEnd", first, i, 999 - i);
    program("SampleLoopFineLen", first, i, 1e9 + i);
  }
  ASSERT_TRUE(program("SampleWrite", first, wav).Bool());
  ASSERT_TRUE(program("SampleWrite", first, aif).Bool());
  const std::string smpl = Chunk(wav, "smpl"), inst = Chunk(aif, "INST"), mark = Chunk(aif, "MARK");
  ASSERT_EQ(Word(smpl, 28, 4, false), 16u);
  for (uint32_t i = 0; i < 16; ++i) {
    const size_t loop = 36 + 24 * i;
    EXPECT_EQ(Word(smpl, loop + 8, 4, false), 10 * i);
    EXPECT_EQ(Word(smpl, loop + 12, 4, false), 999 - i) << "the last position of the loop";
    EXPECT_EQ(Word(smpl, loop + 16, 4, false), 1000000000 + i);
  }
  EXPECT_EQ(Word(inst, 8, 2, true), 1u);
  EXPECT_EQ(Word(mark, 0, 2, true), 32u);
  EXPECT_EQ(Word(mark, 2, 2, true), Word(inst, 10, 2, true));
  EXPECT_EQ(Word(mark, 4, 4, true), 0u);
  const size_t next = 9 + static_cast<uint8_t>(mark[8]) + (mark[8] % 2 == 0 ? 1 : 0);
  EXPECT_EQ(Word(mark, next, 2, true), Word(inst, 12, 2, true));
  EXPECT_EQ(Word(mark, next + 2, 4, true), 1000u) << "the place behind the last position";
  for (const std::string& written : {wav, aif}) EXPECT_EQ(Points(Whole(written)), Points(first));
}

TEST_F(SampleFiles, AWriteKeepsUnknownChunksAndTheMaskSelectsChannels) {
  Open(16, {{1, 2}, {3, 4}, {5, 6}});
  std::string image = Bytes(path);
  image += std::string("note\x04\0\0\0keep", 12);
  const uint32_t riffBytes = static_cast<uint32_t>(image.size()) - 8;
  for (size_t i = 0; i < 4; ++i) image[4 + i] = static_cast<char>(riffBytes >> (8 * i));
  Store(Path("kept.wav"), image);
  RIOObject* kept = Whole(Path("kept.wav"));
  program("SampleSetValues", kept, 0, 1, 9);
  EXPECT_TRUE(program("SampleWrite", kept).Bool()) << "to its own path";
  EXPECT_EQ(Chunk(Path("kept.wav"), "note"), "keep");
  struct Row {
    int mask;
    std::vector<Values> channels;
  };
  const Row rows[] = {{0, {{9, 2}, {9, 4}, {9, 6}}},
                      {5, {{9, 2}, {9, 6}}},
                      {2, {{9, 4}}},
                      {-1, {{9, 2}, {9, 4}, {9, 6}}},
                      {4 + 8, {{9, 6}}}};
  for (const Row& row : rows) {
    for (const char* name : {"mask.wav", "mask.aif"}) {
      EXPECT_TRUE(program("SampleWrite", kept, Path(name), row.mask).Bool());
      EXPECT_EQ(Sound(Path(name)).channels, row.channels) << row.mask << " " << name;
    }
    EXPECT_EQ(Chunk(Path("mask.wav"), "note"), "keep");
  }
  EXPECT_FALSE(program("SampleWrite", kept, Path("mask.wav"), 8).Bool()) << "no such channel";
  EXPECT_EQ(Sound(Path("mask.wav")).channels, rows[4].channels);
  ExpectArgType(program("SampleWrite", kept, 3), "NewPath", kTypeString, 2);
  ExpectArgType(program("SampleWrite", kept, Path("x.wav"), "1"), "ChannelMask", kTypeInteger, 3);
  program("SampleSize", kept, 0);
  EXPECT_TRUE(program("SampleWrite", kept).Bool()) << "an empty sample is a file too";
  EXPECT_EQ(Sound(Path("kept.wav")).info.channels, 3);
  EXPECT_EQ(Sound(Path("kept.wav")).info.frames, 0);
}

TEST_F(SampleFiles, MergedChannelsComeInOrderPaddedAndWidened) {
  StoreSound(Path("a.wav"), SF_FORMAT_WAV, 16, {{1, 2, 3}, {-1, -2, -3}});
  StoreSound(Path("b.wav"), SF_FORMAT_WAV, 8, {{7}});
  RIOObject* a = Whole(Path("a.wav"));
  RIOObject* b = Whole(Path("b.wav"));
  program("Samplekey", a, 40);
  const std::string to = Path("merged.WAV");
  EXPECT_TRUE(program("SampleWriteMerged", to, a, 0, a, 1).Bool());
  EXPECT_EQ(Sound(to).channels, (std::vector<Values>{{1, 2, 3}, {-1, -2, -3}}));
  EXPECT_TRUE(program("SampleWriteMerged", to, a, 1, NullObject{}, 0, b, 0).Bool());
  EXPECT_EQ(Sound(to).channels, (std::vector<Values>{{-1, -2, -3}, {7 << 8, 0, 0}}));
  EXPECT_EQ(Word(Chunk(to, "smpl"), 12, 4, false), 40u) << "the first sample's parameters";
  EXPECT_TRUE(program("SampleWriteMerged", Path("merged.aif"), b, 0, a, 0).Bool());
  EXPECT_EQ(Sound(Path("merged.aif")).channels, (std::vector<Values>{{7 << 8, 0, 0}, {1, 2, 3}}));
  EXPECT_FALSE(Sound(Path("merged.aif")).IsWave());
  EXPECT_EQ(Chunk(Path("merged.aif"), "NAME"), "merged");
  program("SampleBits", a, 12);
  program("SampleBits", b, 16);
  EXPECT_TRUE(program("SampleWriteMerged", to, a, 0, b, 0).Bool());
  EXPECT_EQ(Word(Chunk(to, "fmt "), 14, 2, false), 16u) << "no channel loses bits";
  program("SampleSize", b, 0);
  EXPECT_TRUE(program("SampleWriteMerged", to, b, 0, a, 0).Bool());
  EXPECT_EQ(Sound(to).channels.at(0), (Values{0, 0, 0})) << "an empty channel is silent";

  const std::string before = Bytes(to);
  EXPECT_TRUE(program("SampleWriteMerged", to, a, 2).Bool()) << "no such channel";
  ROCParams many;
  many.AddTail(newROCParam(std::string_view(to)));
  for (int i = 0; i < 17; ++i) {
    many.AddTail(newROCParam(a));
    many.AddTail(newROCParam(0));
  }
  EXPECT_TRUE(CallList(program.Algo(), "SampleWriteMerged", &many).Bool()) << "too many channels";
  EXPECT_EQ(std::count(diagnostics.begin(), diagnostics.end(), '\n'), 2) << diagnostics;
  for (const char* name : {"merged", "merged.mp3", "merged.aiff"}) {
    EXPECT_FALSE(program("SampleWriteMerged", Path(name), a, 0).Bool());
    EXPECT_FALSE(fs::exists(Path(name)));
  }
  EXPECT_FALSE(program("SampleWriteMerged", to).Bool());
  EXPECT_FALSE(program("SampleWriteMerged", to, NullObject{}, 0).Bool());
  ExpectArgType(program("SampleWriteMerged"), "NewPath", kTypeString, 1);
  ExpectArgType(program("SampleWriteMerged", to, a, 0, a), "Channel", kTypeInteger, 5);
  ExpectArgType(program("SampleWriteMerged", to, a, 0, 1, 0), "Sample", kTypeObject, 4);
  ExpectArgPType(program("SampleWriteMerged", to, program.Algo(), 0), program.Algo()->GetTypeName(),
                 "CSample", 2);
  EXPECT_EQ(Bytes(to), before);
}

TEST_F(SampleFiles, AWriteThatFailsLeavesTheOldFile) {
  Open(16, Counting(10, 2));
  fs::create_directory(Path("taken.wav"));
  EXPECT_FALSE(program("SampleWrite", first, Path("taken.wav")).Bool());
  EXPECT_TRUE(program("SampleWriteMerged", Path("taken.wav"), first, 0).Bool());
  EXPECT_FALSE(program("SampleWrite", first, Path("nowhere/a.wav")).Bool());
  EXPECT_EQ(Entries(), 2u) << "the sample and the folder";
}

TEST_F(SampleFiles, ACopyIsWholeOrNotThere) {
  const std::string source = Path("source.wav"), dest = Path("dest.wav");
  const auto copy = [&](const std::string& from, const std::string& to) {
    diagnostics.clear();
    const Outcome outcome = program("SampleCopyFile", from, to);
    EXPECT_TRUE(outcome.Ok());
    EXPECT_EQ(outcome.result, nullptr);
    return diagnostics.empty();
  };
  Store(source, "new sound");
  Store(dest, "old");
  Store(dest + ".part", "the user's own");
  fs::permissions(source, fs::perms::owner_read | fs::perms::group_read);
  EXPECT_TRUE(copy(source, dest));
  EXPECT_EQ(Bytes(dest), "new sound");
  EXPECT_EQ(Bytes(dest + ".part"), "the user's own");
  EXPECT_EQ(fs::status(dest).permissions(), fs::status(source).permissions());
  EXPECT_TRUE(copy(source, source)) << "onto itself";
  EXPECT_EQ(Bytes(source), "new sound");

  Store(Path("behind"), "old");
  fs::create_symlink("behind", Path("link"));
  fs::create_symlink("later", Path("open link"));
  fs::create_symlink("source.wav", Path("source link"));
  EXPECT_TRUE(copy(source, Path("link")));
  EXPECT_TRUE(copy(source, Path("open link")));
  EXPECT_TRUE(copy(source, Path("source link")));
  EXPECT_TRUE(copy(Path("source link"), Path("again")));
  for (const char* name : {"link", "open link", "source link"}) {
    EXPECT_TRUE(fs::is_symlink(Path(name))) << name;
  }
  for (const char* name : {"behind", "later", "source.wav", "again"}) {
    EXPECT_FALSE(fs::is_symlink(Path(name))) << name;
    EXPECT_EQ(Bytes(Path(name)), "new sound") << name;
  }

  const size_t entries = Entries();
  fs::create_directory(Path("folder"));
  fs::create_symlink("ring", Path("ring"));
  for (const std::string& bad : {Path("missing"), Path("folder"), std::string()}) {
    EXPECT_FALSE(copy(bad, dest)) << bad;
  }
  for (const std::string& bad :
       {Path("folder"), Path("nowhere/a"), Path("ring"), std::string(), std::string("/dev/null")}) {
    EXPECT_FALSE(copy(source, bad)) << bad;
  }
  EXPECT_EQ(Bytes(dest), "new sound");
  EXPECT_EQ(Entries(), entries + 2) << "nothing is left behind";
  ExpectArgType(program("SampleCopyFile", 1, dest), "Source", kTypeString, 1);
  ExpectArgType(program("SampleCopyFile", source), "Dest", kTypeString, 2);
  ExpectArgType(program("GetChannelCount", true), "Path", kTypeString, 1);
}

}  // namespace
}  // namespace zyl::test
