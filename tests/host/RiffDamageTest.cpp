// Damaged and hostile sample files, preset lists, and writes that fail.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

#include "SampleFileTools.h"
#include "platform/AtomicFile.h"
#include "riff/Presets.h"

using namespace zyltest;

namespace {

struct Answer {
  std::unique_ptr<BasicSample> sample;
  std::string reason;
};

Answer ReadBytes(const TempFolder& folder, const Octets& bytes) {
  Answer answer;
  Store(folder.File("damaged"), bytes);
  answer.sample = ReadSampleFile(folder.File("damaged"), true, answer.reason);
  ListFileChunks(folder.File("damaged"));
  return answer;
}

Octets SmallFile(const TempFolder& folder, bool aif) {
  const auto made = NewSample(aif);
  BasicSample& sample = *made;
  sample.parameters.tune = -200;
  sample.parameters.loops = {{1, 4, 9, 9, 3}, {2, 3, 0, 0, 0}, {0, 5, 0, 0, 0}};
  std::vector<int16_t> sound{1, 2, 3, 4, 5, 6, 7, 8, 9};
  EXPECT_TRUE(Lend(sample, sound));
  EXPECT_TRUE(WriteTo(sample, folder.File("small")));
  return Load(folder.File("small"));
}

zyl::Bytes SmplWithLoops(uint32_t declared, unsigned there) {
  FieldWriter out = Little();
  out.U32(0).U32(0).U32(0).U32(60).U32(0).U32(0).U32(0).U32(declared).U32(0xFFFFFFFF);
  for (unsigned i = 0; i < there; ++i) out.U32(i).U32(0).U32(i % 3).U32(3).U32(0).U32(0);
  return out.block;
}

}  // namespace

TEST(DamagedSampleFile, CutAtEveryByteGivesWhatIsWholeOrNothing) {
  const TempFolder folder;
  for (const bool aif : {false, true}) {
    const Octets whole = SmallFile(folder, aif);
    size_t soundEnd = 0;
    size_t soundStart = 0;
    for (const ChunkInfo& chunk : ListFileChunks(folder.File("small"))) {
      if (chunk.id != "data" && chunk.id != "SSND") continue;
      soundStart = chunk.offset + (aif ? 8 : 0);
      soundEnd = chunk.offset + chunk.size;
    }
    for (size_t length = 0; length < whole.size(); ++length) {
      const Octets cut(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length));
      const Answer answer = ReadBytes(folder, cut);
      const size_t frames = length < soundStart ? 0 : (std::min(length, soundEnd) - soundStart) / 2;
      ASSERT_EQ(answer.sample != nullptr, frames > 0) << length << " " << answer.reason;
      // Only the pad bytes at the very end can go without being missed.
      EXPECT_TRUE(length + 1 == whole.size() || !answer.reason.empty()) << length;
      if (answer.sample == nullptr) continue;
      ASSERT_EQ(answer.sample->FrameCount(), frames);
      EXPECT_EQ(ChannelValues(*answer.sample, 0).back(), static_cast<int>(frames));
      for (const RiffLoop& loop : answer.sample->parameters.loops) EXPECT_LT(loop.end, frames);
    }
  }
}

