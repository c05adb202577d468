// Key, tuning and loops of sample files, against the bytes of their chunks.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "SampleFileTools.h"

using namespace zyltest;

namespace {

constexpr unsigned kFrames = 1000;

struct Container {
  bool aif;
  std::unique_ptr<BasicSample> New() const {
    if (aif) return std::make_unique<AifSample>();
    return std::make_unique<WavSample>();
  }
};

// Writes parameters with some sound and answers the file's bytes.
Octets Written(const TempFolder& folder, const Container& container, const RiffParameters& p) {
  std::vector<int16_t> sound(kFrames);
  const auto sample = container.New();
  sample->parameters = p;
  EXPECT_TRUE(Lend(*sample, sound));
  EXPECT_TRUE(WriteTo(*sample, folder.File("s")));
  return Load(folder.File("s"));
}

RiffParameters ReadBack(const TempFolder& folder) {
  const auto sample = Read(folder.File("s"));
  return sample == nullptr ? RiffParameters() : sample->parameters;
}

const uint8_t* Chunk(const TempFolder& folder, const Octets& file, const char* id) {
  for (const ChunkInfo& chunk : ListFileChunks(folder.File("s"))) {
    if (chunk.id == id) return file.data() + chunk.offset;
  }
  return nullptr;
}

uint32_t Little32(const uint8_t* at) {
  return at[0] | uint32_t{at[1]} << 8 | uint32_t{at[2]} << 16 | uint32_t{at[3]} << 24;
}

unsigned Big16(const uint8_t* at) { return unsigned{at[0]} << 8 | at[1]; }

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
  p.loops[5] = p.loops[4];                    // one place twice
  p.loops[15].end = kFrames - 1;              // ends with the sound
  p.loops[14].start = p.loops[14].end = 123;  // one frame
  return p;
}

}  // namespace

TEST(SampleFileTuning, EveryDetuneAndEveryTuneComesBack) {
  const TempFolder folder;
  for (const Container& container : {Container{false}, Container{true}}) {
    SCOPED_TRACE(container.aif ? "AIFF" : "WAVE");
    std::vector<int> tunes{-513, -257, -256, -255, -129, 129, 255, 256, 300, 1000};
    for (int cents = -50; cents <= 50; ++cents) {
      tunes.push_back(static_cast<int>(std::lround(cents * 2.56)));
    }
    for (int tune = -128; tune <= 128; tune += 5) tunes.push_back(tune);
    for (const int key : {0, 60, 127}) {
      for (const int tune : tunes) {
        RiffParameters p;
        p.key = key;
        p.tune = tune;
        Written(folder, container, p);
        EXPECT_EQ(ReadBack(folder), p) << key << " " << tune;
      }
    }
  }
}

TEST(SampleFileTuning, StandsInTheStandardChunks) {
  const TempFolder folder;
  struct Row {
    int key, tune;
    uint32_t note, fraction;
    int aifNote, cents;
    bool wavOwn, aifOwn;
  };
  const Row rows[] = {
      {60, 0, 60, 0, 60, 0, false, false},
      {60, 64, 60, 0x40000000, 60, 25, false, false},
      {60, -64, 59, 0xC0000000, 60, -25, false, false},
      {60, 128, 60, 0x80000000, 60, 50, false, false},
      {60, -128, 59, 0x80000000, 60, -50, true, false},
      {60, 300, 61, 44u << 24, 61, 17, true, true},
      {60, 1, 60, 1u << 24, 60, 0, false, true},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.tune);
    RiffParameters p;
    p.key = row.key;
    p.tune = row.tune;
    const Octets wav = Written(folder, {false}, p);
    const uint8_t* smpl = Chunk(folder, wav, "smpl");
    ASSERT_NE(smpl, nullptr);
    EXPECT_EQ(Little32(smpl + 8), 22676u);
    EXPECT_EQ(Little32(smpl + 12), row.note);
    EXPECT_EQ(Little32(smpl + 16), row.fraction);
    EXPECT_EQ(Chunk(folder, wav, "zyls") != nullptr, row.wavOwn);
    const Octets aif = Written(folder, {true}, p);
    const uint8_t* inst = Chunk(folder, aif, "INST");
    ASSERT_NE(inst, nullptr);
    EXPECT_EQ(inst[0], row.aifNote);
    EXPECT_EQ(static_cast<int8_t>(inst[1]), row.cents);
    EXPECT_EQ(Chunk(folder, aif, "zyls") != nullptr, row.aifOwn);
  }
}

