// Sound and chunks of sample files, against libsndfile in both directions and against bytes.
#include <gtest/gtest.h>

#include <cstring>
#include <numeric>

#include "SampleFileTools.h"

using namespace zyltest;

namespace {

struct Kind {
  const char* name;
  int format;
  unsigned bytes;
};

std::vector<int32_t> Kept(std::vector<int32_t> values, unsigned bytes) {
  const uint32_t mask = 0xFFFFFFFFu << (8 * (4 - bytes));
  for (int32_t& v : values) v = static_cast<int32_t>(static_cast<uint32_t>(v) & mask);
  return values;
}

void StoreWithOracle(const std::string& path, int format, int channels,
                     const std::vector<int32_t>& values) {
  SF_INFO info{};
  info.samplerate = 48000;
  info.channels = channels;
  info.format = format;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
  const auto count = static_cast<sf_count_t>(values.size());
  ASSERT_EQ(sf_write_int(file, values.data(), count), count);
  sf_close(file);
}

std::vector<int32_t> LoadWithOracle(const std::string& path, SF_INFO& info) {
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (file == nullptr) return {};
  std::vector<int32_t> values(static_cast<size_t>(info.frames * info.channels));
  sf_read_int(file, values.data(), static_cast<sf_count_t>(values.size()));
  sf_close(file);
  return values;
}

std::vector<int32_t> Interleaved(const BasicSample& sample) {
  std::vector<int32_t> all(sample.FrameCount() * sample.ChannelCount());
  for (unsigned c = 0; c < sample.ChannelCount(); ++c) {
    const std::vector<int32_t> values = ChannelValues(sample, c);
    for (size_t i = 0; i < values.size(); ++i) all[i * sample.ChannelCount() + c] = values[i];
  }
  return all;
}

const Kind kReadable[] = {
    {"wav8", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, 1},
    {"wav16", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 2},
    {"wav24", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 3},
    {"wav32", SF_FORMAT_WAV | SF_FORMAT_PCM_32, 4},
    {"ext8", SF_FORMAT_WAVEX | SF_FORMAT_PCM_U8, 1},
    {"ext24", SF_FORMAT_WAVEX | SF_FORMAT_PCM_24, 3},
    {"rf64", SF_FORMAT_RF64 | SF_FORMAT_PCM_24, 3},
    {"aif8", SF_FORMAT_AIFF | SF_FORMAT_PCM_S8, 1},
    {"aif16", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 2},
    {"aif24", SF_FORMAT_AIFF | SF_FORMAT_PCM_24, 3},
    {"aif32", SF_FORMAT_AIFF | SF_FORMAT_PCM_32, 4},
    {"sowt16", SF_FORMAT_AIFF | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE, 2},
    {"sowt24", SF_FORMAT_AIFF | SF_FORMAT_PCM_24 | SF_ENDIAN_LITTLE, 3},
    {"w64", SF_FORMAT_W64 | SF_FORMAT_PCM_32, 4},
    {"au16", SF_FORMAT_AU | SF_FORMAT_PCM_16, 2},
    {"raw8au", SF_FORMAT_AU | SF_FORMAT_PCM_S8, 1},
    {"flac16", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 2},
    {"flac24", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 3},
    {"rifx", SF_FORMAT_WAV | SF_FORMAT_PCM_16 | SF_ENDIAN_BIG, 2},
};

}  // namespace

TEST(SampleFileData, ReadsWhatTheOracleWritesAndWritesWhatItReads) {
  const TempFolder folder;
  for (const Kind& kind : kReadable) {
    for (const int channels : {1, 2, 3}) {
      SCOPED_TRACE(std::string(kind.name) + " x" + std::to_string(channels));
      // More frames than one block holds. The oracle pads an odd 8-bit AIFF by a frame of its own.
      const auto values = TestValues(static_cast<size_t>(channels) * 70002, 5);
      const std::string path = folder.File(kind.name);
      StoreWithOracle(path, kind.format, channels, values);
      const auto sample = Read(path);
      ASSERT_NE(sample, nullptr);
      ASSERT_TRUE(sample->IsValid());
      EXPECT_EQ(sample->ChannelCount(), static_cast<unsigned>(channels));
      EXPECT_EQ(sample->BytesPerValue(), kind.bytes);
      EXPECT_EQ(sample->BitsPerValue(), 8 * kind.bytes);
      EXPECT_EQ(sample->parameters.rateHz, 48000);
      EXPECT_EQ(Interleaved(*sample), Kept(values, kind.bytes));

      const std::string again = folder.File("again");
      ASSERT_TRUE(WriteTo(*sample, again));
      SF_INFO info{};
      EXPECT_EQ(LoadWithOracle(again, info), Kept(values, kind.bytes));
      EXPECT_EQ(info.samplerate, 48000);
      EXPECT_EQ(info.channels, channels);
      std::string reason;
      const auto described = ReadSampleFile(path, false, reason);
      ASSERT_NE(described, nullptr);
      EXPECT_EQ(described->FrameCount(), sample->FrameCount());
      EXPECT_FALSE(described->IsValid());
    }
  }
}

