// Parameters by number and by text: stores, dirty flags and notifications. The golden table has the
// field of each number and the values of typed texts.
#include <algorithm>
#include <chrono>
#include <cstdio>

#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

class ByNumber : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    program.Make(3);
    for (int k = 0; k < 3; ++k) program("KGSelect", k, k != 1);
    program("MaxIndyOut", 8);
    Listen();
    TakeDirty();
  }
  // A stereo sample of this many frames in keygroup 0, zone 0.
  void GiveSample(size_t frames = 100) {
    WriteWave(Path("two.wav"), {std::vector<int16_t>(frames, 1), std::vector<int16_t>(frames, 2)});
    program("ZoneSampleSet", 0, 0, Path("two.wav"));
    TakeDirty();
  }
  int32_t Sample(int number) const { return program("SampleIntValue", 0, 0, number).Int(); }

  // Returns the text that replaces a typed one.
  template <class... Place>
  std::string Type(const char* method, const std::string& text, Place... place) const {
    const ROCParamPtr typed(newROCParam(std::string_view(text)));
    EXPECT_TRUE(program(method, place..., typed.get()).Ok());
    return typed->Str();
  }
};

TEST_F(ByNumber, EachStoreNotifiesWithItsIndexes) {
  program("PRGIntValue", 4, 77);
  program("KGIntValue", 1, 103, 9);
  program("ZoneIntValue", 2, 1, 204, 5);
  EXPECT_EQ(TakeNotified(), "4 77 -1 -1 103 9 1 -1 204 5 2 1 ");
  EXPECT_TRUE(TakeDirty());
  program("PRGIntValue", 3, 5);
  EXPECT_EQ(program("PRGmidiChannel").Int(), 5);
  program("PRGIntValue", 10, 4);
  EXPECT_EQ(TakeNotified(), "3 5 -1 -1 10 4 -1 -1 230 4 -1 -1 10 4 -1 -1 ");
  // The master detune bytes are a text of twelve bytes; the thirteenth keeps its value.
  program("PRGmasterDetune", 12, 9);
  EXPECT_EQ(program("PRGStringValue", 45, "0123456789abcdef").Text(), "");
  EXPECT_EQ(program("PRGStringValue", 45).Text(), "0123456789ab");
  EXPECT_EQ(program("PRGmasterDetune", 12).Int(), 9);
}

TEST_F(ByNumber, ModulationSourcesHaveNamesAndNumbers) {
  EXPECT_EQ(program("ModulationSource", 11).Text(), "!Modwheel");
  EXPECT_EQ(program("ModulationSource", "!b").Int(), 12);
  EXPECT_EQ(program("ModulationSource", "").Int(), -1);
  for (const int outside : {-1, 24}) {
    ExpectArgValue(program("ModulationSource", outside), "InValue", 1);
  }
  EXPECT_EQ(program("ModulationSource", 1.0).error->message,
            "Expecting InValue (string) or (int) as first argument");
}

TEST_F(ByNumber, MemoryFiguresEqualTheMemoryMethods) {
  GiveSample(3000);
  const auto value = [&](int number) { return program("PRGIntValue", number).Int(); };
  const auto text = [&](int number) { return program("PRGStringValue", number, "5").Text(); };
  EXPECT_GT(value(93), 2 * 2 * 3000);
  EXPECT_EQ(value(93), program("GetUsedPhysicalMemory", false).Int());
  EXPECT_EQ(value(94), 100);
  EXPECT_EQ(text(94), "100.0 %");
  // Nothing is locked, so the percentage is undefined.
  EXPECT_EQ(value(90), 0);
  EXPECT_EQ(text(90), "0 byte");
  EXPECT_EQ(value(91), -1);
  EXPECT_EQ(text(91), "-1.0 %");
  program("SampleLock", 0, 0, true);
  EXPECT_GE(value(90), 2 * 3000);
  EXPECT_EQ(value(91), 100);
  EXPECT_EQ(value(95), 0);
  RIOObject* filler = (program("SampleCreate", 2, 0, "wav"), program("SampleGet", 2, 0)).Object();
  program("SampleSize", filler, (1024 * 1024 - value(93)) / 2);
  EXPECT_EQ(value(93), 1024 * 1024);
  EXPECT_EQ(text(93), "1024.0 KB");
  // The percentage refers to all of the machine's memory, not to the 2 GiB maximum that scripts
  // see.
  program("SampleSize", filler, 20'000'000);
  char percent[32];
  std::snprintf(percent, sizeof percent, "%3.1f %%",
                value(93) * 100.0 / static_cast<double>(qxGetPhysicalMemoryBytes()));
  EXPECT_EQ(text(95), percent);
}

