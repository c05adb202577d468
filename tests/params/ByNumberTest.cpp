// Parameters by number and by text: what each call stores, marks dirty and announces.
#include <algorithm>
#include <cstdio>
#include <utility>

#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

using Sent = std::vector<std::vector<int32_t>>;  // number, value, keygroup, zone

class ByNumber : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    program.Make(3);
    for (int k = 0; k < 3; ++k) program("KGSelect", k, k != 1);
    program("MaxIndyOut", 8);
    program("Register", static_cast<RIOObject*>(&listener));
    listener["OnProgramParameterChanged"] = [this](ROCParams& arguments, ROCParam**) {
      sent.push_back({});
      for (int i = 1; i < arguments.count; ++i) sent.back().push_back(arguments.Entry(i)->Int());
    };
    program("Dirty", false);
  }
  bool TakeDirty() const { return program("Dirty", false).Bool(); }
  Sent TakeSent() { return std::exchange(sent, {}); }

  // A stereo sample of this many frames in keygroup 0, zone 0.
  void GiveSample(int frames = 100) {
    WriteWave(Path("two.wav"), {std::vector<int16_t>(static_cast<size_t>(frames), 1),
                                std::vector<int16_t>(static_cast<size_t>(frames), 2)});
    program("ZoneSampleSet", 0, 0, Path("two.wav"));
    program("Dirty", false);
  }
  int32_t Sample(int number) const { return program("SampleIntValue", 0, 0, number).Int(); }

  // What a typed text is replaced by.
  template <class... Place>
  std::string Type(const char* method, const std::string& text, Place... place) const {
    ROCParam* typed = newROCParam(std::string_view(text));
    const Outcome outcome = program(method, place..., typed);
    EXPECT_TRUE(outcome.Ok()) << outcome.Message();
    std::string replaced = typed->Str();
    deleteROCParam(typed);
    return replaced;
  }

  Program program;
  Listener listener;
  Sent sent;
};

// The golden table has the field that each number reaches; these are the notifications.
TEST_F(ByNumber, EachStoreIsAnnouncedWithItsPlace) {
  program("PRGIntValue", 4, 77);
  program("KGIntValue", 1, 103, 9);
  program("ZoneIntValue", 2, 1, 204, 5);
  EXPECT_EQ(TakeSent(), (Sent{{4, 77, -1, -1}, {103, 9, 1, -1}, {204, 5, 2, 1}}));
  EXPECT_TRUE(TakeDirty());
  program("PRGIntValue", 3, 5);
  EXPECT_EQ(program("PRGmidiChannel").Int(), 5);
  program("PRGIntValue", 10, 4);
  EXPECT_EQ(TakeSent(), (Sent{{3, 5, -1, -1}, {10, 4, -1, -1}, {230, 4, -1, -1}, {10, 4, -1, -1}}));
  program("EnableRegisterCall", false);
  program("PRGIntValue", 4, 78);
  EXPECT_EQ(TakeSent(), Sent{});
}

TEST_F(ByNumber, NamesAreTextsOfTwelveBytes) {
  EXPECT_EQ(Type("PRGStringValue", "a long program name", 1), "a long progr");
  EXPECT_EQ(program("PRGname").Text(), "a long progr");
  // The master detune bytes are a text of twelve bytes as well; the thirteenth keeps its value.
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
  const Outcome wrong = program("ModulationSource", 1.0);
  ASSERT_TRUE(wrong.error);
  EXPECT_EQ(wrong.error->message, "Expecting InValue (string) or (int) as first argument");
}

