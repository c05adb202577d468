// Create, Read, Find, Write and FileName; sharing and memory; preset files.
#include "program/ProgramFileTools.h"

namespace zyl::test {
namespace {

using FileMethods = ModuleTest;

TEST_F(FileMethods, CreateMakesADefaultProgramOrCopiesOneWithItsChannel) {
  WriteWave(Path("a.wav"), {{1, 2}});
  const Program source;
  source.Make(2);
  source("PRGpoly", 3);
  source("PRGmidiChannel", 9);
  source("FileName", Path("source.zprg"));
  source("ZoneSampleSet", 1, 0, Path("a.wav"));
  const Program copy;
  for (const bool samples : {true, false}) {
    EXPECT_TRUE(copy("Create", source.Algo(), samples).Bool());
    EXPECT_EQ(copy("PRGpoly", 4).Int(), 3);
    EXPECT_EQ(copy("PRGmidiChannel").Int(), 9);
    EXPECT_EQ(copy("PRGtmMidiChannel").Int(), 1 << 9);
    EXPECT_EQ(copy("ZoneSampleExists", 1, 0).Bool(), samples);
    EXPECT_EQ(copy("FileName").Text(), "") << "a first write would overwrite the original";
  }
  EXPECT_EQ(source("PRGpoly").Int(), 3);
  const Program empty;
  Listener other;
  // None of these has a program; the own record is let go before a source is looked for.
  for (RIOObject* object : {static_cast<RIOObject*>(nullptr), empty.Algo(), copy.Algo(),
                            static_cast<RIOObject*>(&other)}) {
    copy("PRGpoly", 4);
    copy("PRGmidiChannel", 9);
    EXPECT_TRUE(copy("Create", object).Bool());
    EXPECT_EQ(copy("PRGpoly").Int(), 15);
    EXPECT_EQ(copy("PRGmidiChannel").Int(), 0);
    EXPECT_EQ(copy("PRGkeyGroups").Int(), 1);
  }
}

TEST_F(FileMethods, ReadTakesTheGivenChannelAsItIsAndElseTheRecords) {
  const Program program;
  program.Make();
  for (const int channel : {5, -1}) {
    program("PRGmidiChannel", channel);
    ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
    ASSERT_TRUE(program("Read", Path("p.zprg")).Bool());
    EXPECT_EQ(program("PRGmidiChannel").Int(), channel);
    EXPECT_EQ(program("PRGtmMidiChannel").Int(), channel < 0 ? -1 : 1 << channel);
  }
  ASSERT_TRUE(program("Read", Path("p.zprg"), NullEntry{}, 40).Bool());
  EXPECT_EQ(program("PRGmidiChannel").Int(), 40);
  EXPECT_EQ(program("PRGtmMidiChannel").Int(), 0);
  EXPECT_EQ(HeldRecord(Path("p.zprg"))->midiChannel, -1) << "the record's byte was written";
}

TEST_F(FileMethods, AReadOrFindThatFailsLeavesNoProgramAndNoError) {
  const Program program;
  program("Dirty", true);
  for (const char* method : {"Read", "Find"}) {
    for (const std::string& name : {Path("nothing.zprg"), std::string(), Path("")}) {
      program.Make();
      const Outcome outcome = program(method, name);
      EXPECT_TRUE(outcome.Ok());
      EXPECT_FALSE(outcome.Bool());
      EXPECT_FALSE(program("IsValid").Bool());
    }
  }
  EXPECT_TRUE(program("Dirty").Bool()) << "only a write clears the mark";
}

TEST_F(FileMethods, FindHandsOutTheRecordThatIsThereByPathProgramNameOrFileName) {
  const Program first;
  first.Make();
  first("PRGname", "Twelve chars");
  first("FileName", Path("sub/../grand.zprg"));
  for (const std::string& name :
       {Path("grand.zprg"), std::string("Twelve chars"), std::string("grand")}) {
    const Program second;
    EXPECT_TRUE(second("Find", name).Bool()) << name;
    second("PRGpoly", 1);
    EXPECT_EQ(first("PRGpoly", 15).Int(), 1) << name;
  }
  EXPECT_FALSE(Program()("Find", "Twelve char").Bool());
  EXPECT_FALSE(first("Find", "grand").Bool()) << "its only user had let it go before the search";
}

TEST_F(FileMethods, WriteGoesToTheRecordsNameUnlessAPathIsGiven) {
  const Program program;
  program.Make();
  EXPECT_FALSE(program("Write").Bool()) << "without any name";
  EXPECT_EQ(program("FileName", Path("own.zprg")).Text(), "");
  EXPECT_FALSE(program("Dirty").Bool());
  ASSERT_TRUE(program("Write", Path("other.zprg"), 1).Bool());
  EXPECT_FALSE(std::filesystem::exists(Path("own.zprg")));
  EXPECT_EQ(program("FileName").Text(), Path("own.zprg"));
  for (const bool empty : {false, true}) {
    std::filesystem::remove(Path("own.zprg"));
    program("Dirty", true);
    EXPECT_TRUE((empty ? program("Write", "") : program("Write")).Bool());
    EXPECT_TRUE(std::filesystem::exists(Path("own.zprg")));
    EXPECT_FALSE(program("Dirty").Bool());
  }
}

TEST_F(FileMethods, AFileIsLoadedOnceAndTheMemoryFiguresAddUp) {
  ASSERT_EQ(getTotalMem(), 0);
  constexpr int kFrames = 5000;
  WriteWave(Path("a.wav"), {std::vector<int16_t>(kFrames), std::vector<int16_t>(kFrames)});
  {
    const Program first;
    first.Make(2);
    const int oneProgram = getTotalMem();
    const Program second;
    second.Make(2);
    EXPECT_EQ(getTotalMem(), 2 * oneProgram);
    first("ZoneSampleSet", 0, 0, Path("a.wav"));
    const int withSample = getTotalMem();
    EXPECT_GE(withSample, 2 * oneProgram + 2 * 2 * kFrames);
    first("ZoneSampleSet", 1, 3, Path("a.wav"));
    second("ZoneSampleSet", 0, 0, Path("a.wav"));
    EXPECT_EQ(getTotalMem(), withSample) << "the file was counted or loaded again";
    EXPECT_EQ(second("SampleGetRefCount", second("SampleGet", 0, 0).Object()).Int(), 4);
    EXPECT_EQ(first("GetUsedPhysicalMemory", false).Int(), withSample);
    EXPECT_EQ(first("GetUsedPhysicalMemory").Int(), 0);
    first("SampleLock", 0, 0, true);
    EXPECT_EQ(first("GetUsedPhysicalMemory", true).Int(), 2 * kFrames) << "one channel is locked";
    first("SampleLock", 0, 0, false);
    EXPECT_GT(first("GetTotalPhysicalMemory").Int(), 0);
    EXPECT_EQ(first("GetLockedMemory").Int(), qxGetLockedMemory());
  }
  EXPECT_EQ(getTotalMem(), 0);
}

// ---- Preset files ----

std::string PresetFile(const std::vector<std::string>& names, const std::string& extra = "") {
  std::string headers;
  for (const std::string& name : names) {
    std::string record = name;
    record.resize(38);
    headers += record;
  }
  const std::string info = Chunk("LIST", "INFO" + Chunk("ifil", std::string(4, '\1')));
  const std::string data = "sfbk" + info + Chunk("LIST", "pdta" + Chunk("phdr", headers) + extra);
  return Chunk("RIFF", data);
}

std::vector<std::string> PresetsOf(const std::string& path, int expectedCount) {
  const Program program;
  ROCParam* array = ROCParam::NewArray(2);
  EXPECT_EQ(program("GetSFPresetArray", path, array).Int(), expectedCount);
  std::vector<std::string> names;
  for (int i = 0; i < array->ElementCount(); ++i) {
    const ROCParam& element = array->Element(i);
    names.push_back(element.Type() == kTypeString ? element.Str() : "(old)");
  }
  deleteROCParam(array);
  return names;
}

TEST_F(FileMethods, PresetNamesOfAnyLengthUpTo20AreListed) {
  const std::vector<std::string> names = {"Piano", "Twenty characters ab", ""};
  std::vector<std::string> records = names;
  records.push_back("EOP");
  WriteBytes(Path("p.sf2"), PresetFile(records));
  EXPECT_EQ(PresetsOf(Path("p.sf2"), 3), names);
  WriteBytes(Path("p.sf2"), PresetFile({"EOP"}));
  EXPECT_TRUE(PresetsOf(Path("p.sf2"), 0).empty()) << "a whole file without presets";
}

TEST_F(FileMethods, ADamagedPresetFileGivesNoneAndLeavesTheArray) {
  const std::string whole = PresetFile({"Piano", "EOP"}, Chunk("pbag", std::string(8, '\0')));
  const std::vector<std::string> untouched = {"(old)", "(old)"};
  EXPECT_EQ(PresetsOf(Path("no such file"), 0), untouched);
  for (size_t length = 0; length < whole.size(); ++length) {
    WriteBytes(Path("p.sf2"), whole.substr(0, length));
    EXPECT_EQ(PresetsOf(Path("p.sf2"), 0), untouched) << "cut to " << length;
  }
  for (size_t i = 0; i < whole.size(); ++i) {
    std::string lying = whole;
    lying[i] = static_cast<char>(0xFF);
    WriteBytes(Path("p.sf2"), lying);
    int count = 0;
    ::operator delete(createPresetArray(Path("p.sf2").c_str(), count));
    EXPECT_LE(count, 1);
  }
}

}  // namespace
}  // namespace zyl::test