TEST(SampleFileData, FloatingPointBecomes24BitsHeldAtTheLimits) {
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
    EXPECT_EQ(sample->BitsPerValue(), 24u);
    const int32_t top = 0x7FFFFF00;
    EXPECT_EQ(ChannelValues(*sample, 0),
              (std::vector<int32_t>{0, 1 << 30, -(1 << 30), top, INT32_MIN, top, INT32_MIN, 256}));
    ASSERT_TRUE(WriteTo(*sample, path));
    SF_INFO written{};
    EXPECT_EQ(LoadWithOracle(path, written).size(), 8u);
    EXPECT_EQ(written.format & SF_FORMAT_SUBMASK, SF_FORMAT_PCM_24);
  }
}

TEST(SampleFileData, All16BitValuesPassBothContainers) {
  const TempFolder folder;
  std::vector<int16_t> sound(65536);
  std::iota(sound.begin(), sound.end(), int16_t{-32768});
  WavSample wav;
  AifSample aif;
  for (BasicSample* sample : {static_cast<BasicSample*>(&wav), static_cast<BasicSample*>(&aif)}) {
    ASSERT_TRUE(Lend(*sample, sound));
    ASSERT_TRUE(WriteTo(*sample, folder.File("all")));
    const auto read = Read(folder.File("all"));
    ASSERT_NE(read, nullptr);
    ASSERT_EQ(read->FrameCount(), 65536u);
    EXPECT_EQ(std::memcmp(read->LinBuffer(0), sound.data(), 131072), 0);
  }
}

// Channels of different width and length: the widest and the longest decide.
TEST(SampleFileData, MergedChannelsAreWidenedAndPadded) {
  const TempFolder folder;
  for (unsigned narrow = 1; narrow <= 4; ++narrow) {
    for (unsigned wide = narrow; wide <= 4; ++wide) {
      for (const bool asAif : {false, true}) {
        const auto values = TestValues(40000, 9);
        auto first = Planar(values, 1, 0, narrow);
        auto second = Planar(values, 1, 0, wide);
        WavSample wav;
        AifSample aif;
        BasicSample& sample = asAif ? static_cast<BasicSample&>(aif) : wav;
        sample.SetChannelCount(2);
        sample.SetLinBuffer(first.data(), narrow, 20, 0);
        EXPECT_FALSE(sample.CreateInterleavedBuffer());
        EXPECT_FALSE(WriteTo(sample, folder.File("merged")));
        sample.SetLinBuffer(second.data(), wide, 40000, 1);
        ASSERT_TRUE(sample.CreateInterleavedBuffer());
        ASSERT_TRUE(WriteTo(sample, folder.File("merged")));
        const auto read = Read(folder.File("merged"));
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(read->BytesPerValue(), wide);
        auto expected = Kept(values, narrow);
        std::fill(expected.begin() + 20, expected.end(), 0);
        EXPECT_EQ(ChannelValues(*read, 0), expected);
        EXPECT_EQ(ChannelValues(*read, 1), Kept(values, wide));
        std::filesystem::remove(folder.File("merged"));
      }
    }
  }
}

