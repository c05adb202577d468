// Sample files through script methods, checked with libsndfile and against the chunks themselves.
#include "edit/EditTools.h"

namespace zyl::test {
namespace {

namespace fs = std::filesystem;

using SampleFiles = EditTest;

// The data of a chunk; empty if the file doesn't have it.
std::string Chunk(const std::string& path, const std::string& id) {
  for (const ChunkInfo& chunk : ListFileChunks(path)) {
    if (chunk.id == id) return ReadBytes(path).substr(chunk.offset, chunk.size);
  }
  return {};
}

// Values that don't fit a file are clamped without affecting other values.
TEST_F(SampleFiles, ParametersOutOfRangeAreClampedAlone) {
  Open(16, Counting(100, 1));
  SetPoints(first, {200, -5, 90, 10, 20, 300});
  program("Samplekey", first, 200);
  program("Sampletune", first, -100000);
  program("SampleplaybackType", first, 3);
  program("SampleholdLoopTuneOff", first, 1);
  for (const std::string& to : {Path("wild.wav"), Path("wild.aif")}) {
    ASSERT_TRUE(program("SampleWrite", first, to).Bool());
    RIOObject* read = Whole(to);
    EXPECT_EQ(Points(read), (Values{99, 99, 20, 99})) << to;
    EXPECT_EQ(Get(read, "Samplekey"), 200);
    EXPECT_EQ(Get(read, "Sampletune"), -100000);
    EXPECT_EQ(Get(read, "SampleplaybackType"), 3);
    EXPECT_EQ(Get(read, "SampleholdLoopTuneOff"), 1);
  }
}

// Some programs read a header with fewer bits than the container holds as silence.
TEST_F(SampleFiles, WidthsOfPartialBytesSurviveARoundTrip) {
  for (const int bits : {6, 12, 18, 20, 28}) {
    const int stored = (bits + 7) / 8 * 8;
    Values values;
    for (const int value : {-32, -1, 0, 1, 31}) values.push_back(value * (1 << (stored - 6)));
    Open(stored, {values, values});
    program("SampleBits", first, bits);
    for (const char* name : {"width.wav", "width.aif"}) {
      ASSERT_TRUE(program("SampleWrite", first, Path(name)).Bool());
      // libsndfile doesn't read AIFF files of less than 8 bits.
      if (bits >= 8 || name == std::string("width.wav")) {
        EXPECT_EQ(Sound(Path(name)).channels, (std::vector<Values>{values, values}));
      }
      RIOObject* read = Whole(Path(name));
      EXPECT_EQ(Get(read, "SampleBits"), bits);
      EXPECT_EQ(Read(read, 1), values);
    }
    const std::string format = Chunk(Path("width.wav"), "fmt ");
    EXPECT_EQ(format.size(), 16u);
    EXPECT_EQ(format.at(14), stored);
  }
}

// A name derived from the path isn't a title.
TEST_F(SampleFiles, ATitleIsWrittenIfItWasSetOrRead) {
  Open(16, {{1, 2}});
  StoreSound(Path("plain.aif"), SF_FORMAT_AIFF, 16, {{1, 2}});
  const std::string listed =
      ReadBytes(path) + std::string("LIST\x0e\0\0\0INFOISFT\x02\0\0\0me", 22);
  WriteBytes(Path("listed.wav"), listed);
  for (const std::string& name : {path, Path("plain.aif"), Path("listed.wav")}) {
    SCOPED_TRACE(name);
    const bool aif = name.ends_with("aif");
    const std::string before = ReadBytes(name);
    RIOObject* sample = Whole(name);
    EXPECT_FALSE(program("SampleName", sample).Text().empty());
    program("Samplekey", sample, 61);
    program("Samplekey", sample, 60);
    ASSERT_TRUE(program("SampleWrite", sample).Bool());
    EXPECT_EQ(ReadBytes(name), before);
    program("SampleName", sample, "Kick");
    ASSERT_TRUE(program("SampleWrite", sample).Bool());
    program("DeleteTempSample");
    sample = Whole(name);
    EXPECT_EQ(program("SampleName", sample).Text(), "Kick");
    EXPECT_NE(Chunk(name, aif ? "NAME" : "LIST").find("Kick"), std::string::npos);
    program("SampleName", sample, "");
    ASSERT_TRUE(program("SampleWrite", sample).Bool());
    EXPECT_EQ(ReadBytes(name).find("Kick"), std::string::npos);
  }
}

// A form after an ID3 tag, and the chunks of the original WAVE file in a FLAC file.
TEST_F(SampleFiles, LoopsAreReadFromATaggedWaveAndFromFlac) {
  for (const char* name : {"tagged.wav", "kept.flac"}) {
    SCOPED_TRACE(name);
    fs::copy_file(fs::path(SourcePath()) / "fuzz/corpus/sample_file" / name, Path(name));
    const std::string before = ReadBytes(Path(name));
    RIOObject* sample = Whole(Path(name));
    EXPECT_EQ(program("SampleLoopCount", sample).Int(), 1);
    const bool wave = name == std::string("tagged.wav");
    ASSERT_TRUE(program("SampleWrite", sample, Path(wave ? name : "from-flac.wav")).Bool());
    EXPECT_EQ(ReadBytes(Path(name)), before);
    EXPECT_EQ(Points(Whole(Path(wave ? name : "from-flac.wav"))), Points(sample));
  }
}

// A file whose format doesn't match its extension keeps its format.
TEST_F(SampleFiles, AMisnamedFileKeepsItsFormat) {
  StoreSound(Path("misnamed.wav"), SF_FORMAT_AIFF, 16, {{1, 2}});
  const std::string before = ReadBytes(Path("misnamed.wav"));
  RIOObject* sample = Whole(Path("misnamed.wav"));
  EXPECT_TRUE(program("SampleWrite", sample).Bool());
  EXPECT_EQ(ReadBytes(Path("misnamed.wav")), before);
  EXPECT_TRUE(program("SampleWrite", sample, Path("named.wav")).Bool());
  EXPECT_EQ(ReadBytes(Path("named.wav")).substr(0, 4), "RIFF");
}

TEST_F(SampleFiles, AWriteKeepsUnknownChunksAndTheMaskSelectsChannels) {
  Open(16, {{1, 2}, {3, 4}, {5, 6}});
  std::string image = ReadBytes(path) + std::string("note\x04\0\0\0keep", 12);
  image[4] = static_cast<char>(image.size() - 8);
  WriteBytes(Path("kept.wav"), image);
  RIOObject* kept = Whole(Path("kept.wav"));
  program("SampleSetValues", kept, 0, 1, 9);
  EXPECT_TRUE(program("SampleWrite", kept).Bool()) << "to its own path";
  EXPECT_EQ(program("GetChannelCount", Path("kept.wav")).Int(), 3);
  EXPECT_EQ(program("GetChannelCount", Path("missing.wav")).Int(), 0);
  EXPECT_FALSE(program("SampleWrite", kept, Path("written.mp3")).Bool());
  EXPECT_EQ(Chunk(Path("kept.wav"), "note"), "keep");
  struct Row {
    int mask;
    std::vector<Values> channels;
  };
  const Row rows[] = {{0, {{9, 2}, {9, 4}, {9, 6}}}, {5, {{9, 2}, {9, 6}}}, {4 + 8, {{9, 6}}}};
  for (const Row& row : rows) {
    for (const char* name : {"mask.wav", "mask.aif"}) {
      EXPECT_TRUE(program("SampleWrite", kept, Path(name), row.mask).Bool());
      EXPECT_EQ(Sound(Path(name)).channels, row.channels) << row.mask << " " << name;
    }
    EXPECT_EQ(Chunk(Path("mask.wav"), "note"), "keep");
  }
  EXPECT_FALSE(program("SampleWrite", kept, Path("mask.wav"), 8).Bool()) << "no such channel";
  EXPECT_EQ(Sound(Path("mask.wav")).channels, rows[2].channels);
  program("SampleSize", kept, 0);
  EXPECT_TRUE(program("SampleWrite", kept).Bool()) << "an empty sample can be stored";
  EXPECT_EQ(Sound(Path("kept.wav")).channels, (std::vector<Values>{{}, {}, {}}));
}

TEST_F(SampleFiles, MergingKeepsTheOrderOfChannels) {
  StoreSound(Path("a.wav"), SF_FORMAT_WAV, 16, {{1, 2, 3}, {-1, -2, -3}});
  StoreSound(Path("b.wav"), SF_FORMAT_WAV, 8, {{7}});
  RIOObject* a = Whole(Path("a.wav"));
  RIOObject* b = Whole(Path("b.wav"));
  program("Samplekey", a, 40);
  const std::string to = Path("merged.WAV"), aif = Path("merged.aif");
  EXPECT_TRUE(program("SampleWriteMerged", to, a, 1, NullObject{}, 0, b, 0, a, 0).Bool());
  EXPECT_EQ(Sound(to).channels, (std::vector<Values>{{-1, -2, -3}, {7 << 8, 0, 0}, {1, 2, 3}}));
  EXPECT_EQ(Get(Whole(to), "Samplekey"), 40) << "the first sample's parameters";
  program("SampleSize", b, 0);
  EXPECT_TRUE(program("SampleWriteMerged", aif, b, 0, a, 0).Bool());
  EXPECT_EQ(Sound(aif).channels, (std::vector<Values>{{0, 0, 0}, {1, 2, 3}}));
  EXPECT_EQ(Sound(aif).info.format & SF_FORMAT_TYPEMASK, SF_FORMAT_AIFF);
  EXPECT_EQ(Chunk(aif, "NAME"), "merged");
  program("SampleSize", b, 1);
  program("SampleBits", b, 12);
  EXPECT_TRUE(program("SampleWriteMerged", Path("bits.wav"), b, 0, a, 0).Bool());
  EXPECT_EQ(Get(Whole(Path("bits.wav")), "SampleBits"), 16) << "no channel loses bits";

  const std::string before = ReadBytes(to);
  EXPECT_TRUE(program("SampleWriteMerged", to, a, 2).Bool()) << "no such channel";
  ROCParams many;
  many.AddTail(newROCParam(std::string_view(to)));
  for (int i = 0; i < 2 * 17; ++i) many.AddTail(i % 2 == 0 ? newROCParam(a) : newROCParam(0));
  EXPECT_TRUE(CallList(program.Algo(), "SampleWriteMerged", &many).Bool()) << "too many channels";
  EXPECT_EQ(std::count(diagnostics.begin(), diagnostics.end(), '\n'), 2) << diagnostics;
  for (const char* name : {"merged", "merged.mp3"}) {
    EXPECT_FALSE(program("SampleWriteMerged", Path(name), a, 0).Bool());
  }
  EXPECT_FALSE(program("SampleWriteMerged", to, NullObject{}, 0).Bool());
  EXPECT_FALSE(program("SampleWriteMerged", to, a, 0, a).Ok());
  EXPECT_EQ(ReadBytes(to), before);
}

TEST_F(SampleFiles, ACopyIsCompleteOrAbsent) {
  const std::string source = Path("source.wav"), dest = Path("dest.wav");
  const auto copy = [&](const std::string& from, const std::string& to) {
    diagnostics.clear();
    EXPECT_EQ(program("SampleCopyFile", from, to).result, nullptr);
    return diagnostics.empty();
  };
  WriteBytes(source, "new sound");
  WriteBytes(dest, "old");
  fs::permissions(source, fs::perms::owner_read | fs::perms::group_read);
  for (const std::string& to : {dest, source, Path("\xC3\xA4.wav"), Path("no UTF-8 \xE4.wav")}) {
    EXPECT_TRUE(copy(source, to)) << to;
    EXPECT_EQ(ReadBytes(to), "new sound");
    EXPECT_EQ(fs::status(to).permissions(), fs::status(source).permissions());
  }
  const size_t entries = folder_->EntryCount();
  fs::create_symlink("ring", Path("ring"));
  for (const std::string& bad : {Path(""), Path("nowhere/a"), Path("ring"), std::string()}) {
    EXPECT_FALSE(copy(source, bad)) << bad;
    EXPECT_FALSE(copy(bad, dest)) << bad;
  }
  EXPECT_EQ(ReadBytes(dest), "new sound");
  EXPECT_EQ(folder_->EntryCount(), entries + 1) << "only the link was added";
}

}  // namespace
}  // namespace zyl::test
