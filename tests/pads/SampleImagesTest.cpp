// Whole samples through a pad.
#include <filesystem>
#include <fstream>
#include <random>

#include "PadTools.h"
#include "edit/EditTools.h"

namespace zyl::test {
namespace {

class SampleImages : public EditTest {
 protected:
  RIOObject* New(int bits, int channels, int frames) {
    RIOObject* made =
        program("CreateTempSample", "new" + std::to_string(++made_) + ".wav").Object();
    program("SampleChannelCount", made, channels);
    program("SampleBits", made, bits);
    program("SampleSize", made, frames);
    return made;
  }
  RIOObject* ReadPad() { return program("ReadSampleFromPad", &pad).Object(); }

  Pad pad;

 private:
  int made_ = 0;
};

TEST_F(SampleImages, SurviveARoundTrip) {
  std::mt19937 random(5);
  const struct {
    int bits, channels, frames, loops, tune;
  } cases[] = {{8, 1, 100, 1, 0},    {24, 2, 101, 3, 127}, {32, 3, 64, 16, 5}, {12, 2, 50, 0, 1},
               {20, 1, 33, 1, -300}, {16, 16, 7, 1, 2000}, {1, 1, 9, 0, 0},    {24, 5, 0, 0, -7}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.bits) + " bits, " + std::to_string(c.frames) + " frames");
    RIOObject* sample = New(c.bits, c.channels, c.frames);
    for (int i = 0; i < c.frames; ++i) {
      program("SampleValue", sample, i, static_cast<int32_t>(random()));
    }
    program("SampleSampleRate", sample, 8000 + static_cast<int>(random() % 90000));
    program("Samplekey", sample, static_cast<int>(random() % 128));
    program("Sampletune", sample, c.tune);
    program("SampleholdLoopTuneOff", sample, c.bits - 16);
    SetPoints(sample, Values(static_cast<size_t>(2 * c.loops + 2), c.frames / 4));
    for (int l = 0; l < c.loops; ++l) {
      program("SampleLoopFineLen", sample, l, 1000.0 * l);
      program("SampleLoopTimes", sample, l, l);
    }
    program("SampleplaybackType", sample, c.loops % 4);
    pad.Set("what the pad held before");
    EXPECT_TRUE(program("WriteSampleToPad", &pad, sample).Ok());
    RIOObject* read = ReadPad();
    ASSERT_TRUE(read != nullptr && read != sample);
    EXPECT_EQ(ReadAll(read), ReadAll(sample));
    EXPECT_EQ(Get(read, "SampleBits"), c.bits);
    // Equal files have equal parameters; the readers have their own tests.
    for (const auto& [one, name] : {std::pair(sample, "a.wav"), {read, "b.wav"}}) {
      program("SampleName", one, "same");
      EXPECT_TRUE(program("SampleWrite", one, Path(name)).Bool());
    }
    EXPECT_EQ(ReadBytes(Path("a.wav")), ReadBytes(Path("b.wav")));
    const std::vector<Values> sound = ReadAll(sample);
    program("SampleSetValues", read, 0, c.frames, 0);
    EXPECT_EQ(ReadAll(sample), sound) << "the new sample is independent";
  }
}

TEST_F(SampleImages, AreMovedIntoThePad) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "the sanitizer's shadow of the memory counts as used memory";
#endif
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

TEST_F(SampleImages, HoldAllChannelsOfAOneChannelObject) {
  WriteWave(Path("two.wav"), {{1, 2, 3}, {4, 5, 6}});
  RIOObject* second = program("ReadTempSample", Path("two.wav"), 1).Object();
  program("WriteSampleToPad", &pad, second);
  RIOObject* read = program("ReadSampleFromPad", &pad, Path("copy.wav")).Object();
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(program("SampleFilePath", read).Text(), Path("copy.wav"));
  EXPECT_EQ(program("SampleName", read).Text(), "copy");
  EXPECT_EQ(program("SampleChannel", read).Int(), -1);
  EXPECT_EQ(ReadAll(read), (std::vector<Values>{{1, 2, 3}, {4, 5, 6}}));
  EXPECT_EQ(program("GetTempSample", Path("copy.wav"), -1).Object(), read);
  EXPECT_FALSE(std::filesystem::exists(Path("copy.wav")));
  // A name that was set is stored in the image.
  program("SampleName", second, "Second");
  program("WriteSampleToPad", &pad, second);
  const ROCParam held(ReadPad());
  EXPECT_EQ(program("SampleName", held.Object()).Text(), "Second");
  EXPECT_EQ(program("SampleFilePath", held.Object()).Text(), "");
  program("DeleteTempSample", held.Object());
  EXPECT_EQ(held.Object(), nullptr);
}

TEST_F(SampleImages, OtherBytesReadAsANullObject) {
  program("WriteSampleToPad", &pad, New(16, 2, 10));
  const std::string image = pad.Bytes();
  program("WriteDataToPad", &pad, 1, 1, 2, 3);
  EXPECT_EQ(pad.Bytes().substr(0, image.size()), image) << "slots are written after it";
  std::string big = image;
  big[22] = 17;  // channels
  for (const std::string& bytes : {std::string(), pad.Bytes().substr(image.size()),
                                   std::string("RIFF"), std::string(500, '\0'), image.substr(0, 20),
                                   image.substr(4), big, "FORM" + image.substr(4)}) {
    pad.Set(bytes);
    EXPECT_EQ(program("ReadSampleFromPad", &pad, Path("none.wav")).Object(), nullptr);
    EXPECT_EQ(pad.Bytes(), bytes);
  }
  EXPECT_EQ(program("GetTempSample", Path("none.wav")).Object(), nullptr);
  EXPECT_EQ(diagnostics, "");
}

}  // namespace
}  // namespace zyl::test
