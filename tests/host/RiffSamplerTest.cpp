// Key, tuning and loops of sample files, against the bytes of their chunks.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <set>

#include "SampleFileTools.h"

namespace zyl::test {
namespace {

constexpr unsigned kFrames = 1000;

// Writes parameters with some sound and returns the bytes of the file.
Octets Written(const TempFolder& folder, bool aif, const RiffParameters& p) {
  std::vector<int16_t> sound(kFrames);
  const auto sample = NewSample(aif);
  sample->parameters = p;
  EXPECT_TRUE(Lend(*sample, sound));
  EXPECT_TRUE(WriteTo(*sample, folder.File("s")));
  return ReadBytes<Octets>(folder.File("s"));
}

RiffParameters ReadBack(const TempFolder& folder) {
  const auto sample = Read(folder.File("s"));
  return sample == nullptr ? RiffParameters() : sample->parameters;
}

uint32_t Little32(const uint8_t* at) {
  return at[0] | uint32_t{at[1]} << 8 | uint32_t{at[2]} << 16 | uint32_t{at[3]} << 24;
}

int OfCents(int cents) { return static_cast<int>(std::lround(cents * 2.56)); }

RiffParameters FullParameters() {
  RiffParameters p;
  p.rateHz = 96000;
  p.key = 127;
  p.tune = -300;
  p.playbackType = 1;
  p.holdLoopTuneOff = -7;
  p.start = 3;
  p.end = 990;
  for (uint32_t i = 0; i < 16; ++i) {
    p.loops.push_back({i * 10, i * 10 + 500 - i, 0x80000000u + i, i, i % 4});
  }
  p.loops[5] = p.loops[4];                    // equal to the loop before it
  p.loops[15].end = kFrames - 1;              // ends with the sound
  p.loops[14].start = p.loops[14].end = 123;  // one frame
  return p;
}

TEST(SampleFileTuning, SurvivesARoundTrip) {
  const TempFolder folder;
  RiffParameters p;
  std::vector<int> tunes{-513, -257, -256, -255, -129, 129, 255, 256, 300, 1000};
  for (int cents = -50; cents <= 50; ++cents) tunes.push_back(OfCents(cents));
  for (int tune = -128; tune <= 128; tune += 5) tunes.push_back(tune);
  for (const bool aif : {false, true}) {
    for (const int key : {0, 60, 127}) {
      for (const int tune : tunes) {
        p.key = key;
        p.tune = tune;
        Written(folder, aif, p);
        EXPECT_EQ(ReadBack(folder), p) << aif << " " << key << " " << tune;
      }
    }
  }
}

TEST(SampleFileTuning, IsInTheStandardChunks) {
  const TempFolder folder;
  const struct {
    int tune;
    uint32_t note, fraction;
    bool wavOwn, aifOwn;  // whether the exact tune needs a "zyls" chunk
  } rows[] = {{0, 60, 0, false, false},
              {-128, 59, 0x80000000, true, false},
              {300, 61, 44u << 24, true, true},
              {1, 60, 1u << 24, false, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.tune);
    RiffParameters p;
    p.tune = row.tune;
    const Octets wav = Written(folder, false, p);
    const uint8_t* smpl = Chunk(folder.File("s"), wav, "smpl");
    ASSERT_NE(smpl, nullptr);
    EXPECT_EQ(Little32(smpl + 8), 22676u);
    EXPECT_EQ(Little32(smpl + 12), row.note);
    EXPECT_EQ(Little32(smpl + 16), row.fraction);
    EXPECT_EQ(Chunk(folder.File("s"), wav, "zyls") != nullptr, row.wavOwn);
    const Octets aif = Written(folder, true, p);
    EXPECT_EQ(Chunk(folder.File("s"), aif, "zyls") != nullptr, row.aifOwn);
  }
  RiffParameters p;
  for (int cents = -50; cents <= 50; ++cents) {
    p.tune = OfCents(cents);
    const Octets aif = Written(folder, true, p);
    EXPECT_EQ(static_cast<int8_t>(Chunk(folder.File("s"), aif, "INST")[1]), cents);
  }
}

TEST(SampleFileTuning, IsReadFromInstWithoutSmpl) {
  const TempFolder folder;
  WriteBytes(folder.File("s"), WaveOf({{"data", Bytes(4)}, {"inst", Hex("28 E7 00 00 7F 01 7F")}}));
  EXPECT_EQ(ReadBack(folder).key, 40);
  EXPECT_EQ(ReadBack(folder).tune, -64);
}

TEST(SampleFileLoops, AllParametersSurviveARoundTrip) {
  const TempFolder folder;
  for (const bool aif : {false, true}) {
    for (int playbackType = 0; playbackType <= 3; ++playbackType) {
      for (const size_t count : {0u, 1u, 2u, 3u, 16u}) {
        RiffParameters p = FullParameters();
        p.playbackType = playbackType;
        p.loops.resize(count);
        Written(folder, aif, p);
        EXPECT_EQ(ReadBack(folder), p) << aif << " " << playbackType << " " << count;
        // Again, through the object that was read.
        ASSERT_TRUE(WriteTo(*Read(folder.File("s")), folder.File("s")));
        EXPECT_EQ(ReadBack(folder), p);
      }
    }
  }
}

TEST(SampleFileLoops, AiffMarkersAreOnePastTheLoopEnd) {
  const TempFolder folder;
  RiffParameters p;
  p.playbackType = 0;
  p.loops = {{100, 299, 0x40000000, 3, 0}, {10, 19, 0, 0, 1}};
  EXPECT_EQ(Chunk(folder.File("s"), Written(folder, false, p), "zyls"), nullptr);
  Written(folder, true, p);
  SF_INFO info{};
  SNDFILE* file = sf_open(folder.File("s").c_str(), SFM_READ, &info);
  SF_INSTRUMENT instrument{};
  ASSERT_EQ(sf_command(file, SFC_GET_INSTRUMENT, &instrument, sizeof instrument), SF_TRUE);
  sf_close(file);
  const auto& loops = instrument.loops;
  EXPECT_EQ((std::pair{loops[0].start, loops[0].end}), (std::pair{100u, 300u}));
  EXPECT_EQ((std::pair{loops[1].start, loops[1].end}), (std::pair{10u, 20u}));
}

TEST(SampleFileLoops, AllSixteenAreInTheStandardChunks) {
  const TempFolder folder;
  const RiffParameters p = FullParameters();
  const Octets wav = Written(folder, false, p);
  const uint8_t* smpl = Chunk(folder.File("s"), wav, "smpl");
  ASSERT_NE(smpl, nullptr);
  EXPECT_EQ(Little32(smpl + 28), 16u);
  const Octets aif = Written(folder, true, p);
  const uint8_t* mark = Chunk(folder.File("s"), aif, "MARK");
  ASSERT_NE(mark, nullptr);
  EXPECT_EQ(Octets(mark, mark + 2), (Octets{0, 32}));
  std::multiset<uint32_t> expected, places;
  for (const RiffLoop& loop : p.loops) {
    for (const uint32_t word : {loop.type, loop.start, loop.end, loop.fineLen, loop.times}) {
      EXPECT_EQ(Little32(smpl + 40), word);
      smpl += 4;
    }
    smpl += 4;  // the next loop's identifier
    expected.insert({loop.start, loop.end + 1});
  }
  const uint8_t* marker = mark + 2;
  while (places.size() < expected.size()) {
    places.insert(uint32_t{marker[2]} << 24 | marker[3] << 16 | marker[4] << 8 | marker[5]);
    marker +=
        6 + (marker[6] + 2) / 2 * 2;  // skip the name: length byte and text, padded to even size
  }
  EXPECT_EQ(places, expected);
}

// Another program moved the loop, tuned the file or cut the sound, and kept the "zyls" chunk.
TEST(SampleFileLoops, StandardChunksWinOverAnOutdatedOwnChunk) {
  const TempFolder folder;
  const RiffParameters p = FullParameters();
  const auto rewritten = [&](bool aif, const char* id, ptrdiff_t offset, uint8_t byte) {
    Octets file = Written(folder, aif, p);
    const uint8_t* chunk = Chunk(folder.File("s"), file, id);
    if (chunk == nullptr) return RiffParameters();
    file[static_cast<size_t>(chunk - file.data() + offset)] = byte;
    WriteBytes(folder.File("s"), file);
    return ReadBack(folder);
  };
  const RiffParameters moved = rewritten(false, "smpl", 36 + 8, 77);
  EXPECT_EQ(moved.loops[0].start, 77u);
  EXPECT_EQ(moved.playbackType, 0);
  // The chunk's fraction, above one half, rounds the new note up.
  EXPECT_EQ(rewritten(false, "smpl", 12, 50).key, 51);
  EXPECT_EQ(rewritten(true, "INST", 0, 50).key, 50);
  // The ninth marker belongs to the fifth loop, to which no standard chunk refers.
  EXPECT_EQ(rewritten(true, "MARK", 2 + 4 * (20 + 18) + 5, 1).loops.size(), 1u);
  // Only the length of the sound differs.
  RiffParameters tuned;
  tuned.tune = -128;
  const Octets file = Written(folder, false, tuned);
  std::vector<FileChunk> shorter;
  for (const ChunkInfo& chunk : ListFileChunks(folder.File("s"))) {
    const auto* data = reinterpret_cast<const std::byte*>(file.data() + chunk.offset);
    const uint64_t size = chunk.id == "data" ? chunk.size - 2 : chunk.size;
    shorter.push_back({chunk.id, Bytes(data, data + size)});
  }
  WriteBytes(folder.File("s"), FileOf("RIFF", "WAVE", shorter));
  EXPECT_EQ(ReadBack(folder).key, 59);
  EXPECT_EQ(ReadBack(folder).tune, 128);
}

TEST(SampleFileTuning, AnEndBeyondTheSoundIsClamped) {
  const TempFolder folder;
  RiffParameters p = FullParameters();
  p.end = kFrames;
  for (const bool aif : {false, true}) {
    Written(folder, aif, p);
    EXPECT_EQ(ReadBack(folder).end, static_cast<int32_t>(kFrames) - 1) << aif;
  }
}

TEST(SampleFileLoops, OtherMarkersSurviveChangesOfLoops) {
  const TempFolder folder;
  const auto marks =
      Hex("0004 0001 00000007 03637565 0002 0000000A 0161 0003 00000014 0162 0004 00000019 0163");
  // Two loops that share their start marker; the release loop is off.
  const auto inst =
      Big().U8(60).U8(0).U32(0).U16(0).U16(1).U16(2).U16(3).U16(0).U16(2).U16(4).block;
  WriteBytes(folder.File("s"), FileOf("FORM", "AIFF",
                                      {{"COMM", AifFormatChunk(1, 30, 8)},
                                       {"MARK", marks},
                                       {"INST", inst},
                                       {"SSND", Bytes(38)}}));
  auto sample = Read(folder.File("s"));
  ASSERT_NE(sample, nullptr);
  EXPECT_EQ(sample->parameters.loops,
            (std::vector<RiffLoop>{{10, 19, 0, 0, 0}, {10, 24, 0, 0, 0}}));
  EXPECT_EQ(sample->parameters.playbackType, 1);
  sample->parameters.loops = {{5, 6, 0, 0, 0}, {4, 28, 0, 0, 0}};
  ASSERT_TRUE(WriteTo(*sample, folder.File("s")));
  EXPECT_EQ(ReadBack(folder).loops, sample->parameters.loops);
  sample = Read(folder.File("s"));
  sample->parameters.loops.clear();
  ASSERT_TRUE(WriteTo(*sample, folder.File("s")));
  const Octets file = ReadBytes<Octets>(folder.File("s"));
  const uint8_t* mark = Chunk(folder.File("s"), file, "MARK");
  ASSERT_NE(mark, nullptr);
  EXPECT_EQ(Octets(mark, mark + 12), (Octets{0, 1, 0, 1, 0, 0, 0, 7, 3, 'c', 'u', 'e'}));
}

}  // namespace
}  // namespace zyl::test