TEST_F(ByNumber, MemoryFiguresEqualTheMemoryMethods) {
  GiveSample(3000);
  const int32_t total = program("PRGIntValue", 93).Int();
  EXPECT_GT(total, 2 * 2 * 3000);
  const int32_t tenths = (total * 10 + 512) / 1024;
  EXPECT_EQ(program("PRGStringValue", 93).Text(),
            std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " KB");
  EXPECT_EQ(total, program("GetUsedPhysicalMemory", false).Int());
  EXPECT_EQ(program("PRGIntValue", 94).Int(), 100);
  EXPECT_EQ(program("PRGStringValue", 94).Text(), "100.0 %");
  // Nothing is locked: there is nothing to take a part of.
  EXPECT_EQ(program("PRGIntValue", 90).Int(), 0);
  EXPECT_EQ(program("PRGStringValue", 90, "5").Text(), "0 byte");
  EXPECT_EQ(program("PRGIntValue", 91).Int(), -1);
  EXPECT_EQ(program("PRGStringValue", 91).Text(), "-1.0 %");
  program("SampleLock", 0, 0, true);
  EXPECT_GE(program("PRGIntValue", 90).Int(), 2 * 3000);
  EXPECT_EQ(program("PRGIntValue", 91).Int(), 100);
  EXPECT_EQ(program("PRGIntValue", 95).Int(), 0);
  RIOObject* filler = (program("SampleCreate", 2, 0, "wav"), program("SampleGet", 2, 0)).Object();
  program("SampleSize", filler, (1024 * 1024 - program("PRGIntValue", 93).Int()) / 2);
  EXPECT_EQ(program("PRGIntValue", 93).Int(), 1024 * 1024);
  EXPECT_EQ(program("PRGStringValue", 93).Text(), "1024.0 KB");
  // The whole is the machine's memory, not the figure of at most 2 GiB that scripts get.
  program("SampleCreate", 1, 0, "wav");
  program("SampleSize", program("SampleGet", 1, 0).Object(), 20'000'000);
  char percent[32];
  std::snprintf(
      percent, sizeof percent, "%3.1f %%",
      program("PRGIntValue", 93).Int() * 100.0 / static_cast<double>(qxGetPhysicalMemoryBytes()));
  EXPECT_EQ(program("PRGStringValue", 95).Text(), percent);
}

// The golden table has what each typed text stores; these are the keygroups that it reaches.
TEST_F(ByNumber, TypedTextsReachTheAddressedKeygroups) {
  EXPECT_EQ(Type("KGStringValue", "hp4", -2, 168), "HP4");
  for (int k = 0; k < 3; ++k) EXPECT_EQ(program("KGIntValue", k, 168).Int(), k == 1 ? 0 : 8);
  EXPECT_EQ(Type("ZoneStringValue", "rob", -1, 1, 221), "Robot");
  for (int k = 0; k < 3; ++k) EXPECT_EQ(program("ZoneIntValue", k, 1, 221).Int(), 3);
}

TEST_F(ByNumber, AnIndexOfSeveralKeygroupsReturnsTheLastValue) {
  for (int k = 0; k < 3; ++k) program("KGfilterType", k, 2 * k);
  EXPECT_EQ(program("KGStringValue", -1, 168).Text(), "LP6");
  EXPECT_EQ(program("KGIntValue", -3, 142).Int(), 3);
  EXPECT_EQ(program("KGIntValue", 1, 199).Int(), 1);
  EXPECT_EQ(program("ZoneIntValue", -1, 2, 299).Int(), 3);
  program("KGIntValue", -2, 103, 9);
  EXPECT_EQ(program("KGfilterFreq", 0).Int(), 9);
  EXPECT_NE(program("KGfilterFreq", 1).Int(), 9);
  for (int k = 0; k < 3; ++k) program("KGSelect", k, false);
  EXPECT_EQ(program("KGIntValue", -2, 103, 8).Int(), -1);
  EXPECT_EQ(program("KGStringValue", -2, 168).Text(), "");
  EXPECT_EQ(program("KGIntValue", -1, 149).Int(), -1);
  program("KGIntValue", -2, 190, 3);
  program("KGSelect", 2, true);
  program("KGIntValue", -2, 190, 3);
  EXPECT_EQ(program("TolmoKGreverb", 2).Int(), 3);
  EXPECT_EQ(program("TolmoKGreverb", 1).Int(), 0);
}

