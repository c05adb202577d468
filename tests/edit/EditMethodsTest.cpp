// Sample edits: arguments, dirty flags, sound blocks, handles, channels and loops. SampleModelTest
// compares random edits with a model.
#include <climits>
#include <cmath>

#include "edit/EditTools.h"

namespace zyl::test {
namespace {

using Edits = EditTest;

TEST_F(Edits, AnArgumentOutOfRangeChangesNothing) {
  Open(16, Counting(10, 2));
  SetPoints(whole, {0, 9, 2, 8});
  Clean();
  const std::pair<const char*, Values> refused[] = {
      {"SampleBits", {0, 33, -16}},
      {"SampleChannelCount", {0, 17, -1, 1}},  // 1: the second channel is in use
      {"SampleLoopCount", {-1, 17}}};
  for (const auto& [method, values] : refused) {
    for (const int value : values) ExpectArgValue(program(method, whole, value), "NewValue", 2);
  }
  ExpectArgValue(program("SampleSize", whole, -1), "NewSize", 2);
  for (const double fine : {-1.0, 4294967296.0, std::nan("")}) {
    ExpectArgValue(program("SampleLoopFineLen", whole, 0, fine), "NewValue", 3);
  }
  for (const int count : {0, 17}) {
    ExpectArgValue(program("SampleCreate", 0, 0, "wav", count), "Channels", 4);
  }
  EXPECT_EQ(ReadAll(whole), Counting(10, 2));
  EXPECT_EQ(Points(whole), (Values{0, 9, 2, 8}));
  EXPECT_EQ(TakeDirtyFlags(), "");
  program("SampleBits", whole, 65536 + 24);
  EXPECT_EQ(Get(whole, "SampleBits"), 24) << "the number is reduced to 16 bits";
}

TEST_F(Edits, BitsWithinAByteDropTheLowest) {
  Open(16, {{0x1234, -0x1234, 0x7FFF}});
  program("SampleBits", first, 12);
  EXPECT_EQ(Read(first, 0), (Values{0x1230, -0x1240, 0x7FF0}));
}

TEST_F(Edits, TheMeanUsesTheFirstChannelAndExcludesTheEnd) {
  Open(16, {{1, 50, 3}, {-1, -2, -3}});
  EXPECT_EQ(program("SampleGetDCOffset", whole, 999, -9).Int(), 51 / 2);
  EXPECT_EQ(program("SampleGetDCOffset", whole, 1, 1).Int(), 0);
}

TEST_F(Edits, ExtremePointsDoNotOverflow) {
  Open(16, Counting(10, 1));
  SetPoints(first, {INT_MIN, INT_MIN, INT_MAX, INT_MAX, INT_MIN, INT_MIN});
  EXPECT_TRUE(program("SampleDelete", first, 3, 3).Bool());
  EXPECT_EQ(Points(first), (Values{INT_MIN, INT_MIN, INT_MAX, INT_MAX, INT_MIN, INT_MIN + 1}));
  program("SampleCopyTo", first, first, 2);
  EXPECT_EQ(Points(first)[2], INT_MAX);
  EXPECT_TRUE(program("SampleExtract", first, 0, 9).Bool());
  EXPECT_EQ(Points(first), (Values{0, INT_MIN, 0, 9, INT_MIN, INT_MIN + 1}));
}

TEST_F(Edits, CopiesDefaultToTheStartAndMayOverlapOrBeEmpty) {
  StoreSound(Path("other.wav"), SF_FORMAT_WAV, 16, {{71, 72, 73}});
  Open(16, {{1, 2}});
  RIOObject* other = Whole(Path("other.wav"));
  EXPECT_TRUE(program("SampleCopyTo", first, other).Bool());
  EXPECT_EQ(Read(first, 0), (Values{71, 72, 73, 1, 2}));
  EXPECT_TRUE(program("SampleCopyTo", first, first, 1).Bool());
  EXPECT_EQ(Read(first, 0), (Values{71, 71, 72, 73, 1, 2, 72, 73, 1, 2})) << "into itself";
  EXPECT_TRUE(program("SampleCopyFrom", first, other).Bool());
  EXPECT_EQ(Read(first, 0), Values{71});
  program("SampleCreate", 0, 3, "wav");
  RIOObject* empty = program("SampleGet", 0, 3).Object();
  EXPECT_FALSE(program("SampleCopyFrom", first, empty).Bool());
  EXPECT_TRUE(program("SampleCopyTo", first, empty, 5).Bool());
  EXPECT_EQ(Read(first, 0), Values{71});
  EXPECT_EQ(program("SampleGetDCOffset", empty, 0, 1).Int(), 0);
}

TEST_F(Edits, BufferHandlesExpireWithTheirBuffers) {
  Open(16, {{1, 2, 3}, {4, 5, 6}});
  const auto lives = [](int handle) {
    std::string bytes, reason;
    return qxBufferBytes(static_cast<uint32_t>(handle), 2, bytes, reason);
  };
  int positions = 0;
  const int left = Handle(whole, -1, positions), right = Handle(first, 1, positions);
  EXPECT_EQ(positions, 3);
  EXPECT_NE(left, right);
  EXPECT_EQ(Handle(second, 1, positions), right) << "one handle per channel";
  for (const int channel : {2, -2}) EXPECT_EQ(Handle(whole, channel, positions) + positions, 0);
  program("SampleSetValues", whole, 0, 3, 9);
  program("SampleReverseValues", second, 0, 3);
  EXPECT_TRUE(lives(left) && lives(right)) << "edits in place keep the buffer";
  program("SampleCopyFrom", second, first, 0, 2);
  EXPECT_TRUE(lives(left) && !lives(right));
  for (const int bits : {24, 16, 8}) {
    const int handle = Handle(first, 1, positions);
    EXPECT_TRUE(lives(handle));
    program(bits == 16 ? "SampleSize" : "SampleBits", first, bits);
    EXPECT_FALSE(lives(handle));
  }
}

TEST_F(Edits, TheExtensionSelectsTheKindOfANewSample) {
  const std::pair<const char*, bool> extensions[] = {
      {"wav", true}, {"AIF", true}, {"S", true}, {"mp3", false}, {"", false}, {".wav", false}};
  for (const auto& [extension, made] : extensions) {
    SCOPED_TRACE(extension);
    program("ZoneSampleSet", 0, 2);
    program("Dirty", false);
    EXPECT_EQ(program("SampleCreate", 0, 2, extension, 3).Bool(), made);
    EXPECT_TRUE(program("Dirty").Bool());
    EXPECT_EQ(program("SampleDirty", 0, 2).Bool(), made);
    RIOObject* sample = program("SampleGet", 0, 2).Object();
    EXPECT_EQ(made ? Get(sample, "SampleChannelCount") : 3, 3);
    EXPECT_EQ(made ? Get(sample, "SampleChannel") : -1, -1);
  }
  Open(16, Counting(4, 1));
  EXPECT_TRUE(program("SampleCreate", 0, 0, "wav").Bool());
  EXPECT_EQ(Read(first, 0), Counting(4, 1)[0]) << "the object keeps the previous record";
  EXPECT_EQ(program("SampleChannel", 0, 0).Int(), 0) << "a single channel has index 0";
}

TEST_F(Edits, ChannelsAreSelectedAndAddedSilent) {
  Open(16, {{1, 2}, {3, 4}});
  EXPECT_EQ(program("SampleChannelCount", whole, 3).Int(), 2);
  EXPECT_EQ(ReadAll(second), (std::vector<Values>{{1, 2}, {3, 4}, {0, 0}}));
  EXPECT_EQ(program("SampleChannel", 0, 2).Int(), -1) << "an empty zone";
  program("SampleChannel", 0, 1, 3);
  program("SampleChannel", second, -1);
  EXPECT_EQ(program("SampleChannel", 0, 1, 0).Int(), 1);
  EXPECT_EQ(program("SampleGet", 0, 1).Object(), first) << "the zone plays the first channel now";
  // The loaded file is used even if its path has changed, and the zone keeps its path.
  program("ZoneSamplePath", 0, 1, "moved.wav");
  program("SampleChannel", 0, 1, 2);
  EXPECT_EQ(program("SampleIntValue", 0, 1, 306, 0).Int(), 2);
  EXPECT_EQ(program("SampleGet", 0, 1).Object(), first);
  EXPECT_EQ(program("ZoneSamplePath", 0, 1).Text(), "moved.wav");
  EXPECT_EQ(program("SampleChannel", whole, 1).Int(), -1);
  EXPECT_EQ(program("SampleValue", whole, 0).Int(), 3);
  // A record that plays a channel keeps it, even if another record is the channel's first.
  StoreSound(Path("pair.wav"), SF_FORMAT_WAV, 16, {{1, 2}, {3, 4}});
  RIOObject* pair = Whole(Path("pair.wav"));
  program("SampleChannel", pair, 1);
  ExpectArgValue(program("SampleChannelCount", pair, 1), "NewValue", 2);
}

TEST_F(Edits, LoopFieldsAreStoredAndNotifiedByNumber) {
  Open(16, Counting(50, 2));
  SetPoints(whole, {0, 49, 1, 2, 3, 4, 5, 6, 7, 8});
  program("SampleLoopCount", second, 2);
  program("SampleLoopCount", first, 16);
  Values expected{0, 49, 1, 2, 3, 4};
  expected.resize(34, 0);
  EXPECT_EQ(Points(whole), expected) << "a lower count resets the loops after it";
  program("SampleLoopCount", first, 12);
  Clean();
  Listen();
  EXPECT_EQ(program("SampleLoopTimes", first, 7, 3).Int(), 0);
  EXPECT_EQ(program("SampleLoopTimes", first, 7).Int(), 3);
  EXPECT_EQ(TakeDirtyFlags(), "PR");
  EXPECT_EQ(program("SampleLoopFineLen", first, 11, 5.9).Double(), 0.0);
  EXPECT_EQ(TakeDirtyFlags(), "PR");
  EXPECT_EQ(program("SampleLoopFineLen", first, 11, 4294967295.0).Double(), 5.0);
  EXPECT_EQ(program("SampleLoopFineLen", first, 11).Double(), 4294967295.0);
  EXPECT_EQ(notified, "308 5 -1 -1 308 -1 -1 -1 ");
  for (const char* method : {"SampleLoopStart", "SampleLoopEnd"}) {
    EXPECT_EQ(program(method, first, 12, 7).Int(), -1) << "not in use";
    for (const int index : {16, -1}) ExpectArgValue(program(method, first, index), "LoopIndex", 2);
  }
  EXPECT_EQ(program("SampleLoopFineLen", first, 15, 7.0).Double(), -1.0);
  EXPECT_EQ(program("SampleLoopQual", first, 15).Int(), 0);
  for (const int index : {8, -1}) {
    ExpectArgValue(program("SampleLoopTimes", first, index), "LoopIndex", 2);
  }
  ExpectArgValue(program("SampleLoopFindStart", first, 16, 0, 9, 0), "LoopIndex", 2);
}

TEST_F(Edits, LoopSearchesMoveOnePointInAllChannels) {
  // A period of 100: the loop's values and slopes match exactly. A start of 0 cannot be rated.
  Open(16, Counting(400, 1));
  SetPoints(first, {0, 399, 150, 350, 0, 200});
  EXPECT_EQ(program("SampleLoopQual", first, 0).Int(), 0x7FFFFFFF);
  EXPECT_EQ(program("SampleLoopQual", first, 1).Int(), 0);
  // Only a loop from 100 to 300 joins well.
  Values sound(400);
  for (int i = 0; i < 400; ++i) sound[static_cast<size_t>(i)] = i % 2 == 0 ? i * 20 : -i * 30;
  std::fill_n(sound.begin() + 100, 22, 0);
  std::fill_n(sound.begin() + 299, 2, 0);
  Open(16, {sound, sound});
  SetPoints(whole, {0, 399, 105, 350});
  program("SampleLoopFineLen", whole, 0, 123456.0);
  Clean();
  EXPECT_EQ(program("SampleLoopFindEnd", whole, 0, 320, 310, INT_MAX).Int(), 350) << "none better";
  EXPECT_EQ(program("SampleLoopFindEnd", whole, 0, 380, 130, 0).Int(), 300);
  EXPECT_EQ(program("SampleLoopFindStart", whole, 0, 300, 350, INT_MIN).Int(), 105)
      << "after the loop end";
  EXPECT_EQ(TakeDirtyFlags(), "");
  program("SampleLoopStart", whole, 0, 50);
  EXPECT_EQ(program("SampleLoopFindStart", whole, 0, 20, 250, 0).Int(), 101);
  EXPECT_EQ(Points(second), (Values{0, 399, 101, 300}));
  EXPECT_EQ(program("SampleLoopFineLen", second, 0).Double(), 123456.0);
  EXPECT_EQ(program("SampleLoopFindStart", whole, 9, 0, 300, 0).Int(), 0) << "a loop not in use";
}

}  // namespace
}  // namespace zyl::test