TEST(SampleFileData, MoreThan4GiBIsRefusedBeforeAnythingIsWritten) {
  const TempFolder folder;
  Store(folder.File("old"), {1, 2, 3});
  std::vector<std::byte> sound(64);
  WavSample wav;
  wav.SetChannelCount(16);
  // Nobody reads the buffers of a refused plan; 16 of 2^27 frames of 2 bytes are 4 GiB and a
  // header.
  for (unsigned c = 0; c < 16; ++c) wav.SetLinBuffer(sound.data(), 2, 1u << 27, c);
  EXPECT_FALSE(wav.CreateInterleavedBuffer());
  EXPECT_FALSE(wav.IsValid());
  EXPECT_FALSE(WriteTo(wav, folder.File("old")));
  EXPECT_EQ(Load(folder.File("old")), (Octets{1, 2, 3}));
  // Just below, the plan is accepted, until a kept chunk fills the rest.
  for (unsigned c = 0; c < 16; ++c) wav.SetLinBuffer(sound.data(), 2, (1u << 27) - 4, c);
  EXPECT_TRUE(wav.CreateInterleavedBuffer());
  wav.otherChunks.resize(1);
  std::memcpy(wav.otherChunks[0].id, "big ", 4);
  wav.otherChunks[0].data.resize(200);
  EXPECT_FALSE(WriteTo(wav, folder.File("old")));
  EXPECT_FALSE(wav.CreateInterleavedBuffer());
}

// A file with every oddity that must survive: chunks before and between, odd sizes, a second format
// and sound, few bits in a wide container, and a channel mask.
TEST(SampleFileData, RewritingAnUntouchedFileGivesTheSameBytes) {
  const TempFolder folder;
  const auto extensible = Little()
                              .U16(0xFFFE)
                              .U16(2)
                              .U32(44100)
                              .U32(44100 * 6)
                              .U16(6)
                              .U16(24)
                              .U16(22)
                              .U16(20)
                              .U32(0x30)
                              .U32(1)
                              .U32(0x100000)
                              .U32(0xAA000080)
                              .U32(0x719B3800)
                              .block;
  const auto sound = Little().U32(0x01020304).U32(0x05060708).U32(0x090A0B0C).block;
  const auto odd = Little().U8(1).U8(2).U8(3).block;
  const auto smpl = Little()
                        .U32(7)
                        .U32(8)
                        .U32(22676)
                        .U32(61)
                        .U32(0x12345678)
                        .U32(30)
                        .U32(0x01020304)
                        .U32(1)
                        .U32(3)
                        .U32(99)
                        .U32(2)
                        .U32(0)
                        .U32(1)
                        .U32(5)
                        .U32(6)
                        .Raw(odd.data(), 3)
                        .block;
  const auto name = Little().Text("INFOINAM").U32(4).Text("Kick").block;
  Store(folder.File("a.wav"), FormBuilder("RIFF", "WAVE")
                                  .Add("JUNK", odd)
                                  .Add("fmt ", extensible)
                                  .Add("bext", odd)
                                  .Add("smpl", smpl)
                                  .Add("fmt ", odd)
                                  .Add("data", sound)
                                  .Add("cue ", odd)
                                  .Add("data", odd)
                                  .Add("LIST", name)
                                  .Add("smpl", odd)
                                  .Done());
  const auto marks = Big()
                         .U16(4)
                         .U16(9)
                         .U32(1)
                         .U8(3)
                         .Text("abc")
                         .U16(2)
                         .U32(0)
                         .U8(2)
                         .Text("in")
                         .U8(0)
                         .U16(5)
                         .U32(2)
                         .U8(0)
                         .U8(0)
                         .U16(30)
                         .U32(3)
                         .U8(0)
                         .U8(0)
                         .block;
  const auto inst = Big()
                        .U8(61)
                        .U8(0xCE)
                        .U8(10)
                        .U8(90)
                        .U8(2)
                        .U8(100)
                        .U16(0xFFFA)
                        .U16(1)
                        .U16(2)
                        .U16(5)
                        .U16(0)
                        .U16(0)
                        .U16(0)
                        .block;
  const auto wholeSound = Big().U32(0).U32(0).Raw(sound.data(), 9).block;
  Store(folder.File("b.aif"), FormBuilder("FORM", "AIFF")
                                  .Add("NAME", odd)
                                  .Add("SSND", wholeSound)
                                  .Add("COMM", AifFormatChunk(1, 3, 24))
                                  .Add("INST", inst)
                                  .Add("APPL", odd)
                                  .Add("MARK", marks)
                                  .Add("MARK", odd)
                                  .Done());
  auto sowt = AifFormatChunk(1, 6, 12);
  const auto type = Big().Text("sowt").U8(4).Text("mine").U8(0).block;
  sowt.insert(sowt.end(), type.begin(), type.end());
  Store(folder.File("c.aifc"), FormBuilder("FORM", "AIFC")
                                   .Add("FVER", odd)
                                   .Add("COMM", sowt)
                                   .Add("SSND", Big().U32(0).U32(0).Raw(sound.data(), 12).block)
                                   .Done());
  for (const char* file : {"a.wav", "b.aif", "c.aifc"}) {
    SCOPED_TRACE(file);
    const auto sample = Read(folder.File(file));
    ASSERT_NE(sample, nullptr);
    ASSERT_TRUE(WriteTo(*sample, folder.File("again")));
    EXPECT_EQ(Load(folder.File("again")), Load(folder.File(file)));
  }
  const auto wav = Read(folder.File("a.wav"));
  EXPECT_EQ(wav->BitsPerValue(), 20u);
  EXPECT_EQ(wav->Name(), "Kick");
  EXPECT_EQ(ListFileChunks(folder.File("a.wav")).size(), 10u);
  const auto chunks = ListFileChunks(folder.File("b.aif"));
  ASSERT_EQ(chunks.size(), 7u);
  EXPECT_EQ(chunks[1].id, "SSND");
  EXPECT_EQ(chunks[1].size, 17u);
  EXPECT_EQ(chunks[1].offset, 32u);
  EXPECT_EQ(ChannelValues(*Read(folder.File("c.aifc")), 0)[0], 0x03040000);
}