TEST_F(ByNumber, ZoneOutputsAreRelativeToTheProgramsOutput) {
  program("PRGindyOutput", 2);
  program("ZoneoutOffset", 0, 1, 1);
  TakeSent();
  EXPECT_EQ(program("ZoneStringValue", 0, 1, 230).Text(), "4");
  EXPECT_EQ(program("ZoneIntValue", 0, 1, 230, 7).Int(), 3);
  EXPECT_EQ(program("ZoneoutOffset", 0, 1).Int(), 5);
  EXPECT_EQ(TakeSent(), (Sent{{230, 7, 0, 1}})) << "announced once, like every zone value";
  EXPECT_EQ(Type("ZoneStringValue", "12", 0, 1, 230), "8");
  EXPECT_EQ(TakeSent(), (Sent{{201, 7, -1, -1}, {230, 7, -1, -1}}));
  EXPECT_EQ(Type("ZoneStringValue", "off", 0, 1, 230), "Off");
  EXPECT_EQ(program("ZoneoutOffset", 0, 1).Int(), 253);
  program("ZoneoutOffset", 0, 1, 1);
  program("MaxIndyOut", 3);
  EXPECT_EQ(program("ZoneStringValue", 0, 1, 230).Text(), "Off");
  EXPECT_EQ(program("ZoneIntValue", 0, 1, 230).Int(), -1);
}

TEST_F(ByNumber, UpdateKGSelectsTheKeygroupsOfTheNotification) {
  program("ZoneIntValue", -1, 1, 204, 3);
  EXPECT_EQ(TakeSent(), (Sent{{204, 3, 0, 1}, {204, 3, 1, 1}, {204, 3, 2, 1}}));
  program("ZoneIntValue", 0, 1, 204, 4, -2);
  EXPECT_EQ(TakeSent(), (Sent{{204, 4, 0, 1}, {204, 4, 2, 1}}));
  ROCParam* keygroup = newROCParam(-2);
  program("ZoneIntValue", keygroup, 1, 204, 5, 77);
  EXPECT_EQ(TakeSent(), (Sent{{204, 5, 77, 1}}));
  EXPECT_EQ(keygroup->Int(), -2);
  deleteROCParam(keygroup);
  // UpdateKG is read only when there is something to announce, after the store.
  TakeDirty();
  EXPECT_TRUE(program("ZoneIntValue", 0, 1, 204, 5, "x").Ok());
  ExpectArgType(program("ZoneIntValue", 0, 1, 204, 6, "x"), "UpdateKG", kTypeInteger, 5);
  EXPECT_EQ(program("ZonelowVel", 0, 1).Int(), 6);
  EXPECT_TRUE(TakeDirty());
  EXPECT_EQ(TakeSent(), Sent{});
  // A zone value switches notifications on.
  program("EnableRegisterCall", false);
  program("ZoneIntValue", 0, 1, 204);
  EXPECT_TRUE(program("EnableRegisterCall").Bool());
}

