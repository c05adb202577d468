// Whole samples through a pad.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "PadTools.h"

namespace zyl::test {
namespace {

class SampleImages : public ModuleTest {
 protected:
  void TearDown() override {
    program("DeleteTempSample");
    ModuleTest::TearDown();
  }
  RIOObject* New(int bits, int channels, int frames) {
    RIOObject* made =
        program("CreateTempSample", "new" + std::to_string(++made_) + ".wav").Object();
    program("SampleChannelCount", made, channels);
    program("SampleBits", made, bits);
    program("SampleSize", made, frames);
    return made;
  }
  // All that a script sees of a sample, but for its path and its own name.
  std::vector<double> Seen(RIOObject* sample) const {
    std::vector<double> seen;
    for (const char* method : {"SampleChannelCount", "SampleBits", "SampleSize", "SampleSampleRate",
                               "Samplekey", "Sampletune", "SampleplaybackType",
                               "SampleholdLoopTuneOff", "SampleStart", "SampleEnd"}) {
      seen.push_back(program(method, sample).Int());
    }
    const int loops = program("SampleLoopCount", sample).Int();
    for (int l = 0; l < loops; ++l) {
      seen.push_back(program("SampleLoopStart", sample, l).Int());
      seen.push_back(program("SampleLoopEnd", sample, l).Int());
      if (l < 8) seen.push_back(program("SampleLoopTimes", sample, l).Int());
      seen.push_back(program("SampleLoopFineLen", sample, l).Double());
    }
    return seen;
  }
  // The sound of every channel, byte for byte.
  std::string Sound(RIOObject* sample) const {
    std::string all;
    const int frames = program("SampleSize", sample).Int();
    const int width = (program("SampleBits", sample).Int() + 7) / 8;
    for (int c = 0; c < program("SampleChannelCount", sample).Int() && frames > 0; ++c) {
      ROCParam* handle = newROCParam(int32_t{0});
      EXPECT_EQ(program("SampleGetBuffer", sample, handle, c).Int(), frames);
      std::string bytes, reason;
      EXPECT_TRUE(qxBufferBytes(static_cast<uint32_t>(handle->Int()),
                                static_cast<size_t>(frames) * static_cast<size_t>(width), bytes,
                                reason))
          << reason;
      deleteROCParam(handle);
      all += bytes;
    }
    return all;
  }
  RIOObject* Read() { return program("ReadSampleFromPad", &pad).Object(); }

  Program program;  // without a record: samples need none
  Pad pad;

 private:
  int made_ = 0;
};

TEST_F(SampleImages, ASampleComesBackWithAllItHas) {
  std::mt19937 random(5);
  struct Case {
    int bits, channels, frames, loops, tune;
  };
  const Case cases[] = {{8, 1, 100, 1, 0},    {16, 2, 100, 2, -20}, {24, 1, 101, 3, 127},
                        {32, 3, 64, 16, 5},   {12, 2, 50, 0, 1},    {20, 1, 33, 1, -300},
                        {16, 16, 7, 1, 2000}, {1, 1, 9, 0, 0},      {16, 1, 1, 1, 3},
                        {16, 1, 0, 0, -7},    {24, 5, 0, 0, 0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.bits) + " bits, " + std::to_string(c.channels) + " channels, " +
                 std::to_string(c.frames) + " frames");
    RIOObject* sample = New(c.bits, c.channels, c.frames);
    for (int i = 0; i < c.frames; ++i) {
      program("SampleValue", sample, i, static_cast<int32_t>(random()));
    }
    program("SampleSampleRate", sample, 8000 + static_cast<int>(random() % 90000));
    program("Samplekey", sample, static_cast<int>(random() % 128));
    program("Sampletune", sample, c.tune);
    program("SampleholdLoopTuneOff", sample, c.bits - 16);
    program("SampleLoopCount", sample, c.loops);
    for (int l = 0; l < c.loops; ++l) {
      program("SampleLoopStart", sample, l, c.frames / 4);
      program("SampleLoopEnd", sample, l, c.frames / 2);
      program("SampleLoopFineLen", sample, l, 1000.0 * l);
      program("SampleLoopTimes", sample, l, l);
    }
    if (c.frames > 20) {
      program("SampleStart", sample, 3);
      program("SampleEnd", sample, c.frames - 4);
    }
    program("SampleplaybackType", sample, c.loops % 4);
    const std::vector<double> seen = Seen(sample);
    ASSERT_EQ(seen[1], c.bits);
    const std::string sound = Sound(sample);
    pad.Set("what the pad held before");
    const Outcome written = program("WriteSampleToPad", &pad, sample);
    ASSERT_TRUE(written.Ok()) << written.Message();
    EXPECT_EQ(written.result, nullptr);
    EXPECT_EQ(Seen(sample), seen);
    EXPECT_EQ(Sound(sample), sound);
    RIOObject* read = Read();
    ASSERT_NE(read, nullptr);
    EXPECT_NE(read, sample);
    EXPECT_EQ(Seen(read), seen);
    EXPECT_EQ(Sound(read), sound);
    // The same image again; and the new sample is nobody else's.
    const std::string image = pad.Bytes();
    program("WriteSampleToPad", &pad, read);
    EXPECT_EQ(pad.Bytes(), image);
    program("SampleSetValues", read, 0, c.frames, 0);
    EXPECT_EQ(Sound(sample), sound);
  }
}

TEST_F(SampleImages, APadTakesTheImageWithoutACopyOfIt) {
  const auto kibibytes = [](const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
      if (line.rfind(field, 0) == 0) return std::stol(line.substr(field.size()));
    }
    return 0L;
  };
  constexpr int kFrames = 32 << 20;
  RIOObject* sample = New(8, 1, kFrames);
  program("SampleSetValues", sample, 0, kFrames, 1);
  // From now on the peak counts.
  if (!(std::ofstream("/proc/self/clear_refs") << 5 << std::flush)) GTEST_SKIP() << "no such count";
  const long before = kibibytes("VmRSS:");
  program("WriteSampleToPad", &pad, sample);
  EXPECT_GT(pad.DataValue()->GetSize(), kFrames);
  EXPECT_LT(kibibytes("VmHWM:") - before, kFrames / 1024 * 3 / 2);
}

