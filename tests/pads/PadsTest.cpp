// Data pads: program parameters in slots, and whole samples.
#include <filesystem>
#include <fstream>
#include <numeric>
#include <random>

#include "edit/EditTools.h"
#include "support/ProgramRecord.h"

namespace zyl::test {
namespace {

struct Pad : RODPad {
  Pad() = default;
  explicit Pad(const std::string& bytes) { Set(bytes); }
  void Set(const std::string& bytes) {
    DataValue()->SetData(bytes.data(), static_cast<int>(bytes.size()));
  }
  std::string Bytes() const {
    const auto* data = reinterpret_cast<const char*>(DataValue()->Data());
    return data == nullptr ? "" : std::string(data, static_cast<size_t>(DataValue()->GetSize()));
  }
};

std::string Words(const std::vector<uint32_t>& words) {
  std::string bytes;
  for (const uint32_t word : words) {
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>(word >> (8 * i));
  }
  return bytes;
}

// The word of one entry.
uint32_t Entry(int number, int value) {
  return static_cast<uint32_t>(number) | static_cast<uint32_t>(value) << 16;
}

// ---- Parameters ----

constexpr int kLoudVel = 15;  // the parameters that the tests use by number
constexpr int kLoudPrs = 17;

class ParameterSlots : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    program.Make();
    TakeDirty();
  }
  Outcome Write(int id, const std::vector<int>& numbers) {
    ROCParams arguments;
    arguments.AddTail(ToParam(&pad));
    arguments.AddTail(ToParam(id));
    for (const int number : numbers) arguments.AddTail(ToParam(number));
    return CallList(program.Algo(), "WriteDataToPad", &arguments);
  }
  Outcome Read(int id) { return program("ReadDataFromPad", &pad, id); }
  int Value(int number) const { return program("PRGIntValue", number).Int(); }
  uint32_t Stored(int number) const { return Entry(number, Value(number)); }

  Pad pad;
};

TEST_F(ParameterSlots, ASlotIsHeaderEntriesAndZeroPadding) {
  const uint32_t none = Entry(0x1234, 0xFFFF), vel = Stored(kLoudVel);
  const std::pair<std::vector<int>, std::vector<uint32_t>> cases[] = {
      {{}, {16, 77, 0, 0}},
      {{kLoudVel}, {16, 77, 0, vel}},
      {{kLoudVel, 4}, {24, 77, 0, vel, Stored(4), 0}},
      {{4, kLoudVel, 5}, {24, 77, 0, Stored(4), vel, Stored(5)}},
      {{0x1234, 0x71234}, {24, 77, 0, none, none, 0}},  // numbers are truncated to 16 bits
      {{0}, {16, 77, 0, Entry(0, 0xFFFF)}},
  };
  for (const auto& [numbers, words] : cases) {
    pad.Set("");
    EXPECT_EQ(Write(77, numbers).result, nullptr);
    EXPECT_EQ(pad.Bytes(), Words(words)) << numbers.size();
  }
  // Values of other types give their low bits; absent entries are skipped.
  const uint32_t unnamed = Entry(0, 0xFFFF);
  pad.Set("");
  program("WriteDataToPad", &pad, 1, NullEntry{}, kLoudVel, NullEntry{}, "text", true, 15.0,
          NullObject{}, NullEntry{});
  EXPECT_EQ(pad.Bytes(), Words({32, 1, 0, vel, unnamed, Stored(1), unnamed, unnamed}));
  program("EmptyPadData", &pad);
  EXPECT_EQ(pad.Bytes(), "");
}

TEST_F(ParameterSlots, ASlotThatChangesItsSizeMovesToTheEnd) {
  const uint32_t a = Stored(4);
  const uint32_t b = Stored(5);
  const struct {
    int id;
    std::vector<int> numbers;
    std::vector<uint32_t> words;
  } steps[] = {
      {5, {4}, {16, 5, 0, a}},
      {7, {4}, {16, 5, 0, a, 16, 7, 0, a}},
      {5, {4, 5, 4}, {16, 7, 0, a, 24, 5, 0, a, b, a}},
      {7, {5}, {16, 7, 0, b, 24, 5, 0, a, b, a}},
      {-1, {4}, {16, 7, 0, b, 24, 5, 0, a, b, a, 16, 0xFFFFFFFF, 0, a}},
      {5, {4}, {16, 7, 0, b, 16, 0xFFFFFFFF, 0, a, 16, 5, 0, a}},
  };
  for (const auto& [id, numbers, words] : steps) {
    Write(id, numbers);
    EXPECT_EQ(pad.Bytes(), Words(words)) << id;
  }
  const std::pair<int, std::vector<uint32_t>> removals[] = {
      {99, steps[5].words},
      {-1, {16, 7, 0, b, 16, 5, 0, a}},  // the middle slot
      {7, {16, 5, 0, a}},                // the first
      {5, {}}};
  for (const auto& [id, words] : removals) {
    program("RemoveDataFromPad", &pad, id);
    EXPECT_EQ(pad.Bytes(), Words(words)) << id;
  }
}