TEST(DamagedSampleFile, NoSizeIsBelieved) {
  const TempFolder folder;
  const auto format = WavFormatChunk(1, 16);
  const auto sound = Little().U32(0x00020001).U32(0x00040003).U8(9).block;
  const auto wav = [&](const zyl::Bytes& fmt, uint32_t size) {
    return FileOf("RIFF", "WAVE", {{"fmt ", fmt}, {"data", sound, size}});
  };
  const auto aif = [&](const zyl::Bytes& comm, const char* offset, uint32_t size = 17) {
    zyl::Bytes ssnd = Hex(offset);
    ssnd.insert(ssnd.end(), sound.begin(), sound.end());
    return FileOf("FORM", "AIFF", {{"COMM", comm}, {"SSND", ssnd, size}});
  };
  const char* atOnce = "00000000 00000000";
  Octets shortForm = wav(format, 9);
  shortForm[4] = 20;
  Octets streamed = wav(format, 0);
  std::memset(streamed.data() + 4, 0, 4);
  auto noRate = format;
  std::memset(noRate.data() + 4, 0, 4);
  struct Row {
    const char* what;
    Octets bytes;
    int frames;  // -1: refused
  };
  const Row rows[] = {
      {"size beyond the file", wav(format, 0xFFFFFFFF), 5},
      {"streamed", streamed, 5},
      {"short form", shortForm, 4},
      {"zero channels", wav(WavFormatChunk(0, 16), 9), -1},
      {"17 channels", wav(WavFormatChunk(17, 16), 9), -1},
      {"no bits", wav(WavFormatChunk(1, 0), 9), -1},
      {"40 bits", wav(WavFormatChunk(1, 40), 9), -1},
      {"no rate", wav(noRate, 9), 4},
      {"no format", FileOf("RIFF", "WAVE", {{"data", sound}}), -1},
      {"no sound", FileOf("RIFF", "WAVE", {{"fmt ", format}}), -1},
      {"2^31 frames", aif(AifFormatChunk(1, 0x80000000, 16), atOnce), 4},
      {"frames of length 0", aif(AifFormatChunk(1, 0, 16), atOnce, 0), 5},
      {"fewer frames", aif(AifFormatChunk(1, 3, 16), atOnce), 3},
      {"offset", aif(AifFormatChunk(1, 3, 16), "00000002 00000000"), 3},
      {"far offset", aif(AifFormatChunk(1, 3, 16), "7F000000 00000000"), -1},
      {"garbage", Octets(1000, 0x55), -1},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const Answer answer = ReadBytes(folder, row.bytes);
    EXPECT_FALSE(answer.reason.empty() && row.frames != 3);
    const int frames =
        answer.sample == nullptr ? -1 : static_cast<int>(answer.sample->FrameCount());
    EXPECT_EQ(frames, row.frames) << answer.reason;
  }
  // An empty sound before other chunks is really empty.
  const Answer empty =
      ReadBytes(folder, FileOf("RIFF", "WAVE", {{"fmt ", format}, {"data", {}}, {"LIST", sound}}));
  ASSERT_NE(empty.sample, nullptr);
  EXPECT_EQ(empty.sample->FrameCount(), 0u);
  EXPECT_TRUE(empty.sample->IsValid());
  EXPECT_EQ(empty.sample->otherChunks.size(), 1u);
}

TEST(DamagedSampleFile, LoopsAreLimitedAndPulledIn) {
  const TempFolder folder;
  const auto file = [](const zyl::Bytes& smpl) {
    return FileOf("RIFF", "WAVE",
                  {{"fmt ", WavFormatChunk(1, 16)}, {"smpl", smpl}, {"data", zyl::Bytes(8)}});
  };
  EXPECT_EQ(ReadBytes(folder, file(SmplWithLoops(40000, 3))).sample->parameters.loops.size(), 3u);
  const Answer many = ReadBytes(folder, file(SmplWithLoops(40000, 40000)));
  ASSERT_EQ(many.sample->parameters.loops.size(), 16u);
  EXPECT_EQ(many.sample->parameters.loops[2].start, 2u);
  EXPECT_FALSE(many.reason.empty());
  auto outside = SmplWithLoops(2, 2);
  outside[36 + 12] = std::byte{4};      // ends one frame late
  outside[36 + 24 + 8] = std::byte{4};  // starts behind the sound
  outside[36 + 24 + 12] = std::byte{9};
  const Answer pulled = ReadBytes(folder, file(outside));
  ASSERT_EQ(pulled.sample->parameters.loops.size(), 1u);
  EXPECT_EQ(pulled.sample->parameters.loops[0].end, 3u);
}

