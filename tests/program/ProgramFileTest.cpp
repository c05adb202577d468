// Program files: round trips, and rejection of damaged files.
#include <random>

#include "program/ProgramFileTools.h"

using namespace std::string_literals;

namespace zyl::test {
namespace {

namespace fs = std::filesystem;

class ProgramFile : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    fs::create_directories(Path("a/samples"));
    WriteWave(Path("a/samples/s.wav"), {{1, 2, 3, 4}, {5, 6, 7, 8}});
  }
  // Writes a program of two keygroups to a/p.zprg; one zone plays the second channel of a sample.
  void WriteSmall(int mode = 51) {
    program.Make(2);
    program("FileName", Path("a/p.zprg"));
    program("PRGpoly", 7);
    program("TolmoPRGecho", 9);
    program("ZoneSampleSet", 1, 2, Path("a/samples/s.wav"));
    ProgramRecord(program)->setSample(Path("a/samples/s.wav").c_str(), 1, 2, 1, 0);
    ASSERT_TRUE(program("Write", Path("a/p.zprg"), mode).Bool()) << diagnostics;
  }
  std::string ZonePath(const Program& of) { return of("ZoneSamplePath", 1, 2).Text(); }
  bool HasSample(const Program& of) { return of("ZoneSampleExists", 1, 2).Bool(); }
  bool Reads(const std::string& bytes) {
    WriteBytes(Path("try.zprg"), bytes);
    return Program()("Read", Path("try.zprg")).Bool();
  }
  Program program;
};

TEST_F(ProgramFile, EveryByteOfTheImagesIsReadBack) {
  WriteSmall();
  std::mt19937 random(17);
  {
    const ProgramRecord record(program);
    const auto scramble = [&](void* image, size_t from, size_t to) {
      for (size_t i = from; i < to; ++i) {
        static_cast<uint8_t*>(image)[i] = static_cast<uint8_t>(random());
      }
    };
    // All fields but those that the library maintains: channel, count, file name, mask and locks.
    auto* header = static_cast<akaiProgramHdrImage*>(record.Get());
    const size_t ranges[][2] = {{0, 16}, {17, 42}, {43, 164}, {168, 220}, {352, 356}};
    for (const auto& [from, to] : ranges) scramble(header, from, to);
    for (int k = 0; k < 2; ++k) {
      scramble(&record->keyGroupArray[k], 0, sizeof(akaiKeyGroup));
      scramble(static_cast<vendlKeyGroupImage*>(&record->keyGroupExtensions[k]), 0,
               sizeof(vendlKeyGroupImage));
    }
    scramble(record->tolmoChunk.get(), 0, sizeof(TolmoChunk));
  }
  ASSERT_TRUE(program("Write").Bool());
  const std::string first = ReadBytes(Path("a/p.zprg"));
  program("Create", NullObject{});
  ASSERT_TRUE(program("Read", Path("a/p.zprg")).Bool()) << diagnostics;
  ASSERT_TRUE(HasSample(program));
  ASSERT_TRUE(program("Write", Path("a/q.zprg")).Bool());
  EXPECT_TRUE(first == ReadBytes(Path("a/q.zprg")));
}

TEST_F(ProgramFile, UnknownChunksAreKept) {
  WriteSmall();
  const std::string body = Body(ReadBytes(Path("a/p.zprg")));
  // Ids that resemble known ones, an empty chunk, and one id twice.
  const std::string others = Chunk("NEW1", "some data") + Chunk("D KG", "x") +
                             Chunk("HEA\0"s, "y") + Chunk("\0\0\0\0"s, "") +
                             Chunk("NEW1", std::string(1000, '\xEE'));
  WriteBytes(Path("a/p.zprg"), WithSum(body + others));
  ASSERT_TRUE(program("Read", Path("a/p.zprg")).Bool()) << diagnostics;
  ASSERT_TRUE(program("Write", Path("a/q.zprg")).Bool());
  EXPECT_EQ(ReadBytes(Path("a/q.zprg")), WithSum(body + others));
}

TEST_F(ProgramFile, DamagedFilesAreRejected) {
  WriteSmall();
  const std::string file = ReadBytes(Path("a/p.zprg"));
  for (size_t i = 0; i < file.size(); ++i) {
    std::string damaged = file;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x55);
    EXPECT_FALSE(Reads(damaged) || Reads(file.substr(0, i))) << "byte " << i;
  }
  EXPECT_FALSE(Reads(file + '\0'));
  EXPECT_TRUE(Reads(file));
}