TEST(SampleFileTuning, AnInstChunkCountsWhereThereIsNoSmpl) {
  const TempFolder folder;
  const auto inst = Little().U8(40).U8(0xE7).U8(0).U8(0).U8(127).U8(1).U8(127).block;
  Store(folder.File("s"), FormBuilder("RIFF", "WAVE")
                              .Add("fmt ", WavFormatChunk(1, 16))
                              .Add("data", Little().U32(0).block)
                              .Add("inst", inst)
                              .Done());
  EXPECT_EQ(ReadBack(folder).key, 40);
  EXPECT_EQ(ReadBack(folder).tune, -64);
}

TEST(SampleFileLoops, SixteenLoopsAndAllParametersComeBack) {
  const TempFolder folder;
  for (const Container& container : {Container{false}, Container{true}}) {
    for (int playbackType = 0; playbackType <= 3; ++playbackType) {
      for (const size_t count : {0u, 1u, 2u, 3u, 16u}) {
        RiffParameters p = FullParameters();
        p.playbackType = playbackType;
        p.loops.resize(count);
        Written(folder, container, p);
        EXPECT_EQ(ReadBack(folder), p) << container.aif << " " << playbackType << " " << count;
        // And once more through the object that was read.
        const auto sample = Read(folder.File("s"));
        ASSERT_TRUE(WriteTo(*sample, folder.File("s")));
        EXPECT_EQ(ReadBack(folder), p);
      }
    }
  }
}

TEST(SampleFileLoops, EndsAreInclusiveInWaveAndBehindInAiff) {
  const TempFolder folder;
  RiffParameters p;
  p.playbackType = 0;
  p.loops = {{100, 299, 0x40000000, 3, 0}, {10, 19, 0, 0, 1}};
  const Octets wav = Written(folder, {false}, p);
  const uint8_t* smpl = Chunk(folder, wav, "smpl");
  ASSERT_NE(smpl, nullptr);
  EXPECT_EQ(Little32(smpl + 28), 2u);
  const uint32_t firstLoop[] = {0, 0, 100, 299, 0x40000000, 3};
  for (size_t i = 0; i < 6; ++i) EXPECT_EQ(Little32(smpl + 36 + 4 * i), firstLoop[i]);
  EXPECT_EQ(Little32(smpl + 36 + 24 + 4), 1u);
  EXPECT_EQ(Chunk(folder, wav, "zyls"), nullptr);

  const Octets aif = Written(folder, {true}, p);
  const uint8_t* inst = Chunk(folder, aif, "INST");
  const uint8_t* mark = Chunk(folder, aif, "MARK");
  ASSERT_NE(inst, nullptr);
  ASSERT_NE(mark, nullptr);
  EXPECT_EQ(Big16(inst + 8), 1u);
  EXPECT_EQ(Big16(inst + 14), 2u);
  ASSERT_EQ(Big16(mark), 4u);
  std::vector<std::pair<unsigned, unsigned>> positions;
  for (const uint8_t* at = mark + 2; positions.size() < 4; at += 7 + (at[6] | 1)) {
    positions.emplace_back(Big16(at), Big16(at + 4));
  }
  const std::pair<unsigned, unsigned> expected[] = {{Big16(inst + 10), 100},
                                                    {Big16(inst + 12), 300},
                                                    {Big16(inst + 16), 10},
                                                    {Big16(inst + 18), 20}};
  for (size_t i = 0; i < 4; ++i) EXPECT_EQ(positions[i], expected[i]) << i;
  // The oracle agrees on where the loop lies.
  SF_INFO info{};
  SNDFILE* file = sf_open(folder.File("s").c_str(), SFM_READ, &info);
  SF_INSTRUMENT instrument{};
  ASSERT_EQ(sf_command(file, SFC_GET_INSTRUMENT, &instrument, sizeof instrument), SF_TRUE);
  sf_close(file);
  EXPECT_EQ(instrument.loops[0].start, 100u);
  EXPECT_EQ(instrument.loops[0].end, 300u);
}

