// Sample files through script methods, checked with libsndfile and against the chunks themselves.
#include <fstream>

#include "edit/EditTools.h"

namespace zyl::test {
namespace {

namespace fs = std::filesystem;

std::string Bytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}
void Store(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// The data of a chunk, empty when there is none.
std::string Chunk(const std::string& path, const std::string& id) {
  for (const ChunkInfo& chunk : ListFileChunks(path)) {
    if (chunk.id == id) return Bytes(path).substr(chunk.offset, chunk.size);
  }
  return {};
}
class SampleFiles : public EditTest {
 protected:
  size_t Entries() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(Path("")), {}));
  }
};

// Written by the other library, read and written by the module, read by the other library.
TEST_F(SampleFiles, EveryValueOf16And24BitsPassesBothContainers) {
  for (const int bits : {16, 24}) {
    Values all;
    for (int value = -(1 << (bits - 1)); value < 1 << (bits - 1); ++value) all.push_back(value);
    Open(bits, {all});
    for (const char* name : {"all.wav", "all.aif"}) {
      ASSERT_TRUE(program("SampleWrite", first, Path(name)).Bool());
      EXPECT_TRUE(Sound(Path(name)).channels.at(0) == all) << name << ", " << bits << " bits";
    }
  }
}

TEST_F(SampleFiles, AKeyAndSixteenLoopsPassBothContainers) {
  Open(16, Counting(1000, 1));
  program("Samplekey", first, 64);
  program("SampleplaybackType", first, 1);
  program("SampleLoopCount", first, 16);
  for (int i = 0; i < 16; ++i) {
    program("SampleLoopStart", first, i, 10 * i);
    program("SampleLoopEnd", first, i, 999 - i);
    program("SampleLoopFineLen", first, i, 1e9 + i);
  }
  for (const std::string& to : {Path("loops.wav"), Path("loops.aif")}) {
    ASSERT_TRUE(program("SampleWrite", first, to).Bool());
    RIOObject* read = Whole(to);
    EXPECT_EQ(Points(read), Points(first));
    EXPECT_EQ(program("SampleLoopFineLen", read, 15).Double(), 1e9 + 15);
    EXPECT_EQ(Get(read, "Samplekey"), 64);
  }
}

// Values that no file can hold are clamped; none costs the others.
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