// New sound in an old file: other chunks stay in order, a count of frames is put right.
TEST(SampleFileData, NewSoundKeepsTheOtherChunks) {
  const TempFolder folder;
  const std::string path = folder.File("a.wav");
  Store(path, FormBuilder("RIFF", "WAVE")
                  .Add("bext", Little().U8(1).block)
                  .Add("fmt ", WavFormatChunk(2, 8))
                  .Add("fact", Little().U32(2).U8(7).block)
                  .Add("data", Little().U32(0).block)
                  .Add("LIST", Little().U32(5).block)
                  .Done());
  std::string reason;
  auto sample = ReadSampleFile(path, false, reason);
  ASSERT_NE(sample, nullptr);
  std::vector<int16_t> sound{1, 2, 3};
  ASSERT_TRUE(Lend(*sample, sound));
  sample->DetachLinBuffers();  // leaves a copy behind, as it was not written yet
  sound.assign(3, 0);
  ASSERT_TRUE(WriteTo(*sample, path));
  const auto read = Read(path);
  ASSERT_EQ(read->otherChunks.size(), 3u);
  EXPECT_STREQ(read->otherChunks[0].id, "bext");
  EXPECT_EQ(read->otherChunks[1].data, Little().U32(3).U8(7).block);
  EXPECT_STREQ(read->otherChunks[2].id, "LIST");
  EXPECT_EQ(read->BitsPerValue(), 16u);
  EXPECT_EQ(ChannelValues(*read, 0), (std::vector<int32_t>{1 << 16, 2 << 16, 3 << 16}));
}

TEST(SampleFileData, MemoryImagesAreFiles) {
  std::vector<int16_t> sound{-32768, 32767, 5};
  WavSample wav(nullptr);
  wav.parameters.key = 72;
  ASSERT_TRUE(Lend(wav, sound));
  char* image = nullptr;
  const int length = wav.WriteToMem(&image);
  ASSERT_GT(length, 0);
  const std::unique_ptr<char[]> owner(image);
  WavSample back(nullptr);
  ASSERT_TRUE(back.ReadFromMem(image, length));
  back.CreateLinBuffers(16);
  back.DeleteInterleavedBuffer();
  EXPECT_EQ(back.parameters.key, 72);
  const std::unique_ptr<std::byte[]> taken(back.TakeLinBuffer(0));
  ASSERT_NE(taken, nullptr);
  EXPECT_EQ(std::memcmp(taken.get(), sound.data(), 6), 0);
  EXPECT_EQ(back.LinBuffer(0), nullptr);
  EXPECT_FALSE(back.ReadFromMem("RIFF....WAVE", 12));
  EXPECT_FALSE(back.IsValid());
}