TEST_F(ParameterSlots, ReadingBackChangesOnlyWhatDiffers) {
  const ProgramRecord record(program);
  Listen();
  // Storing the individual output always notifies.
  const std::string kOutput = "10 -1 -1 -1 230 -1 -1 -1 ";
  // 60 entries need padding, 61 do not.
  for (const int count : {60, 61}) {
    std::vector<int> numbers(static_cast<size_t>(count));
    std::iota(numbers.begin(), numbers.end(), 1);
    Write(count, numbers);
    const auto before = record.Image();
    TakeDirty();
    EXPECT_TRUE(Read(count).Ok());
    EXPECT_EQ(record.Image(), before);
    EXPECT_FALSE(TakeDirty());
    EXPECT_EQ(TakeNotified(), kOutput);
    program("PRGIntValue", kLoudVel, Value(kLoudVel) - 1);
    program("PRGIntValue", kLoudPrs, Value(kLoudPrs) + 1);
    EXPECT_NE(record.Image(), before);
    TakeNotified();
    Read(count);
    EXPECT_EQ(record.Image(), before);
    EXPECT_TRUE(TakeDirty());
    EXPECT_EQ(TakeNotified(), kOutput + "15 20 -1 -1 17 0 -1 -1 ");
  }
}

TEST_F(ParameterSlots, ValuesAreSigned16Bit) {
  program("PRGIntValue", 4, 1);
  Listen();
  pad.Set(Words({32, 1, 0, Entry(60000, 40000), Entry(4, 0), Entry(4, 3), Entry(0, 1), 0}));
  Read(1);
  EXPECT_EQ(notified, "60000 -25536 -1 -1 4 0 -1 -1 4 3 -1 -1 0 1 -1 -1 ");
  EXPECT_EQ(Value(4), 3);
}

// A slot may have any size from 8 and is truncated at the end of the buffer. No other bytes are
// read or removed.
TEST_F(ParameterSlots, ReadsSlotsOfAnySizeFrom8Bytes) {
  const int vel = Value(kLoudVel);
  const int prs = Value(kLoudPrs);
  const uint32_t change = Entry(kLoudVel, vel - 1);
  const uint32_t change2 = Entry(kLoudPrs, prs - 1);
  const std::string other = Words({16, 2, 0, 0});
  const std::string good = Words({16, 1, 0, change});
  const std::string sized20 = Words({20, 1, 0, change, change2});
  const auto noSlot = [](const char* what, const std::string& bytes) {
    return std::tuple(what, bytes, 0, bytes);
  };
  // Description, bytes, how many of the two changes the slot has, and the bytes without the slot.
  const std::tuple<const char*, std::string, int, std::string> cases[] = {
      {"20 bytes", sized20 + other, 2, other},
      {"20 bytes after others", other + sized20, 2, other},
      {"after one of 20 bytes", Words({20, 2, 0, 0, 0, 24, 1, 0, change, change2, 0}), 2,
       Words({20, 2, 0, 0, 0})},
      {"19 bytes", Words({19, 1, 0, change, change2}).substr(0, 19) + other, 1, other},
      {"no entries", Words({12, 1, 0}) + other, 0, other},
      {"no header", Words({8, 1}) + other, 0, other},
      {"a reserved word that is not 0", Words({16, 1, 1, change}), 0, ""},
      {"beyond the end", other + Words({24, 1, 0, change, change2}), 2, other},
      {"a size that wraps around", other + Words({0xFFFFFFF0, 1, 0, change}), 1, other},
      {"cut in an entry", good.substr(0, 15), 0, ""},
      // The reserved word lacks one byte; the byte after the slot is 0.
      {"cut in the header", Words({11, 1, 0}).substr(0, 11) + Words({0x100, 2, 0, 0}), 0,
       Words({0x100, 2, 0, 0})},
      {"cut after the id", other + Words({16, 1}), 0, other},
      noSlot("empty", ""),
      noSlot("a size of 7", Words({7, 1, 0, change}) + good),
      noSlot("7 bytes", good.substr(0, 7)),
      noSlot("a slot after a size of 0", Words({0, 2, 0, 0}) + good),
      noSlot("a slot inside another", Words({32, 2, 0, change}) + good),
      noSlot("another id", Words({16, 2, 0, change})),
  };
  for (const auto& [what, bytes, read, rest] : cases) {
    SCOPED_TRACE(what);
    pad.Set(bytes);
    program("PRGIntValue", kLoudVel, vel);
    program("PRGIntValue", kLoudPrs, prs);
    TakeDirty();
    EXPECT_TRUE(Read(1).Ok());
    EXPECT_EQ(TakeDirty(), read > 0);
    EXPECT_EQ(Value(kLoudVel), read > 0 ? vel - 1 : vel);
    EXPECT_EQ(Value(kLoudPrs), read > 1 ? prs - 1 : prs);
    Write(1, {4, 5, 4});
    EXPECT_EQ(pad.Bytes(), rest + Words({24, 1, 0, Stored(4), Stored(5), Stored(4)}));
    pad.Set(bytes);
    EXPECT_TRUE(program("RemoveDataFromPad", &pad, 1).Ok());
    EXPECT_EQ(pad.Bytes(), rest);
  }
}

// ---- Samples ----

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
    // Compare the parameters by comparing files; the readers have their own tests.
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
  // Reset the peak.
  if (!(std::ofstream("/proc/self/clear_refs") << 5 << std::flush))
    GTEST_SKIP() << "the system has no such counter";
  const long before = kibibytes("VmRSS:");
  program("WriteSampleToPad", &pad, sample);
  EXPECT_GT(pad.DataValue()->GetSize(), kFrames);
  EXPECT_LT(kibibytes("VmHWM:") - before, kFrames / 1024 * 3 / 2);
}

TEST_F(SampleImages, ContainAllChannelsOfAOneChannelObject) {
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