TEST_F(ByNumber, AnIndexOfSeveralKeygroupsStoresInAllAndReturnsTheLastValue) {
  EXPECT_EQ(Type("KGStringValue", "hp4", -2, 168), "HP4");
  for (int k = 0; k < 3; ++k) EXPECT_EQ(program("KGIntValue", k, 168).Int(), k == 1 ? 0 : 8);
  EXPECT_EQ(Type("ZoneStringValue", "rob", -1, 1, 221), "Robot");
  for (int k = 0; k < 3; ++k) EXPECT_EQ(program("ZoneIntValue", k, 1, 221).Int(), 3);
  for (int k = 0; k < 3; ++k) program("KGfilterType", k, 2 * k);
  EXPECT_EQ(program("KGStringValue", -1, 168).Text(), "LP6");
  EXPECT_EQ(program("KGIntValue", -3, 142).Int(), 3);
  EXPECT_EQ(program("KGIntValue", 1, 199).Int(), 1);
  EXPECT_EQ(program("ZoneIntValue", -1, 2, 299).Int(), 3);
  for (int k = 0; k < 3; ++k) program("KGSelect", k, false);
  EXPECT_EQ(program("KGIntValue", -2, 103, 8).Int(), -1);
  EXPECT_EQ(program("KGStringValue", -2, 168).Text(), "");
  EXPECT_EQ(program("KGIntValue", -1, 149).Int(), -1);
  program("KGSelect", 2, true);
  program("KGIntValue", -2, 190, 3);
  EXPECT_EQ(program("TolmoKGreverb", 2).Int(), 3);
  EXPECT_EQ(program("TolmoKGreverb", 1).Int(), 0);
}

TEST_F(ByNumber, ZoneOutputsAreRelativeToTheProgramsOutput) {
  program("PRGindyOutput", 2);
  program("ZoneoutOffset", 0, 1, 1);
  TakeNotified();
  EXPECT_EQ(program("ZoneStringValue", 0, 1, 230).Text(), "4");
  EXPECT_EQ(program("ZoneIntValue", 0, 1, 230, 7).Int(), 3);
  EXPECT_EQ(program("ZoneoutOffset", 0, 1).Int(), 5);
  EXPECT_EQ(TakeNotified(), "230 7 0 1 ") << "one notification, like every zone value";
  EXPECT_EQ(Type("ZoneStringValue", "12", 0, 1, 230), "8");
  EXPECT_EQ(TakeNotified(), "201 7 -1 -1 230 7 -1 -1 ");
  EXPECT_EQ(Type("ZoneStringValue", "off", 0, 1, 230), "Off");
  EXPECT_EQ(program("ZoneoutOffset", 0, 1).Int(), 253);
  program("ZoneoutOffset", 0, 1, 1);
  program("MaxIndyOut", 3);
  EXPECT_EQ(program("ZoneStringValue", 0, 1, 230).Text(), "Off");
  EXPECT_EQ(program("ZoneIntValue", 0, 1, 230).Int(), -1);
}

TEST_F(ByNumber, UpdateKGSelectsTheKeygroupsOfTheNotification) {
  program("ZoneIntValue", -1, 1, 204, 3);
  EXPECT_EQ(TakeNotified(), "204 3 0 1 204 3 1 1 204 3 2 1 ");
  program("ZoneIntValue", 0, 1, 204, 4, -2);
  EXPECT_EQ(TakeNotified(), "204 4 0 1 204 4 2 1 ");
  program("ZoneIntValue", -2, 1, 204, 5, 77);
  EXPECT_EQ(TakeNotified(), "204 5 77 1 ");
  // UpdateKG is read after the store, and only if the call notifies.
  TakeDirty();
  EXPECT_TRUE(program("ZoneIntValue", 0, 1, 204, 5, "x").Ok());
  ExpectError(program("ZoneIntValue", 0, 1, 204, 6, "x"), "ArgType");
  EXPECT_EQ(program("ZonelowVel", 0, 1).Int(), 6);
  EXPECT_TRUE(TakeDirty());
  EXPECT_EQ(TakeNotified(), "");
  // ZoneIntValue enables notifications.
  program("EnableRegisterCall", false);
  program("PRGIntValue", 4, 78);
  EXPECT_EQ(TakeNotified(), "");
  program("ZoneIntValue", 0, 1, 204);
  EXPECT_TRUE(program("EnableRegisterCall").Bool());
}