TEST(DamagedSampleFile, WhatIsNoFileIsRefused) {
  const TempFolder folder;
  ASSERT_EQ(mkfifo(folder.File("pipe").c_str(), 0600), 0);
  for (const std::string& path : {folder.File("missing"), folder.File(""), folder.File("pipe"),
                                  std::string(), std::string("a\0b", 3)}) {
    std::string reason;
    EXPECT_EQ(ReadSampleFile(path, true, reason), nullptr);
    EXPECT_FALSE(reason.empty());
    EXPECT_TRUE(ListFileChunks(path).empty());
  }
}

TEST(DamagedSampleFile, AnOddChunkWithoutItsPaddingByteIsRead) {
  const TempFolder folder;
  const auto ids = [&](bool padded, const std::string& next) {
    FieldWriter body = Little();
    body.Text("WAVEfmt ").U32(16).Raw(WavFormatChunk(1, 8).data(), 16);
    body.Text("data").U32(3).Text("abc");
    if (padded) body.U8(0);
    body.Text(next).U32(4).Text("INFO");
    FieldWriter file = Little();
    file.Text("RIFF")
        .U32(static_cast<uint32_t>(body.block.size()))
        .Raw(body.block.data(), body.block.size());
    const auto* first = reinterpret_cast<const uint8_t*>(file.block.data());
    Store(folder.File("odd"), Octets(first, first + file.block.size()));
    std::string all;
    for (const ChunkInfo& chunk : ListFileChunks(folder.File("odd"))) all += chunk.id + "|";
    return all;
  };
  EXPECT_EQ(ids(false, "LIST"), "fmt |data|LIST|");
  EXPECT_EQ(ids(true, "LIST"), "fmt |data|LIST|");
  EXPECT_EQ(ids(true, "wxyz"), "fmt |data|wxyz|");
  // Only a known identifier moves a chunk to the unpadded place.
  EXPECT_EQ(ids(false, "wxyz").find("wxyz"), std::string::npos);
}

TEST(Presets, AreReadFromWholeFilesOnly) {
  const TempFolder folder;
  zyl::Bytes headers;
  for (const char* name : {"Piano", "Twenty characters ..", "", "EOP"}) {
    char field[38] = "";
    std::strncpy(field, name, 20);
    const auto* bytes = reinterpret_cast<const std::byte*>(field);
    headers.insert(headers.end(), bytes, bytes + sizeof field);
  }
  const auto font = [](const zyl::Bytes& records, uint32_t size) {
    FieldWriter list = Little();
    list.Text("pdtaphdr").U32(size).Raw(records.data(), records.size());
    return FileOf("RIFF", "sfbk", {{"LIST", Little().Text("INFO").block}, {"LIST", list.block}});
  };
  const std::string path = folder.File("a.sf2");
  const auto size = static_cast<uint32_t>(headers.size());
  const Octets whole = font(headers, size);
  Store(path, whole);
  const auto presets = zyl::ReadPresets(path);
  ASSERT_TRUE(presets && presets->size() == 3);
  EXPECT_EQ((*presets)[0].name, "Piano");
  EXPECT_EQ((*presets)[1].name, "Twenty characters ..");
  EXPECT_EQ((*presets)[2].name, "");
  for (size_t length = 0; length < whole.size(); ++length) {
    Store(path, Octets(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length)));
    EXPECT_FALSE(zyl::ReadPresets(path)) << length;
  }
  for (const uint32_t lie : {size - 1, size + 38}) {
    Store(path, font(headers, lie));
    EXPECT_FALSE(zyl::ReadPresets(path)) << lie;
  }
}

