// Edits that give a sample new blocks: cutting, splicing, resizing, other widths and channels; and
// what becomes of start, end, loops, the other channels and the handles of buffers.
#include <climits>

#include "edit/EditTools.h"

namespace zyl::test {
namespace {

using BlockEdits = EditTest;

constexpr int kNew = -1;  // a position that an edit has added

// Positions first to last.
Values Span(int begin, int last) {
  Values span;
  for (int i = begin; i <= last; ++i) span.push_back(i);
  return span;
}
Values Join(std::initializer_list<Values> parts) {
  Values joined;
  for (const Values& part : parts) joined.insert(joined.end(), part.begin(), part.end());
  return joined;
}
// The channel of which only these positions are left.
Values Picked(const Values& channel, const Values& positions) {
  Values picked;
  for (const int i : positions) picked.push_back(i == kNew ? 0 : channel[static_cast<size_t>(i)]);
  return picked;
}

// 300 positions, played from 20 to 280, loops 150 to 250, 50 to 120 and 210 to 215.
TEST_F(BlockEdits, CutsMoveStartEndAndLoopsInAllChannels) {
  struct Row {
    std::function<Outcome(RIOObject*)> edit;
    Values kept;
    Values points;
  };
  const auto extract = [&](int s, int e) {
    return [=, this](RIOObject* o) { return program("SampleExtract", o, s, e); };
  };
  const auto remove = [&](int s, int e) {
    return [=, this](RIOObject* o) { return program("SampleDelete", o, s, e); };
  };
  const auto resize = [&](int n) {
    return [=, this](RIOObject* o) { return program("SampleSize", o, n); };
  };
  const Values before{20, 280, 150, 250, 50, 120, 210, 215};
  const Row rows[] = {
      {extract(199, 100), Span(100, 199), {20, 99, 50, 99, 50, 20, 0, 99}},
      {extract(0, 9), Span(0, 9), {8, 9, 0, 9, 0, 9, 0, 9}},
      {extract(290, 999), Span(290, 299), {8, 9, 150, 250, 50, 120, 210, 215}},
      {extract(7, 7), {7}, {0, 0, 0, 0, 0, 0, 0, 0}},
      {remove(20, 10), Join({Span(0, 9), Span(20, 299)}), {10, 280, 140, 240, 40, 110, 200, 205}},
      {remove(200, 220),
       Join({Span(0, 199), Span(220, 299)}),
       {20, 279, 150, 230, 50, 120, 200, 201}},
      {remove(0, 300), {299}, {0, 0, 0, 1, 0, 1, 0, 1}},
      {resize(100), Span(0, 99), {20, 99, 99, 99, 50, 99, 99, 99}},
      {resize(0), {}, {0, 0, 0, 0, 0, 0, 0, 0}},
      {resize(302), Join({Span(0, 299), {kNew, kNew}}), before},
  };
  const std::vector<Values> sound = Counting(300, 2);
  for (const int target : {0, 1, -1}) {
    const int bits = target * 8 + 16;
    for (const Row& row : rows) {
      SCOPED_TRACE(std::to_string(target) + ", row " + std::to_string(&row - rows));
      Open(bits, sound);
      SetPoints(whole, before);
      EXPECT_TRUE(row.edit(Target(target)).Ok());
      EXPECT_EQ(ReadAll(whole),
                (std::vector<Values>{Picked(sound[0], row.kept), Picked(sound[1], row.kept)}));
      EXPECT_EQ(Points(first), row.points);
      EXPECT_EQ(Get(second, "SampleBits"), bits);
    }
  }
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

TEST_F(BlockEdits, SplicingInsertsBeforeTheIndex) {
  const Values source{71, 72, 73};
  struct Row {
    int index, at;
    Values points;
  };
  const Row rows[] = {{-7, 0, {0, 12, 5, 12, 8, 11}},
                      {2, 2, {0, 12, 2, 12, 8, 11}},
                      {5, 5, {0, 12, 2, 12, 5, 11}},
                      {INT_MAX, 9, {0, 9, 2, 9, 5, 8}}};
  const std::string otherPath = Path("other.wav");
  StoreSound(otherPath, SF_FORMAT_WAV, 16, {source});
  for (const Row& row : rows) {
    for (const int target : {0, 1, -1}) {
      SCOPED_TRACE(std::to_string(row.index) + ", channel " + std::to_string(target));
      Open(16, {Span(0, 9), Span(0, 9)});
      SetPoints(first, {0, 9, 2, 9, 5, 8});
      RIOObject* other = Whole(otherPath);
      EXPECT_TRUE(program("SampleCopyTo", Target(target), other, row.index).Bool());
      const auto spliced = [&](bool given) {
        const Values inserted = given ? source : Values{0, 0, 0};
        return Join({Span(0, row.at - 1), inserted, Span(row.at, 9)});
      };
      EXPECT_EQ(ReadAll(whole), (std::vector<Values>{spliced(target != 1), spliced(target != 0)}));
      EXPECT_EQ(Points(second), row.points);
      EXPECT_EQ(Read(other, 0), source);
    }
  }
  Open(16, {{1, 2}});
  EXPECT_TRUE(program("SampleCopyTo", first, Whole(otherPath)).Bool());
  EXPECT_EQ(Read(first, 0), (Values{71, 72, 73, 1, 2})) << "without an index in front";
  EXPECT_TRUE(program("SampleCopyTo", first, first, 1).Bool());
  EXPECT_EQ(Read(first, 0), (Values{71, 71, 72, 73, 1, 2, 72, 73, 1, 2})) << "into itself";
}

TEST_F(BlockEdits, CopiesReplaceOneChannelAndKeepTheOthersInStep) {
  const std::string otherPath = Path("other.wav");
  StoreSound(otherPath, SF_FORMAT_WAV, 16, Counting(20, 2));
  struct Row {
    int target, s, e;
    std::vector<Values> made;
  };
  const Row rows[] = {{0, 5, 3, {{3, 4, 5}, {0, -1, -2}}},
                      {1, 99, 99, {{0}, {-19}}},
                      {-1, -1, INT_MAX, Counting(20, 2)},
                      {0, 0, 11, {Counting(12, 1)[0], Join({Counting(10, 2)[1], {0, 0}})}}};
  for (const Row& row : rows) {
    Open(16, Counting(10, 2));
    SetPoints(first, {4, 9, 5, 8});
    EXPECT_TRUE(
        program("SampleCopyFrom", Target(row.target), Whole(otherPath), row.s, row.e).Bool());
    EXPECT_EQ(ReadAll(whole), row.made) << row.s << " to " << row.e;
    EXPECT_EQ(Points(first), (Values{4, 9, 5, 8})) << "a copy moves no point";
  }
  EXPECT_TRUE(program("SampleCopyFrom", whole, Whole(otherPath)).Bool());
  EXPECT_EQ(ReadAll(whole), (std::vector<Values>{{0}, {0}})) << "without indexes one position";
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

TEST_F(BlockEdits, HandlesOfBuffersDieWithThem) {
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

TEST_F(BlockEdits, ChannelsAreChosenForObjectsAndZonesAndAddedSilent) {
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
}

}  // namespace
}  // namespace zyl::test