TEST_F(SampleImages, AnObjectOfOneChannelTakesTheWholeSampleAlong) {
  WriteWave(Path("two.wav"), {{1, 2, 3}, {4, 5, 6}});
  RIOObject* second = program("ReadTempSample", Path("two.wav"), 1).Object();
  ASSERT_NE(second, nullptr);
  program("WriteSampleToPad", &pad, second);
  RIOObject* read = program("ReadSampleFromPad", &pad, Path("copy.wav")).Object();
  ASSERT_NE(read, nullptr);
  EXPECT_STREQ(read->GetTypeName(), "CSample");
  EXPECT_EQ(program("SampleFilePath", read).Text(), Path("copy.wav"));
  EXPECT_EQ(program("SampleName", read).Text(), "copy");
  EXPECT_EQ(program("SampleChannelCount", read).Int(), 2);
  EXPECT_EQ(program("SampleChannel", read).Int(), -1);
  EXPECT_EQ(Sound(read), std::string("\1\0\2\0\3\0\4\0\5\0\6\0", 12));
  EXPECT_EQ(program("GetTempSample", Path("copy.wav"), -1).Object(), read);
  EXPECT_FALSE(std::filesystem::exists(Path("copy.wav")));
  // A name of its own travels; without a path there is none.
  program("SampleName", second, "Second");
  program("WriteSampleToPad", &pad, second);
  read = Read();
  EXPECT_EQ(program("SampleName", read).Text(), "Second");
  EXPECT_EQ(program("SampleFilePath", read).Text(), "");
  // It is one of the temporary samples, and goes with them.
  const ROCParam held(read);
  program("DeleteTempSample", read);
  EXPECT_EQ(held.Object(), nullptr);
}

TEST_F(SampleImages, WhatIsNoImageGivesANullObject) {
  RIOObject* sample = New(16, 2, 10);
  program("WriteSampleToPad", &pad, sample);
  const std::string image = pad.Bytes();
  Program loaded;
  loaded.Make();
  loaded("WriteDataToPad", &pad, 1, 1, 2, 3);
  EXPECT_EQ(pad.Bytes().substr(0, image.size()), image) << "slots are written behind it";
  Pad slots;
  loaded("WriteDataToPad", &slots, 1, 1, 2, 3);
  std::string big = image;
  big[22] = 17;  // channels
  for (const std::string& bytes :
       {std::string(), slots.Bytes(), std::string("RIFF"), std::string(500, '\0'),
        image.substr(0, 20), image.substr(4), big, "FORM" + image.substr(4)}) {
    pad.Set(bytes);
    const Outcome outcome = program("ReadSampleFromPad", &pad, Path("none.wav"));
    ASSERT_TRUE(outcome.Ok()) << outcome.Message();
    ASSERT_NE(outcome.result, nullptr);
    EXPECT_EQ(outcome.result->Type(), kTypeObject);
    EXPECT_EQ(outcome.Object(), nullptr);
    EXPECT_EQ(pad.Bytes(), bytes);
  }
  EXPECT_EQ(program("GetTempSample", Path("none.wav")).Object(), nullptr);
  EXPECT_EQ(diagnostics, "");
}