TEST_F(ProgramFile, DamageWithAValidChecksumIsRejected) {
  WriteSmall();
  const std::string body = Body(ReadBytes(Path("a/p.zprg")));
  const std::string head = body.substr(0, 8 + 8 + sizeof(akaiProgramHdrImage));
  std::string otherZone = body;
  char& entry = otherZone[body.find("PATH") + 8];
  entry = 7;
  EXPECT_TRUE(Reads(WithSum(otherZone))) << diagnostics;
  entry = 8;
  struct {
    const char* what;
    std::string body;
    bool good;
  } const rows[] = {
      {"no keygroups", head, true},
      {"a path of the zone after the last", otherZone, false},
      {"a chunk twice", body + body.substr(8, 8 + sizeof(akaiProgramHdrImage)), false},
      {"keygroups without extensions", head + Chunk("KGRP", std::string(192, 'k')), false},
      {"a path of the first zone that does not exist", head + Chunk("PATH", std::string(20, '\0')),
       false},
      {"an organ extension of another size", head + Chunk("TOLM", "short"), false},
      {"a chunk longer than the file", head + "LONG" + Little32(0xFFFFFFFF), false},
      {"a later version", "ZYLP\2\0\0\0"s + body.substr(8), false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Reads(WithSum(row.body)), row.good) << row.what << "\n" << diagnostics;
  }
  EXPECT_NE(diagnostics.find("later version"), std::string::npos);
}

TEST_F(ProgramFile, TheModeSelectsWhichPathsAreStored) {
  struct {
    int mode;
    bool folderMoved;  // otherwise only the program file
    bool found;
  } const rows[] = {{51, true, true},      {51, false, true},     {1 + 16, true, true},
                    {1 + 32, true, false}, {1 + 32, false, true}, {1, false, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.mode) + (row.folderMoved ? " folder" : " file"));
    TearDown();
    SetUp();
    WriteSmall(row.mode);
    program("Create", NullObject{});
    if (!row.folderMoved) fs::create_directories(Path("b"));
    const std::string moved = row.folderMoved ? "" : "/p.zprg";
    fs::rename(Path("a" + moved), Path("b" + moved));
    ASSERT_TRUE(program("Read", Path("b/p.zprg")).Bool());
    EXPECT_EQ(HasSample(program), row.found) << diagnostics;
    const std::string where = row.folderMoved && row.found ? "b" : "a";
    EXPECT_EQ(ZonePath(program), Path(where + "/samples/s.wav"));
  }
}

TEST_F(ProgramFile, AMissingSampleKeepsItsPathsThroughWrites) {
  WriteSmall();
  program("Create", NullObject{});
  fs::create_directories(Path("b"));
  fs::rename(Path("a/p.zprg"), Path("b/p.zprg"));
  fs::rename(Path("a/samples"), Path("aside"));
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(program("Read", Path("b/p.zprg")).Bool());
    EXPECT_FALSE(HasSample(program));
    EXPECT_EQ(ZonePath(program), Path("a/samples/s.wav"));
    EXPECT_NE(diagnostics.find(Path("a/samples/s.wav")), std::string::npos);
    ASSERT_TRUE(program("Write", Path("b/p.zprg")).Bool());
  }
  for (const char* home : {"a/samples", "b/samples"}) {
    fs::rename(Path("aside"), Path(home));
    ASSERT_TRUE(program("Read", Path("b/p.zprg"), 0).Bool());
    EXPECT_FALSE(HasSample(program)) << "LoadSmpl was 0";
    EXPECT_EQ(ZonePath(program), Path(home) + "/s.wav");
    ASSERT_TRUE(program("Read", Path("b/p.zprg")).Bool());
    EXPECT_TRUE(HasSample(program)) << home;
    EXPECT_EQ(ProgramRecord(program)->sampleTable[6]->channel, 1);
    fs::rename(Path(home), Path("aside"));
  }
}

TEST_F(ProgramFile, LongPathsAreReadBackCompletely) {
  std::string folder = Path("a");
  while (folder.size() < 400) folder += "/\u00e4\u6f22\U0001f3b9-" + std::string(40, 'x');
  fs::create_directories(folder);
  const std::string path = folder + "/\u00fc.zprg";
  WriteWave(folder + "/s.wav", {{1}});
  WriteSmall();
  program("ZoneSampleSet", 1, 2, folder + "/s.wav");
  program("FileName", path);
  ASSERT_TRUE(program("Write").Bool()) << diagnostics;
  ASSERT_TRUE(program("Read", path).Bool()) << diagnostics;
  EXPECT_EQ(program("FileName").Text(), path);
  EXPECT_EQ(ZonePath(program), folder + "/s.wav");
  const ProgramRecord record(program);
  EXPECT_TRUE(path.starts_with(record->fileName)) << "the field has the start of the path";
  for (std::string name : {"/", "/x"}) {
    const size_t ascii = name.size();
    for (int i = 0; i < 300; ++i) name += "\u00e9";
    program("FileName", name);
    EXPECT_EQ((std::string(record->fileName).size() - ascii) % 2, 0u)
        << "truncated inside a character";
  }
}