TEST_F(ByNumber, SampleValuesAreClampedToTheSample) {
  GiveSample(100);
  const std::tuple<int, int32_t, int32_t> cases[] = {
      {300, 0x155, 0x55}, {301, 259, 3},     {304, 200, -56}, {305, 0x18000, -32768},
      {303, 200, 99},     {303, 60, 60},     {302, 80, 60},   {302, -5, 0},
      {302, 20, 20},      {303, 10, 20},     {308, 77, 77},   {309, 200, 99},
      {309, -1, 0},       {309, 40, 40},     {310, 10, 40},   {310, 100, 99},
      {310, 50, 50},      {311, 8000, 8000}, {306, 1, 1},     {306, 2, 1},
      {306, -1, 1},       {313, 12, 12},     {313, 0, 12},    {313, 33, 12},
      {314, 0, 1},        {313, 24, 24},     {314, 9, 4},     {307, 1, -1},
  };
  for (const auto& [number, value, now] : cases) {
    SCOPED_TRACE(std::to_string(number) + " = " + std::to_string(value));
    const int32_t before = Sample(number);
    TakeDirty();
    program("SampleDirty", 0, 0, false);
    TakeNotified();
    EXPECT_EQ(program("SampleIntValue", 0, 0, number, value).Int(), before);
    EXPECT_EQ(Sample(number), now);
    const int32_t sent = number == 314 ? std::clamp(value, 1, 4) : value;
    const std::string numbers = std::to_string(number) + " " + std::to_string(sent);
    EXPECT_EQ(TakeNotified(), sent == before ? "" : numbers + " 0 0 ");
    EXPECT_TRUE(sent == before || (program("SampleDirty", 0, 0).Bool() && TakeDirty()));
  }
  // A loop start creates the first loop, as does a loop end after the sample's start.
  program("SampleIntValue", 0, 0, 309, 0);
  RIOObject* object = program("SampleGet", 0, 0).Object();
  program("SampleLoopCount", object, 0);
  EXPECT_EQ(program("SampleIntValue", 0, 0, 303, 0).Int(), 0);
  EXPECT_EQ(program("SampleLoopCount", object).Int(), 0);
  EXPECT_EQ(program("SampleIntValue", 0, 0, 302, 50).Int(), 0);
  EXPECT_EQ(program("SampleLoopCount", object).Int(), 1);
  EXPECT_EQ(program("SampleIntValue", 0, 1, 300, 5).Int(), -1) << "a zone without a sample";
}

TEST_F(ByNumber, SampleTextsNameTheFileAndChannel) {
  GiveSample();
  std::filesystem::create_directory(Path("other"));
  WriteWave(Path("other/two.wav"), {{1, 2, 3}});
  program("ZoneSampleSet", 1, 0, Path("other/two.wav"));
  const std::tuple<int, int, std::string> texts[] = {
      {0, 307, "two.wav"},     {0, 312, Path("two.wav")}, {0, 300, ""}, {0, 306, "Left"},
      {1, 307, "two.wav (2)"}, {1, 306, "Mono"},          {2, 307, ""}};
  for (const auto& [k, number, text] : texts) {
    EXPECT_EQ(program("SampleStringValue", k, 0, number).Text(), text) << k << " " << number;
  }
  for (const bool changes : {true, false}) {
    TakeDirty();
    program("SampleDirty", 0, 0, false);
    EXPECT_EQ(Type("SampleStringValue", "ri", 0, 0, 306), "Right");
    EXPECT_EQ(Sample(306), 1);
    EXPECT_EQ(program("SampleDirty", 0, 0).Bool(), changes);
    EXPECT_EQ(TakeDirty(), changes);
    EXPECT_EQ(TakeNotified(), "");
  }
}

TEST_F(ByNumber, PitchDataIsComputedAndRemovedByNumber) {
  GiveSample(20000);
  EXPECT_EQ(Sample(315), 0);
  EXPECT_EQ(program("SampleIntValue", 0, 0, 315, 1).Int(), 0);
  for (int i = 0; i < 500 && Sample(315) == 0; ++i) ZylPump(0.01);
  EXPECT_EQ(program("SampleIntValue", 0, 0, 315, 0).Int(), 1);
  EXPECT_EQ(Sample(315), 0);
}

// Matching reads no more of a typed text than the longest name; a search for keywords reads it all.
TEST_F(ByNumber, LongTypedTextsAreMatchedAtOnce) {
  const std::string text = "lp2 r" + std::string(size_t{1} << 23, 'x');
  const auto timeOf = [&](int number) {
    const ROCParamPtr typed(newROCParam(std::string_view(text)));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(program("KGStringValue", 0, number, typed.get()).Ok());
    return std::chrono::steady_clock::now() - start;
  };
  const auto matched = std::min({timeOf(168), timeOf(168), timeOf(168)});
  EXPECT_LT(matched, timeOf(126));
}

// A new record may have the old one's address; a pending store must not reach it.
TEST_F(ByNumber, CallbacksMayReplaceTheProgram) {
  listener["OnProgramParameterChanged"] = [&](ROCParams&, ROCParam**) { program.Make(2); };
  program("PRGStringValue", 36, "pre");
  program("ZoneIntValue", -1, 0, 204, 9);
  program("ZoneStringValue", -1, 0, 230, "3");
  EXPECT_EQ(program("ZoneoutOffset", 1, 0).Int(), 0);
}

}  // namespace
}  // namespace zyl::test