TEST_F(ByNumber, SampleValuesAreClampedToTheSample) {
  GiveSample(100);
  struct Case {
    int number;
    int32_t value, now;
  };
  const Case cases[] = {
      {300, 0x155, 0x55}, {301, 259, 3},     {304, 200, -56}, {305, 0x18000, -32768},
      {303, 200, 99},     {303, 60, 60},     {302, 80, 60},   {302, -5, 0},
      {302, 20, 20},      {303, 10, 20},     {308, 77, 77},   {309, 200, 99},
      {309, -1, 0},       {309, 40, 40},     {310, 10, 40},   {310, 100, 99},
      {310, 50, 50},      {311, 8000, 8000}, {306, 1, 1},     {306, 2, 1},
      {306, -1, 1},       {313, 12, 12},     {313, 0, 12},    {313, 33, 12},
      {314, 0, 1},        {313, 24, 24},     {314, 9, 4},     {307, 1, -1},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(std::to_string(one.number) + " = " + std::to_string(one.value));
    const int32_t before = Sample(one.number);
    TakeDirty();
    program("SampleDirty", 0, 0, false);
    TakeSent();
    EXPECT_EQ(program("SampleIntValue", 0, 0, one.number, one.value).Int(), before);
    EXPECT_EQ(Sample(one.number), one.now);
    const int32_t told = one.number == 314 ? std::clamp(one.value, 1, 4) : one.value;
    if (told == before) {
      EXPECT_EQ(TakeSent(), Sent{});
    } else {
      EXPECT_EQ(TakeSent(), (Sent{{one.number, told, 0, 0}}));
      EXPECT_TRUE(program("SampleDirty", 0, 0).Bool());
      EXPECT_TRUE(TakeDirty());
    }
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

// The golden table has what typed texts store; these texts depend on the sample.
TEST_F(ByNumber, SampleTextsNameTheFileAndChannel) {
  GiveSample();
  const auto text = [&](int k, int number) {
    return program("SampleStringValue", k, 0, number).Text();
  };
  EXPECT_EQ(text(0, 307), "two.wav");
  EXPECT_EQ(text(0, 312), Path("two.wav"));
  EXPECT_EQ(text(0, 300), "");
  EXPECT_EQ(text(0, 306), "Left");
  TakeSent();
  EXPECT_EQ(Type("SampleStringValue", "ri", 0, 0, 306), "Right");
  EXPECT_EQ(Sample(306), 1);
  EXPECT_TRUE(TakeDirty() && program("SampleDirty", 0, 0).Bool());
  program("SampleDirty", 0, 0, false);
  Type("SampleStringValue", "Right", 0, 0, 306);
  EXPECT_FALSE(TakeDirty()) << "the channel did not change";
  EXPECT_EQ(TakeSent(), Sent{});
  std::filesystem::create_directory(Path("other"));
  WriteWave(Path("other/two.wav"), {{1, 2, 3}});
  program("ZoneSampleSet", 1, 0, Path("other/two.wav"));
  EXPECT_EQ(text(1, 307), "two.wav (2)");
  EXPECT_EQ(text(1, 306), "Mono");
  EXPECT_EQ(text(2, 307), "");
}

TEST_F(ByNumber, PitchDataIsComputedAndRemovedByNumber) {
  GiveSample(20000);
  EXPECT_EQ(Sample(315), 0);
  EXPECT_EQ(program("SampleIntValue", 0, 0, 315, 1).Int(), 0);
  for (int i = 0; i < 500 && Sample(315) == 0; ++i) ZylPump(0.01);
  EXPECT_EQ(program("SampleIntValue", 0, 0, 315, 0).Int(), 1);
  EXPECT_EQ(Sample(315), 0);
}

TEST_F(ByNumber, CallbacksMayReplaceTheProgram) {
  GiveSample();
  program("SampleGet", 0, 0);
  const auto drop = [&](ROCParams&, ROCParam**) { program("Create", NullObject{}); };
  listener["OnProgramParameterChanged"] = drop;
  program("PRGStringValue", 36, "pre");
  program.Make(3);
  program("ZoneStringValue", -1, 0, 230, "2");
  program.Make(3);
  program("ZoneIntValue", -1, 0, 204, 9);
  listener["OnProgramParameterChanged"] = {};
  // A new record may have the old one's address; the pending store must not reach it.
  program.Make(2);
  listener["OnProgramParameterChanged"] = [&](ROCParams&, ROCParam**) { program.Make(2); };
  program("ZoneStringValue", -1, 0, 230, "3");
  EXPECT_EQ(program("ZoneoutOffset", 1, 0).Int(), 0);
  listener["OnProgramParameterChanged"] = {};
  listener["OnDeletingSmpl"] = drop;
  for (const int number : {306, 313, 314, 315}) {
    SCOPED_TRACE(number);
    program.Make(1);
    GiveSample();
    program("SampleGet", 0, 0);
    EXPECT_TRUE(program("SampleIntValue", 0, 0, number, 1).Ok());
    GiveSample();
    program("SampleGet", 0, 0);
    EXPECT_TRUE(program("SampleStringValue", 0, 0, number, "1").Ok());
  }
}

}  // namespace
}  // namespace zyl::test