TEST_F(ProgramFile, TheModeSelectsWhetherChangedSamplesAreStored) {
  WriteSmall();
  const std::string wave = ReadBytes(Path("a/samples/s.wav"));
  program("Samplekey", program("SampleGet", 1, 2).Object(), 61);
  for (const int mode : {1 + 16, 2}) {
    program("PRGpoly", mode);
    ASSERT_TRUE(program("Write", Path("a/p.zprg"), mode).Bool());
    EXPECT_EQ(ReadBytes(Path("a/samples/s.wav")) == wave, mode != 2);
    EXPECT_EQ(program("SampleDirty", 1, 2).Bool(), mode != 2);
  }
  program("PrepareDelete");
  program("Create", NullObject{});
  ASSERT_TRUE(program("Read", Path("a/p.zprg")).Bool());
  EXPECT_EQ(program("PRGpoly").Int(), 2) << "the program is stored in every mode";
  EXPECT_EQ(program("Samplekey", program("SampleGet", 1, 2).Object()).Int(), 61);
}

TEST_F(ProgramFile, WriteRefusesThePathOfItsOwnSampleAndOfAFolder) {
  WriteSmall();
  const std::string sample = Path("a/samples/s.wav");
  const std::string wave = ReadBytes(sample);
  fs::create_symlink(sample, Path("symbolic"));
  fs::create_hard_link(sample, Path("hard"));
  fs::create_directory_symlink(Path("a"), Path("b"));
  program("ZoneSamplePath", 0, 1, Path("a/new.wav"));  // no file yet
  fs::create_symlink("a/new.wav", Path("dangling"));
  for (const bool loaded : {true, false}) {
    for (const std::string& path :
         {sample, Path("a/../a/samples/s.wav"), Path("symbolic"), Path("hard"), Path("b/new.wav"),
          Path("dangling"), Path("missing/p.zprg"), Path("a/samples")}) {
      program("Dirty", true);
      EXPECT_FALSE(program("Write", path).Bool()) << path;
      EXPECT_TRUE(program("Dirty").Bool());
    }
    EXPECT_EQ(ReadBytes(sample), wave);
    EXPECT_FALSE(fs::exists(Path("a/new.wav")));
    ASSERT_TRUE(program("Write", Path("a/p.zprg")).Bool());
    ASSERT_TRUE(!loaded || program("Read", Path("a/p.zprg"), 0).Bool());
  }
}

TEST_F(ProgramFile, AChangedSampleOfAReadOnlyFormatIsStoredAsANewWave) {
  // A sound file with a big-endian header of six words: two frames of one channel.
  WriteBytes(Path("a/samples/t.au"), ".snd\0\0\0\x18\0\0\0\4\0\0\0\3\0\0\xAC\x44\0\0\0\1\0\1\0\2"s);
  WriteWave(Path("a/x_y.wav"), {{9}});
  const std::string taken = ReadBytes(Path("a/x_y.wav"));
  WriteSmall();
  program("ZoneSampleSet", 0, 0, Path("a/samples/t.au"));
  program("SampleName", program("SampleGet", 0, 0).Object(), "x/y");
  ASSERT_TRUE(program("Write").Bool()) << diagnostics;
  EXPECT_EQ(program("ZoneSamplePath", 0, 0).Text(), Path("a/x_y 2.wav"));
  EXPECT_FALSE(program("SampleDirty", 0, 0).Bool());
  EXPECT_EQ(ReadBytes(Path("a/x_y.wav")), taken) << "another file was overwritten";
  program("PrepareDelete");
  program("Create", NullObject{});
  ASSERT_TRUE(program("Read", Path("a/p.zprg")).Bool());
  EXPECT_EQ(ProgramRecord(program)->sampleTable[0]->shared().frameCount, 2);
  // A sample must not be stored under the path of the program being written.
  program("SampleName", program("SampleGet", 0, 0).Object(), "same");
  ProgramRecord(program)->sampleTable[0]->setFilePath("");
  ASSERT_TRUE(program("Write", Path("a/same.wav")).Bool()) << diagnostics;
  EXPECT_EQ(program("ZoneSamplePath", 0, 0).Text(), Path("a/same 2.wav"));
  program("SampleName", program("SampleGet", 0, 0).Object(), std::string(400, 'n'));
  ProgramRecord(program)->sampleTable[0]->setFilePath("");
  EXPECT_TRUE(program("Write").Bool()) << diagnostics;
}

}  // namespace
}  // namespace zyl::test