// Another program moved the loop, tuned the file or cut the sound and left our chunk as it was.
TEST(SampleFileLoops, StandardChunksWinOverAnOutdatedOwnChunk) {
  const TempFolder folder;
  const RiffParameters p = FullParameters();
  const auto rewritten = [&](bool aif, const char* id, ptrdiff_t offset, uint8_t byte) {
    Octets file = Written(folder, {aif}, p);
    const uint8_t* chunk = Chunk(folder, file, id);
    if (chunk == nullptr) return RiffParameters();
    file[static_cast<size_t>(chunk - file.data() + offset)] = byte;
    Store(folder.File("s"), file);
    return ReadBack(folder);
  };
  const RiffParameters moved = rewritten(false, "smpl", 36 + 8, 77);
  EXPECT_EQ(moved.loops[0].start, 77u);
  EXPECT_EQ(moved.playbackType, 0);
  // The fraction of a semitone beside the new note is above one half.
  EXPECT_EQ(rewritten(false, "smpl", 12, 50).key, 51);
  EXPECT_EQ(rewritten(true, "INST", 0, 50).key, 50);
  // The ninth marker belongs to the fifth loop, which no standard chunk names.
  EXPECT_EQ(rewritten(true, "MARK", 2 + 4 * (20 + 18) + 5, 1).loops.size(), 1u);
  // Only the length of the sound differs.
  RiffParameters tuned;
  tuned.tune = -128;
  const Octets file = Written(folder, {false}, tuned);
  FormBuilder shorter("RIFF", "WAVE");
  for (const ChunkInfo& chunk : ListFileChunks(folder.File("s"))) {
    const auto* data = reinterpret_cast<const std::byte*>(file.data() + chunk.offset);
    const uint64_t size = chunk.id == "data" ? chunk.size - 2 : chunk.size;
    shorter.Add(chunk.id.c_str(), zyl::Bytes(data, data + size));
  }
  Store(folder.File("s"), shorter.Done());
  EXPECT_EQ(ReadBack(folder).key, 59);
  EXPECT_EQ(ReadBack(folder).tune, 128);
}

TEST(SampleFileLoops, MarkersOfNoLoopStayWhenLoopsChange) {
  const TempFolder folder;
  const auto marks = Big()
                         .U16(4)
                         .U16(1)
                         .U32(7)
                         .U8(3)
                         .Text("cue")
                         .U16(2)
                         .U32(10)
                         .U8(1)
                         .Text("a")
                         .U16(3)
                         .U32(20)
                         .U8(1)
                         .Text("b")
                         .U16(4)
                         .U32(25)
                         .U8(1)
                         .Text("c")
                         .block;
  // Two loops with one marker as their start.
  const auto inst =
      Big().U8(60).U8(0).U32(0).U16(0).U16(1).U16(2).U16(3).U16(1).U16(2).U16(4).block;
  Store(folder.File("s"), FormBuilder("FORM", "AIFF")
                              .Add("COMM", AifFormatChunk(1, 30, 8))
                              .Add("MARK", marks)
                              .Add("INST", inst)
                              .Add("SSND", zyl::Bytes(38))
                              .Done());
  auto sample = Read(folder.File("s"));
  ASSERT_NE(sample, nullptr);
  EXPECT_EQ(sample->parameters.loops,
            (std::vector<RiffLoop>{{10, 19, 0, 0, 0}, {10, 24, 0, 0, 0}}));
  EXPECT_EQ(sample->parameters.playbackType, 0);
  sample->parameters.loops = {{5, 6, 0, 0, 0}, {4, 28, 0, 0, 0}};
  ASSERT_TRUE(WriteTo(*sample, folder.File("s")));
  EXPECT_EQ(ReadBack(folder).loops, sample->parameters.loops);
  sample = Read(folder.File("s"));
  sample->parameters.loops.clear();
  sample->parameters.playbackType = 2;
  ASSERT_TRUE(WriteTo(*sample, folder.File("s")));
  const Octets file = Load(folder.File("s"));
  const uint8_t* mark = Chunk(folder, file, "MARK");
  ASSERT_NE(mark, nullptr);
  EXPECT_EQ(Octets(mark, mark + 12), (Octets{0, 1, 0, 1, 0, 0, 0, 7, 3, 'c', 'u', 'e'}));
}