TEST_F(SampleImages, ACutOrDamagedImageGivesAWholeSampleOrNone) {
  RIOObject* sample = New(16, 2, 40);
  program("SampleSetValues", sample, 0, 40, 77);
  program("SampleLoopCount", sample, 1);
  program("SampleLoopStart", sample, 0, 30);
  program("SampleLoopEnd", sample, 0, 39);
  program("WriteSampleToPad", &pad, sample);
  const std::string image = pad.Bytes();
  const std::string sound = Sound(sample);
  const auto check = [&](const std::string& bytes) {
    pad.Set(bytes);
    RIOObject* read = Read();
    if (read == nullptr) return false;
    const int frames = program("SampleSize", read).Int();
    EXPECT_LE(static_cast<size_t>(frames), bytes.size());
    for (int l = 0; l < program("SampleLoopCount", read).Int(); ++l) {
      EXPECT_LT(program("SampleLoopEnd", read, l).Int(), frames);
    }
    Sound(read);
    program("DeleteTempSample", read);
    return true;
  };
  int whole = 0;
  for (size_t length = 0; length < image.size(); ++length) {
    SCOPED_TRACE(length);
    const bool hasSound = length >= 44 + 4;  // the header, and a frame behind it
    EXPECT_EQ(check(image.substr(0, length)), hasSound);
    whole += hasSound ? 1 : 0;
  }
  EXPECT_GT(whole, 0);
  std::mt19937 random(20261124);
  for (int round = 0; round < 2000; ++round) {
    std::string damaged = image;
    for (int i = 0; i < 3; ++i) damaged[random() % damaged.size()] = static_cast<char>(random());
    check(damaged);
  }
}

TEST_F(SampleImages, TheSampleArgumentIsCheckedAfterThePad) {
  pad.Set("kept");
  ExpectArgType(program("WriteSampleToPad", &pad), "Sample", kTypeObject, 2);
  ExpectArgType(program("WriteSampleToPad", &pad, 1), "Sample", kTypeObject, 2);
  ExpectArgPType(program("WriteSampleToPad", &pad, program.Algo()), "ROCAlgo", "CSample", 2);
  ExpectArgValue(program("WriteSampleToPad", &pad, NullObject{}), "Sample", 2);
  ExpectArgType(program("ReadSampleFromPad", &pad, 1), "Path", kTypeString, 2);
  EXPECT_EQ(pad.Bytes(), "kept");
  EXPECT_TRUE(program("ReadSampleFromPad", &pad, NullEntry{}).Ok());
}

// What the fuzzers start from, and what they have found.
TEST_F(SampleImages, TheSeedsOfTheFuzzersEndEveryMethod) {
  Program loaded;
  loaded.Make();
  int seeds = 0;
  for (const char* corpus : {"pad_slots", "wave_image"}) {
    const auto folder = std::filesystem::path(SourcePath()) / "fuzz" / "corpus" / corpus;
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
      SCOPED_TRACE(file.path().string());
      std::ifstream in(file.path(), std::ios::binary);
      const std::string bytes{std::istreambuf_iterator<char>(in), {}};
      pad.Set(bytes);
      ++seeds;
      EXPECT_TRUE(loaded("ReadDataFromPad", &pad, 1).Ok());
      RIOObject* read = Read();
      EXPECT_EQ(pad.Bytes(), bytes);
      Pad again;
      if (read != nullptr) {
        EXPECT_TRUE(program("WriteSampleToPad", &again, read).Ok());
        EXPECT_EQ(Seen(program("ReadSampleFromPad", &again).Object()), Seen(read));
      }
      EXPECT_TRUE(loaded("WriteDataToPad", &pad, 1, 4).Ok());
      EXPECT_TRUE(loaded("RemoveDataFromPad", &pad, 1).Ok());
    }
  }
  EXPECT_GE(seeds, 17);
}

}  // namespace
}  // namespace zyl::test