// A header of fewer bits than the container holds is read as silence by some programs.
TEST_F(SampleFiles, WidthsOfNoWholeBytesComeBackAndOthersReadThem) {
  for (const int bits : {6, 12, 18, 20, 28}) {
    const int stored = (bits + 7) / 8 * 8;
    Values values;
    for (const int value : {-32, -1, 0, 1, 31}) values.push_back(value * (1 << (stored - 6)));
    Open(stored, {values, values});
    program("SampleBits", first, bits);
    for (const char* name : {"width.wav", "width.aif"}) {
      ASSERT_TRUE(program("SampleWrite", first, Path(name)).Bool());
      // libsndfile takes no AIFF file of less than 8 bits.
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

// The name that a record has by its path is no title.
TEST_F(SampleFiles, ATitleIsWrittenWhenItWasSetOrRead) {
  Open(16, {{1, 2}});
  StoreSound(Path("plain.aif"), SF_FORMAT_AIFF, 16, {{1, 2}});
  const std::string listed = Bytes(path) + std::string("LIST\x0e\0\0\0INFOISFT\x02\0\0\0me", 22);
  Store(Path("listed.wav"), listed);
  for (const std::string& name : {path, Path("plain.aif"), Path("listed.wav")}) {
    SCOPED_TRACE(name);
    const bool aif = name.ends_with("aif");
    const std::string before = Bytes(name);
    RIOObject* sample = Whole(name);
    EXPECT_FALSE(program("SampleName", sample).Text().empty());
    program("Samplekey", sample, 61);
    program("Samplekey", sample, 60);
    ASSERT_TRUE(program("SampleWrite", sample).Bool());
    EXPECT_EQ(Bytes(name), before);
    program("SampleName", sample, "Kick");
    ASSERT_TRUE(program("SampleWrite", sample).Bool());
    program("DeleteTempSample");
    sample = Whole(name);
    EXPECT_EQ(program("SampleName", sample).Text(), "Kick");
    EXPECT_NE(Chunk(name, aif ? "NAME" : "LIST").find("Kick"), std::string::npos);
    program("SampleName", sample, "");
    ASSERT_TRUE(program("SampleWrite", sample).Bool());
    EXPECT_EQ(Bytes(name).find("Kick"), std::string::npos);
  }
}

// A form after an ID3 tag, and the chunks that a FLAC file keeps of a WAVE file.
TEST_F(SampleFiles, LoopsComeOutOfATaggedWaveAndOutOfFlac) {
  Open(16, Counting(50, 1));
  SetPoints(first, {0, 49, 10, 40});
  ASSERT_TRUE(program("SampleWrite", first, Path("looped.wav")).Bool());
  const std::string wave = Bytes(Path("looped.wav"));
  const std::string tagged = std::string("ID3\4\0\0\0\0\0\4abcd", 14) + wave;
  Store(Path("tagged.wav"), tagged);
  RIOObject* sample = Whole(Path("tagged.wav"));
  EXPECT_EQ(Points(sample), (Values{0, 49, 10, 40}));
  EXPECT_EQ(Chunk(Path("tagged.wav"), "smpl"), Chunk(Path("looped.wav"), "smpl"));
  EXPECT_TRUE(program("SampleWrite", sample).Bool());
  EXPECT_EQ(Bytes(Path("tagged.wav")), tagged);

  StoreSound(Path("plain.flac"), SF_FORMAT_FLAC, 16, Counting(50, 1));
  const std::string plain = Bytes(Path("plain.flac"));
  std::string flac = plain.substr(0, 42);  // the mark and the one block that every file has
  const auto add = [&](const std::string& chunk) {
    flac += std::string("\2\0\0", 3) + static_cast<char>(chunk.size() + 4) + "riff" + chunk;
  };
  const auto whole = [&](const char* id) {
    const std::string data = Chunk(Path("looped.wav"), id);
    return id + std::string(1, static_cast<char>(data.size())) + std::string(3, '\0') + data;
  };
  add(wave.substr(0, 12));
  add(whole("fmt "));
  add(whole("data").substr(0, 8));
  add("odd " + std::string("\3\0\0\0abc\0", 8));
  add(whole("smpl"));
  Store(Path("kept.flac"), flac + plain.substr(42));
  sample = Whole(Path("kept.flac"));
  EXPECT_EQ(Points(sample), (Values{0, 49, 10, 40}));
  EXPECT_EQ(Read(sample, 0), Counting(50, 1)[0]);
  ASSERT_TRUE(program("SampleWrite", sample, Path("from-flac.wav")).Bool());
  EXPECT_EQ(Points(Whole(Path("from-flac.wav"))), (Values{0, 49, 10, 40}));
  EXPECT_EQ(Chunk(Path("from-flac.wav"), "odd "), "abc");
}

// A file that is of the other kind than its name says is saved as what it is.
TEST_F(SampleFiles, AMisnamedFileKeepsItsKind) {
  StoreSound(Path("misnamed.wav"), SF_FORMAT_AIFF, 16, {{1, 2}});
  const std::string before = Bytes(Path("misnamed.wav"));
  RIOObject* sample = Whole(Path("misnamed.wav"));
  EXPECT_TRUE(program("SampleWrite", sample).Bool());
  EXPECT_EQ(Bytes(Path("misnamed.wav")), before);
  EXPECT_TRUE(program("SampleWrite", sample, Path("named.wav")).Bool());
  EXPECT_EQ(Bytes(Path("named.wav")).substr(0, 4), "RIFF");
}

TEST_F(SampleFiles, AWriteKeepsUnknownChunksAndTheMaskSelectsChannels) {
  Open(16, {{1, 2}, {3, 4}, {5, 6}});
  std::string image = Bytes(path) + std::string("note\x04\0\0\0keep", 12);
  image[4] = static_cast<char>(image.size() - 8);
  Store(Path("kept.wav"), image);
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
  ExpectArgType(program("SampleWrite", kept, 3), "NewPath", kTypeString, 2);
  ExpectArgType(program("SampleWrite", kept, Path("x.wav"), "1"), "ChannelMask", kTypeInteger, 3);
  program("SampleSize", kept, 0);
  EXPECT_TRUE(program("SampleWrite", kept).Bool()) << "an empty sample is a file too";
  EXPECT_EQ(Sound(Path("kept.wav")).channels, (std::vector<Values>{{}, {}, {}}));
}

TEST_F(SampleFiles, MergedChannelsComeInOrder) {
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

  const std::string before = Bytes(to);
  EXPECT_TRUE(program("SampleWriteMerged", to, a, 2).Bool()) << "no such channel";
  ROCParams many;
  many.AddTail(newROCParam(std::string_view(to)));
  for (int i = 0; i < 17; ++i) {
    many.AddTail(newROCParam(a));
    many.AddTail(newROCParam(0));
  }
  EXPECT_TRUE(CallList(program.Algo(), "SampleWriteMerged", &many).Bool()) << "too many channels";
  EXPECT_EQ(std::count(diagnostics.begin(), diagnostics.end(), '\n'), 2) << diagnostics;
  for (const char* name : {"merged", "merged.mp3"}) {
    EXPECT_FALSE(program("SampleWriteMerged", Path(name), a, 0).Bool());
    EXPECT_FALSE(fs::exists(Path(name)));
  }
  EXPECT_FALSE(program("SampleWriteMerged", to, NullObject{}, 0).Bool());
  ExpectArgType(program("SampleWriteMerged"), "NewPath", kTypeString, 1);
  ExpectArgType(program("SampleWriteMerged", to, a, 0, a), "Channel", kTypeInteger, 5);
  ExpectArgType(program("SampleWriteMerged", to, a, 0, 1, 0), "Sample", kTypeObject, 4);
  ExpectArgPType(program("SampleWriteMerged", to, program.Algo(), 0), "ROCAlgo", "CSample", 2);
  EXPECT_EQ(Bytes(to), before);
}

TEST_F(SampleFiles, ACopyIsWholeOrNotThere) {
  const std::string source = Path("source.wav"), dest = Path("dest.wav");
  const auto copy = [&](const std::string& from, const std::string& to) {
    diagnostics.clear();
    const Outcome outcome = program("SampleCopyFile", from, to);
    EXPECT_TRUE(outcome.Ok());
    EXPECT_EQ(outcome.result, nullptr);
    return diagnostics.empty();
  };
  Store(source, "new sound");
  Store(dest, "old");
  Store(dest + ".part", "the user's own");
  fs::permissions(source, fs::perms::owner_read | fs::perms::group_read);
  EXPECT_TRUE(copy(source, dest));
  EXPECT_EQ(Bytes(dest), "new sound");
  EXPECT_EQ(Bytes(dest + ".part"), "the user's own");
  EXPECT_EQ(fs::status(dest).permissions(), fs::status(source).permissions());
  EXPECT_TRUE(copy(source, source)) << "onto itself";
  EXPECT_EQ(Bytes(source), "new sound");

  Store(Path("behind"), "old");
  fs::create_symlink("behind", Path("link"));
  EXPECT_TRUE(copy(source, Path("link")));
  EXPECT_TRUE(fs::is_symlink(Path("link")));
  EXPECT_EQ(Bytes(Path("behind")), "new sound");

  for (const char* name : {"\xC3\xA4 \xE6\x97\xA5.wav", "not UTF-8 \xE4.wav"}) {
    EXPECT_TRUE(copy(source, Path(name)) && copy(Path(name), Path("back"))) << name;
    EXPECT_EQ(Bytes(Path("back")), "new sound");
    fs::remove(Path("back"));
  }

  const size_t entries = Entries();
  fs::create_symlink("ring", Path("ring"));
  EXPECT_FALSE(copy(Path("missing"), dest));
  EXPECT_FALSE(copy(Path(""), dest));
  for (const std::string& bad : {Path(""), Path("nowhere/a"), Path("ring"), std::string()}) {
    EXPECT_FALSE(copy(source, bad)) << bad;
  }
  EXPECT_EQ(Bytes(dest), "new sound");
  EXPECT_EQ(Entries(), entries + 1) << "nothing is left behind";
  ExpectArgType(program("SampleCopyFile", 1, dest), "Source", kTypeString, 1);
  ExpectArgType(program("SampleCopyFile", source), "Dest", kTypeString, 2);
  ExpectArgType(program("GetChannelCount", true), "Path", kTypeString, 1);
}

}  // namespace
}  // namespace zyl::test
