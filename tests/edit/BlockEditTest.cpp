// Edits that give a sample new blocks: cutting, splicing, resizing, other widths and channels; and
// what becomes of start, end, loops, the other channels and the handles of buffers.
#include <climits>

#include "edit/EditTools.h"

namespace zyl::test {
namespace {

using BlockEdits = EditTest;

Values Join(std::initializer_list<Values> parts) {
  Values joined;
  for (const Values& part : parts) joined.insert(joined.end(), part.begin(), part.end());
  return joined;
}

TEST_F(BlockEdits, PointsAnywhereNeverOverflow) {
  Open(16, Counting(10, 1));
  SetPoints(first, {INT_MIN, INT_MIN, INT_MAX, INT_MAX, INT_MIN, INT_MIN});
  EXPECT_TRUE(program("SampleDelete", first, 3, 3).Bool());
  EXPECT_EQ(Points(first), (Values{INT_MIN, INT_MIN, INT_MAX, INT_MAX, INT_MIN, INT_MIN + 1}));
  program("SampleCopyTo", first, first, 2);
  EXPECT_EQ(Points(first)[2], INT_MAX);
  EXPECT_TRUE(program("SampleExtract", first, 0, 9).Bool());
  EXPECT_EQ(Points(first), (Values{0, INT_MIN, 0, 9, INT_MIN, INT_MIN + 1}));
}

TEST_F(BlockEdits, SplicesAreInFrontByDefaultAndMayBeOfTheSampleItself) {
  const std::string otherPath = Path("other.wav");
  StoreSound(otherPath, SF_FORMAT_WAV, 16, {{71, 72, 73}});
  Open(16, {{1, 2}});
  EXPECT_TRUE(program("SampleCopyTo", first, Whole(otherPath)).Bool());
  EXPECT_EQ(Read(first, 0), (Values{71, 72, 73, 1, 2})) << "without an index in front";
  EXPECT_TRUE(program("SampleCopyTo", first, first, 1).Bool());
  EXPECT_EQ(Read(first, 0), (Values{71, 71, 72, 73, 1, 2, 72, 73, 1, 2})) << "into itself";
}

TEST_F(BlockEdits, CopiesWithoutIndexesMakeOnePosition) {
  const std::string otherPath = Path("other.wav");
  StoreSound(otherPath, SF_FORMAT_WAV, 16, Counting(20, 2));
  Open(16, Counting(10, 2));
  EXPECT_TRUE(program("SampleCopyFrom", whole, Whole(otherPath)).Bool());
  EXPECT_EQ(ReadAll(whole), (std::vector<Values>{{0}, {0}}));
}

TEST_F(BlockEdits, OtherWidthsAreConvertedByShifting) {
  const Values values{0, 1, -1, 100, -128, 127};
  for (const int from : {8, 16, 24, 32}) {
    for (const int to : {8, 16, 24, 32}) {
      SCOPED_TRACE(std::to_string(from) + " to " + std::to_string(to));
      Values wide, converted;
      for (const int value : values) {
        wide.push_back(from == 8 ? value : value * (1 << (from - 8)) + 5);
        const int64_t shifted = int64_t{wide.back()} << 32 >> (32 + from - std::min(from, to));
        converted.push_back(static_cast<int>(shifted * (int64_t{1} << std::max(0, to - from))));
      }
      const std::string otherPath = Path("other" + std::to_string(from) + ".wav");
      StoreSound(otherPath, SF_FORMAT_WAV, from, {wide});
      Open(from, {wide, wide});
      EXPECT_EQ(program("SampleBits", second, to).Int(), from);
      EXPECT_EQ(ReadAll(whole), (std::vector<Values>{converted, converted}));
      Open(to, {{1, 2}});
      EXPECT_TRUE(program("SampleCopyTo", first, Whole(otherPath), 1).Bool());
      EXPECT_EQ(Read(first, 0), Join({{1}, converted, {2}})) << "the sample keeps its width";
      EXPECT_EQ(program("SampleSize", first, 0).Int(), 8);
      EXPECT_TRUE(program("SampleCopyTo", first, Whole(otherPath), 4).Bool());
      EXPECT_EQ(Read(first, 0), wide) << "an empty sample takes the other's width";
      program("SampleBits", first, to);
      EXPECT_TRUE(program("SampleCopyFrom", first, Whole(otherPath), 0, 99).Bool());
      EXPECT_EQ(Read(first, 0), wide) << "a copy brings its width";
    }
  }
  Open(16, {{0x1234, -0x1234, 0x7FFF}});
  program("SampleBits", first, 12);
  EXPECT_EQ(Read(first, 0), (Values{0x1230, -0x1240, 0x7FF0})) << "fewer bits drop the lowest";
}

TEST_F(BlockEdits, BufferHandlesExpireWithTheirBuffers) {
  Open(16, {{1, 2, 3}, {4, 5, 6}});
  const auto lives = [](int handle) {
    std::string bytes, reason;
    return qxBufferBytes(static_cast<uint32_t>(handle), 2, bytes, reason);
  };
  int positions = 0;
  const int left = Handle(whole, -1, positions), right = Handle(first, 1, positions);
  EXPECT_EQ(positions, 3);
  EXPECT_NE(left, right);
  EXPECT_EQ(Handle(second, 1, positions), right) << "its own channel";
  for (const int channel : {2, -2}) EXPECT_EQ(Handle(whole, channel, positions) + positions, 0);
  program("SampleSetValues", whole, 0, 3, 9);
  program("SampleReverseValues", second, 0, 3);
  EXPECT_TRUE(lives(left) && lives(right)) << "edits in place keep the buffer";
  program("SampleCopyFrom", second, first, 0, 2);
  EXPECT_TRUE(lives(left));
  EXPECT_FALSE(lives(right));
  for (const int bits : {24, 16, 8}) {
    const int handles[] = {Handle(first, 0, positions), Handle(first, 1, positions)};
    EXPECT_TRUE(lives(handles[0]) && lives(handles[1]));
    program(bits == 16 ? "SampleSize" : "SampleBits", first, bits);
    EXPECT_FALSE(lives(handles[0]) || lives(handles[1]));
  }
}

TEST_F(BlockEdits, EmptySamplesAreNothingToEdit) {
  Open(16, Counting(10, 1));
  program("SampleCreate", 0, 3, "wav");
  RIOObject* empty = program("SampleGet", 0, 3).Object();
  EXPECT_FALSE(program("SampleCopyFrom", first, empty).Bool());
  EXPECT_TRUE(program("SampleCopyTo", first, empty, 5).Bool()) << "nothing, but that is inserted";
  EXPECT_EQ(ReadAll(first), Counting(10, 1));
  EXPECT_FALSE(program("SampleExtract", empty, 0, 0).Bool());
  EXPECT_FALSE(program("SampleDelete", empty, 0, 0).Bool());
  EXPECT_EQ(program("SampleValue", empty, 0).Int(), 0);
  EXPECT_EQ(program("SampleGetDCOffset", empty, 0, 1).Int(), 0);
}

TEST_F(BlockEdits, TheExtensionSelectsTheKindOfANewSample) {
  const std::pair<const char*, bool> extensions[] = {
      {"wav", true}, {"AIF", true}, {"S", true}, {"mp3", false}, {"", false}, {".wav", false}};
  for (const auto& [extension, made] : extensions) {
    SCOPED_TRACE(extension);
    program("ZoneSampleSet", 0, 2);
    program("Dirty", false);
    EXPECT_EQ(program("SampleCreate", 0, 2, extension, 3).Bool(), made);
    EXPECT_TRUE(program("Dirty").Bool());
    EXPECT_EQ(program("ZoneSampleExists", 0, 2).Bool(), made);
    if (!made) continue;
    EXPECT_TRUE(program("SampleDirty", 0, 2).Bool());
    RIOObject* sample = program("SampleGet", 0, 2).Object();
    EXPECT_EQ(Get(sample, "SampleGetSize"), 0);
    EXPECT_EQ(Get(sample, "SampleChannelCount"), 3);
    EXPECT_EQ(Get(sample, "SampleChannel"), -1);
  }
  Open(16, Counting(4, 1));
  EXPECT_TRUE(program("SampleCreate", 0, 0, "wav").Bool());
  EXPECT_EQ(Read(first, 0), Counting(4, 1)[0]) << "an object of the former record stays";
  EXPECT_EQ(program("SampleChannel", 0, 0).Int(), 0) << "one channel by itself";
}

TEST_F(BlockEdits, ChannelsAreSelectedAndAddedSilent) {
  Open(16, {{1, 2}, {3, 4}});
  EXPECT_EQ(program("SampleChannelCount", whole, 3).Int(), 2);
  EXPECT_EQ(ReadAll(second), (std::vector<Values>{{1, 2}, {3, 4}, {0, 0}}));
  EXPECT_EQ(program("SampleChannel", 0, 2).Int(), -1) << "an empty zone";
  program("SampleChannel", 0, 1, 3);
  program("SampleChannel", second, -1);
  EXPECT_EQ(program("SampleChannel", 0, 1, 0).Int(), 1);
  EXPECT_EQ(program("SampleGet", 0, 1).Object(), first) << "the zone plays the first channel now";
  // The loaded file is used, whatever its path says, and the zone keeps its path.
  program("ZoneSamplePath", 0, 1, "moved.wav");
  program("SampleChannel", 0, 1, 2);
  EXPECT_EQ(program("SampleIntValue", 0, 1, 306, 0).Int(), 2);
  EXPECT_EQ(program("SampleGet", 0, 1).Object(), first);
  EXPECT_EQ(program("ZoneSamplePath", 0, 1).Text(), "moved.wav");
  EXPECT_EQ(program("SampleChannel", whole, 1).Int(), -1);
  EXPECT_EQ(program("SampleValue", whole, 0).Int(), 3);
  // A record that plays a channel keeps it, whichever record is the first of that channel.
  StoreSound(Path("pair.wav"), SF_FORMAT_WAV, 16, {{1, 2}, {3, 4}});
  RIOObject* pair = Whole(Path("pair.wav"));
  program("SampleChannel", pair, 1);
  ExpectArgValue(program("SampleChannelCount", pair, 1), "NewValue", 2);
}

}  // namespace
}  // namespace zyl::test