TEST(AtomicFile, ReplacesWholeOrNotAtAll) {
  const TempFolder folder;
  const std::string path = folder.File("target");
  Store(path, {1, 2, 3});
  chmod(path.c_str(), 0640);
  ASSERT_TRUE(zyl::AtomicFile(path).Write("xyz", 3));
  EXPECT_EQ(Load(path), (Octets{1, 2, 3})) << "dropped before it was whole";
  EXPECT_EQ(folder.EntryCount(), 1u);

  ASSERT_EQ(symlink("target", folder.File("link").c_str()), 0);
  const Octets large(300000, 7);
  zyl::AtomicFile file(folder.File("link"));
  ASSERT_TRUE(file.Write(large.data(), large.size()) && file.Write("t", 1));
  EXPECT_EQ(Load(path), (Octets{1, 2, 3}));
  ASSERT_TRUE(file.Commit());
  EXPECT_FALSE(file.Write("x", 1) || file.Commit());
  Octets expected = large;
  expected.push_back('t');
  EXPECT_EQ(Load(path), expected);
  EXPECT_TRUE(std::filesystem::is_symlink(folder.File("link")));
  struct stat status {};
  stat(path.c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777, 0640u);
  EXPECT_EQ(folder.EntryCount(), 2u);
}

TEST(AtomicFile, KeepsOwnerModeAndAttributes) {
  const TempFolder folder;
  const std::string path = folder.File("target");
  Store(path, {1});
  const bool privileged = geteuid() == 0;
  if (privileged) {
    ASSERT_EQ(chown(path.c_str(), 1234, 2345), 0);
  }
  chmod(path.c_str(), 06751);
  const bool attributes = setxattr(path.c_str(), "user.zyl", "kept", 4, 0) == 0;
  zyl::AtomicFile file(path);
  ASSERT_TRUE(file.Write("xyz", 3) && file.Commit());
  struct stat status {};
  stat(path.c_str(), &status);
  EXPECT_EQ(status.st_mode & 07777, 06751u);
  EXPECT_TRUE(!privileged || (status.st_uid == 1234 && status.st_gid == 2345));
  char value[5] = "";
  if (attributes) {
    EXPECT_EQ(getxattr(path.c_str(), "user.zyl", value, 4), 4);
    EXPECT_STREQ(value, "kept");
  }
}

TEST(AtomicFile, ATargetThatTheProcessMayNotWriteIsRefused) {
  const TempFolder folder;
  const std::string path = folder.File("target");
  Store(path, {1});
  chmod(path.c_str(), 0444);
  EXPECT_FALSE(zyl::AtomicFile(path).Good()) << "read-only, whoever the user is";
  chmod(path.c_str(), 0644);
  EXPECT_TRUE(zyl::AtomicFile(path).Good());
  if (geteuid() != 0) return;
  // Someone else's file, in a folder that everybody may write.
  chmod(folder.File("").c_str(), 0777);
  ASSERT_EQ(seteuid(65534), 0);
  const bool foreign = zyl::AtomicFile(path).Good();
  const bool fresh = zyl::AtomicFile(folder.File("new")).Good();
  ASSERT_EQ(seteuid(0), 0);
  EXPECT_FALSE(foreign);
  EXPECT_TRUE(fresh);
  EXPECT_EQ(Load(path), Octets{1});
}

// The system refuses to let a file grow beyond a limit, as a full disk would.
TEST(AtomicFile, AFullDiskLeavesTheOldFile) {
  const TempFolder folder;
  std::vector<int16_t> sound(400000);
  WavSample wav;
  ASSERT_TRUE(Lend(wav, sound));
  Store(folder.File("old.wav"), {1, 2, 3});
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{200000, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  RiffFile file(folder.File("old.wav"));
  const bool written = wav.Write(file);
  const bool closed = file.Close();
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, oldHandler);
  EXPECT_FALSE(written || closed);
  EXPECT_NE(file.Error().find("old.wav"), std::string::npos);
  EXPECT_EQ(Load(folder.File("old.wav")), (Octets{1, 2, 3}));
  EXPECT_EQ(folder.EntryCount(), 1u);
}

TEST(AtomicFile, MissingAndVanishingFoldersAreFailures) {
  const TempFolder folder;
  EXPECT_FALSE(RiffFile(folder.File("no/such/file.wav")).Good());
  std::filesystem::create_directory(folder.File("gone"));
  RiffFile vanishing(folder.File("gone/file.wav"));
  std::filesystem::remove_all(folder.File("gone"));
  EXPECT_FALSE(vanishing.Close());
}
