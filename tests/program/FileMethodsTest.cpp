// Create, Read, Find, Write and FileName; sharing and memory; preset files.
#include "program/ProgramFileTools.h"

namespace zyl::test {
namespace {

using FileMethods = ModuleTest;

TEST_F(FileMethods, CreateMakesADefaultProgramOrACopy) {
  WriteWave(Path("a.wav"), {{1, 2}});
  const Program source;
  source.Make(2);
  source("PRGpoly", 3);
  source("PRGmidiChannel", 9);
  source("FileName", Path("source.zprg"));
  source("ZoneSampleSet", 1, 0, Path("a.wav"));
  const Program copy, empty;
  for (const bool samples : {true, false}) {
    EXPECT_TRUE(copy("Create", source.Algo(), samples).Bool());
    EXPECT_EQ(copy("PRGpoly", 4).Int(), 3);
    EXPECT_EQ(copy("PRGtmMidiChannel").Int(), 1 << 9);
    EXPECT_EQ(copy("ZoneSampleExists", 1, 0).Bool(), samples);
    EXPECT_EQ(copy("FileName").Text(), "") << "a first write would overwrite the original";
  }
  EXPECT_EQ(source("PRGpoly").Int(), 3);
  Listener other;
  for (RIOObject* withoutProgram :
       std::initializer_list<RIOObject*>{nullptr, empty.Algo(), &other}) {
    copy("PRGpoly", 4);
    EXPECT_TRUE(copy("Create", withoutProgram).Bool());
    EXPECT_EQ(copy("PRGpoly").Int(), 15);
    EXPECT_EQ(copy("PRGmidiChannel").Int(), 0);
  }
  // A copy of itself copies the object's new, empty record, which has no channel.
  EXPECT_TRUE(copy("Create", copy.Algo()).Bool());
  EXPECT_EQ(copy("PRGkeyGroups").Int(), 0);
  EXPECT_EQ(copy("PRGmidiChannel").Int(), 99);
}

TEST_F(FileMethods, ReadUsesTheGivenOrTheRecordsChannel) {
  const Program program;
  program.Make();
  for (const int channel : {5, -1}) {
    program("PRGmidiChannel", channel);
    ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
    ASSERT_TRUE(program("Read", Path("p.zprg")).Bool());
    EXPECT_EQ(program("PRGtmMidiChannel").Int(), channel < 0 ? -1 : 1 << channel);
  }
  ASSERT_TRUE(program("Read", Path("p.zprg"), NullEntry{}, 40).Bool());
  EXPECT_EQ(program("PRGmidiChannel").Int(), 40);
  EXPECT_EQ(program("PRGtmMidiChannel").Int(), 0);
  EXPECT_EQ(ProgramRecord(program)->midiChannel, -1) << "the record's byte was written";
  program("Dirty", true);
  for (const char* method : {"Read", "Find"}) {
    for (const std::string& name : {Path("nothing.zprg"), std::string(), Path("")}) {
      program.Make();
      EXPECT_FALSE(program(method, name).Bool());
      EXPECT_FALSE(program("IsValid").Bool());
    }
  }
  EXPECT_TRUE(program("Dirty").Bool()) << "only a write clears the flag";
}

TEST_F(FileMethods, FindSharesARecordByPathProgramNameOrFileName) {
  const Program first, second;
  first.Make();
  first("PRGname", "Twelve chars");
  first("FileName", Path("sub/../grand.zprg"));
  int poly = 0;
  for (const std::string& name :
       {Path("grand.zprg"), std::string("Twelve chars"), std::string("grand")}) {
    EXPECT_TRUE(second("Find", name).Bool()) << name;
    second("PRGpoly", ++poly);
    EXPECT_EQ(first("PRGpoly").Int(), poly) << name;
  }
  EXPECT_FALSE(second("Find", "Twelve char").Bool());
  EXPECT_FALSE(first("Find", "grand").Bool()) << "its only user released it before the search";
}

TEST_F(FileMethods, WriteUsesTheRecordsNameUnlessAPathIsGiven) {
  const Program program;
  program.Make();
  EXPECT_FALSE(program("Write").Bool()) << "without a name";
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
    second("ZoneSampleSet", 0, 0, Path("a.wav"));
    EXPECT_EQ(getTotalMem(), withSample) << "the file was counted or loaded again";
    EXPECT_EQ(first("GetUsedPhysicalMemory", false).Int(), withSample);
    first("SampleLock", 0, 0, true);
    EXPECT_EQ(first("GetUsedPhysicalMemory", true).Int(), 2 * kFrames) << "one channel is locked";
    EXPECT_GT(first("GetTotalPhysicalMemory").Int(), 0);
    EXPECT_EQ(first("GetLockedMemory").Int(), qxGetLockedMemory());
  }
  EXPECT_EQ(getTotalMem(), 0);
}

// The system would truncate such a path at the zero byte.
TEST_F(FileMethods, APathWithAZeroByteIsRejected) {
  WriteWave(Path("a.wav"), {{1, 2}});
  const std::string path = Path("a.wav") + std::string("\0.wav", 5);
  const Program program;
  program.Make();
  ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
  RIOObject* sample = program("ReadTempSample", Path("a.wav")).Object();
  const ROCParamPtr array(ROCParam::NewArray(0));
  RODPad pad;
  std::vector<Outcome> outcomes = {program("GetSFPresetArray", path, array.get()),
                                   program("ZoneSampleSet", 0, 0, path),
                                   program("ZoneSamplePath", 0, 0, path),
                                   program("SampleFilePath", sample, path),
                                   program("SampleWrite", sample, path),
                                   program("SampleWriteMerged", path, sample, 0),
                                   program("SampleCopyFile", path, Path("b.wav")),
                                   program("SampleCopyFile", Path("a.wav"), path),
                                   program("ReadSampleFromPad", &pad, path)};
  for (const char* method :
       {"Read", "Find", "Write", "FileName", "SampleGetByName", "CreateTempSample", "GetTempSample",
        "ReadTempSample", "SampleReload", "GetChannelCount"}) {
    outcomes.push_back(program(method, path));
  }
  for (const Outcome& outcome : outcomes) ExpectError(outcome, "ArgUser");
  EXPECT_TRUE(program("IsValid").Bool()) << "the program was detached";
  program("DeleteTempSample");
}

std::string PresetFile(const std::vector<std::string>& names) {
  std::string headers;
  for (const std::string& name : names) headers += name + std::string(38 - name.size(), '\0');
  return Chunk("RIFF", "sfbk" + Chunk("LIST", "pdta" + Chunk("phdr", headers)));
}

TEST_F(FileMethods, PresetNamesAreListed) {
  const Program program;
  const ROCParamPtr array(ROCParam::NewArray(2));
  const auto read = [&](const std::string& bytes) {
    WriteBytes(Path("p.sf2"), bytes);
    return program("GetSFPresetArray", Path("p.sf2"), array.get()).Int();
  };
  const std::vector<std::string> names = {"Piano", "Twenty characters ab", "", "EOP"};
  const std::string whole = PresetFile(names);
  EXPECT_EQ(read(whole), 3);
  EXPECT_EQ(read(whole.substr(0, whole.size() - 1)), 0);
  ASSERT_EQ(array->ElementCount(), 3);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(array->Element(i).Str(), names[static_cast<size_t>(i)]);
  EXPECT_EQ(read(PresetFile({"EOP"})), 0);
  EXPECT_EQ(array->ElementCount(), 0) << "a whole file without presets";
}

}  // namespace
}  // namespace zyl::test
