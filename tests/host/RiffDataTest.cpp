// Sound and chunks of sample files, against libsndfile in both directions and against bytes.
#include <gtest/gtest.h>

#include <cstring>

#include "SampleFileTools.h"

namespace zyl::test {
namespace {

const struct {
  const char* name;
  int format;
  unsigned bytes;
} kReadable[] = {
    {"wav8", SF_FORMAT_WAV, 1},    {"wav16", SF_FORMAT_WAV, 2},
    {"wav24", SF_FORMAT_WAV, 3},   {"wav32", SF_FORMAT_WAV, 4},
    {"ext24", SF_FORMAT_WAVEX, 3}, {"rf64", SF_FORMAT_RF64, 3},
    {"aif8", SF_FORMAT_AIFF, 1},   {"aif16", SF_FORMAT_AIFF, 2},
    {"aif24", SF_FORMAT_AIFF, 3},  {"aif32", SF_FORMAT_AIFF, 4},
    {"w64", SF_FORMAT_W64, 4},     {"sowt16", SF_FORMAT_AIFF | SF_ENDIAN_LITTLE, 2},
    {"au16", SF_FORMAT_AU, 2},     {"rifx", SF_FORMAT_WAV | SF_ENDIAN_BIG, 2},
    {"flac24", SF_FORMAT_FLAC, 3},
};

TEST(SampleFileData, AgreesWithLibsndfileInBothDirections) {
  const TempFolder folder;
  for (const auto& kind : kReadable) {
    for (const unsigned channels : {1u, 2u, 3u}) {
      SCOPED_TRACE(std::string(kind.name) + " x" + std::to_string(channels));
      // More frames than one block holds. libsndfile pads an odd 8-bit AIFF with one more frame.
      std::vector<Values> sound;
      for (unsigned c = 0; c < channels; ++c) sound.push_back(TestValues(70002, c, kind.bytes));
      const std::string path = folder.File(kind.name);
      StoreSound(path, kind.format, static_cast<int>(8 * kind.bytes), sound);
      const auto sample = Read(path);
      ASSERT_NE(sample, nullptr);
      EXPECT_TRUE(sample->IsValid());
      EXPECT_EQ(sample->BytesPerValue(), kind.bytes);
      EXPECT_EQ(sample->BitsPerValue(), 8 * kind.bytes);
      EXPECT_EQ(sample->parameters.rateHz, 48000);
      EXPECT_TRUE(ChannelsOf(*sample) == sound);

      ASSERT_TRUE(WriteTo(*sample, folder.File("again")));
      const Sound again(folder.File("again"));
      EXPECT_TRUE(again.channels == sound);
      EXPECT_EQ(again.info.samplerate, 48000);
      std::string reason;
      const auto described = ReadSampleFile(path, false, reason);
      ASSERT_NE(described, nullptr);
      EXPECT_EQ(described->FrameCount(), sample->FrameCount());
      EXPECT_FALSE(described->IsValid());
    }
  }
}

TEST(SampleFileData, FloatingPointIsClampedTo24Bits) {
  const TempFolder folder;
  for (const int format : {SF_FORMAT_WAV | SF_FORMAT_FLOAT, SF_FORMAT_AIFF | SF_FORMAT_DOUBLE,
                           SF_FORMAT_W64 | SF_FORMAT_FLOAT}) {
    SF_INFO info{};
    info.samplerate = 44100;
    info.channels = 1;
    info.format = format;
    const std::string path = folder.File("float");
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr);
    const float values[] = {0.0f, 0.5f, -0.5f, 1.0f, -1.0f, 3.0f, -3.0f, 1.0f / 8388608};
    sf_write_float(file, values, 8);
    sf_close(file);
    const auto sample = Read(path);
    ASSERT_NE(sample, nullptr);
    const int top = 0x7FFFFF;
    EXPECT_EQ(ChannelValues(*sample, 0),
              (Values{0, 1 << 22, -(1 << 22), top, -top - 1, top, -top - 1, 1}));
    ASSERT_TRUE(WriteTo(*sample, path));
    EXPECT_EQ(Sound(path).bits, 24);
    EXPECT_EQ(Sound(path).info.frames, 8);
  }
}

TEST(SampleFileData, MoreThan4GiBIsRefusedBeforeAnythingIsWritten) {
  const TempFolder folder;
  WriteBytes(folder.File("old"), Octets{1, 2, 3});
  std::vector<std::byte> sound(64);
  WavSample wav;
  wav.SetChannelCount(16);
  // 4 GiB plus a header, then just below 4 GiB. The buffers of a rejected plan are not read.
  for (const unsigned frames : {1u << 27, (1u << 27) - 4}) {
    wav.otherChunks.clear();
    for (unsigned c = 0; c < 16; ++c) wav.SetLinBuffer(sound.data(), 2, frames, c);
    EXPECT_EQ(wav.CreateInterleavedBuffer(), frames % 8 != 0);
    wav.otherChunks = {{"big ", Bytes(200)}};
    EXPECT_FALSE(WriteTo(wav, folder.File("old")));
    EXPECT_FALSE(wav.CreateInterleavedBuffer());
    EXPECT_EQ(ReadBytes<Octets>(folder.File("old")), (Octets{1, 2, 3}));
  }
}

// Everything unusual that must be preserved: chunks before and between the known ones, odd sizes, a
// second format and sound chunk, few bits in a wide container, a channel mask, a long format chunk,
// nonzero or missing padding, bytes after the form, and bytes around the frames in the sound chunk.
TEST(SampleFileData, RewritingAnUntouchedFileGivesTheSameBytes) {
  const TempFolder folder;
  const auto extensible =
      Hex("FEFF 0200 44AC0000 98090400 0600 1800 1600 1400 30000000"
          "01000000 00001000 800000AA 00389B71");
  const auto sound = Hex("04030201 08070605 0C0B0A09");
  const auto odd = Hex("010203");
  const auto smpl =
      Hex("07000000 08000000 94580000 3D000000 78563412 1E000000 04030201 01000000 03000000"
          "63000000 02000000 00000000 01000000 05000000 06000000 010203");
  const auto name = Little().Text("INFOINAM").U32(4).Text("Kick").block;
  WriteBytes(folder.File("a.wav"), FileOf("RIFF", "WAVE",
                                          {{"JUNK", odd},
                                           {"fmt ", extensible},
                                           {"bext", odd},
                                           {"smpl", smpl},
                                           {"fmt ", odd},
                                           {"data", sound},
                                           {"cue ", odd},
                                           {"data", odd},
                                           {"LIST", name},
                                           {"smpl", odd}}));
  const auto marks = Hex(
      "0004 0009 00000001 03616263 0002 00000000 02696E00 0005 00000002 0000 001E 00000003 0000");
  const auto inst = Hex("3D CE 0A 5A 02 64 FFFA 0001 0002 0005 0000 0000 0000");
  const auto wholeSound = Big().U32(0).U32(0).Raw(sound.data(), 9).block;
  WriteBytes(folder.File("b.aif"), FileOf("FORM", "AIFF",
                                          {{"NAME", odd},
                                           {"SSND", wholeSound},
                                           {"COMM", AifFormatChunk(1, 3, 24)},
                                           {"INST", inst},
                                           {"APPL", odd},
                                           {"MARK", marks},
                                           {"MARK", odd}}));
  auto sowt = AifFormatChunk(1, 6, 12);
  const auto type = Big().Text("sowt").U8(4).Text("mine").U8(0).block;
  sowt.insert(sowt.end(), type.begin(), type.end());
  const auto ssnd = Big().U32(0).U32(0).Raw(sound.data(), 12).block;
  WriteBytes(folder.File("c.aifc"),
             FileOf("FORM", "AIFC", {{"FVER", odd}, {"COMM", sowt}, {"SSND", ssnd}}));
  const auto longFormat = Little().Raw(WavFormatChunk(1, 16).data(), 16).U16(0).block;
  Octets loose =
      FileOf("RIFF", "WAVE", {{std::string("J\0NK", 4), odd}, {"fmt ", longFormat}, {"data", odd}});
  loose[23] = 'p';   // padding of the first chunk
  loose.pop_back();  // padding of the last chunk, which the form counted
  loose[4] = static_cast<uint8_t>(loose[4] - 1);
  WriteBytes(folder.File("d.wav"), loose);
  const auto gap = Big().U32(2).U32(0).U16(7).Raw(sound.data(), 9).U8(1).block;
  Octets tail = FileOf("FORM", "AIFF", {{"COMM", AifFormatChunk(1, 3, 24)}, {"SSND", gap}});
  tail.insert(tail.end(), {'T', 'A', 'G'});
  WriteBytes(folder.File("e.aif"), tail);
  for (const char* file : {"a.wav", "b.aif", "c.aifc", "d.wav", "e.aif"}) {
    SCOPED_TRACE(file);
    const auto sample = Read(folder.File(file));
    ASSERT_NE(sample, nullptr);
    ASSERT_TRUE(WriteTo(*sample, folder.File("again")));
    EXPECT_EQ(ReadBytes<Octets>(folder.File("again")), ReadBytes<Octets>(folder.File(file)));
  }
  const auto changed = Read(folder.File("d.wav"));
  changed->parameters.key = 61;
  ASSERT_TRUE(WriteTo(*changed, folder.File("again")));
  EXPECT_EQ(ListFileChunks(folder.File("again")).at(1).size, 18u);
  const auto wav = Read(folder.File("a.wav"));
  EXPECT_EQ(wav->BitsPerValue(), 20u);
  EXPECT_EQ(wav->Name(), "Kick");
  const ChunkInfo chunk = ListFileChunks(folder.File("b.aif")).at(1);
  EXPECT_EQ(std::pair(chunk.size, chunk.offset), std::pair(uint64_t{17}, uint64_t{32}));
  // A new loop gets an unused identifier.
  wav->parameters.loops.push_back({0, 1, 0, 0, 0});
  ASSERT_TRUE(WriteTo(*wav, folder.File("again")));
  const Octets again = ReadBytes<Octets>(folder.File("again"));
  EXPECT_EQ(Chunk(folder.File("again"), again, "smpl")[36 + 24], 100);
  EXPECT_EQ(ChannelValues(*Read(folder.File("c.aifc")), 0)[0], 0x0304);
}

// New sound in an existing file: the other chunks keep their order, and "fact" is updated.
TEST(SampleFileData, NewSoundKeepsTheOtherChunks) {
  const TempFolder folder;
  const std::string path = folder.File("a.wav");
  WriteBytes(path, FileOf("RIFF", "WAVE",
                          {{"bext", Little().U8(1).block},
                           {"fmt ", WavFormatChunk(2, 8)},
                           {"fact", Little().U32(2).U8(7).block},
                           {"data", Little().U32(0).block},
                           {"LIST", Little().U32(5).block}}));
  std::string reason;
  auto sample = ReadSampleFile(path, false, reason);
  ASSERT_NE(sample, nullptr);
  std::vector<int16_t> sound{1, 2, 3};
  ASSERT_TRUE(Lend(*sample, sound));
  sample->DetachLinBuffers();  // copies the sound, which has not been written yet
  sound.assign(3, 0);
  ASSERT_TRUE(WriteTo(*sample, path));
  const auto read = Read(path);
  ASSERT_EQ(read->otherChunks.size(), 3u);
  EXPECT_STREQ(read->otherChunks[0].id, "bext");
  EXPECT_EQ(read->otherChunks[1].data, Little().U32(3).U8(7).block);
  EXPECT_STREQ(read->otherChunks[2].id, "LIST");
  EXPECT_EQ(read->BitsPerValue(), 16u);
  EXPECT_EQ(ChannelValues(*read, 0), (Values{1, 2, 3}));
}

}  // namespace
}  // namespace zyl::test
