// Damaged and hostile sample files, and writes that fail.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstring>

#include "SampleFileTools.h"
#include "base/Pool.h"
#include "platform/AtomicFile.h"

namespace zyl::test {
namespace {

struct Reading {
  std::unique_ptr<BasicSample> sample;
  std::string reason;
};

Reading ReadBack(const TempFolder& folder, const Octets& bytes) {
  Reading reading;
  WriteBytes(folder.File("damaged"), bytes);
  reading.sample = ReadSampleFile(folder.File("damaged"), true, reading.reason);
  ListFileChunks(folder.File("damaged"));
  return reading;
}

Bytes SmplWithLoops(uint32_t declared, unsigned there) {
  FieldWriter out = Little();
  out.U32(0).U32(0).U32(0).U32(60).U32(0).U32(0).U32(0).U32(declared).U32(0xFFFFFFFF);
  for (unsigned i = 0; i < there; ++i) out.U32(i).U32(0).U32(i % 3).U32(3).U32(0).U32(0);
  return out.block;
}

TEST(DamagedSampleFile, StoredSizesAreNotTrusted) {
  const TempFolder folder;
  const auto format = WavFormatChunk(1, 16);
  const auto sound = Little().U32(0x00020001).U32(0x00040003).U8(9).block;
  const auto wav = [&](const Bytes& fmt, uint32_t size) {
    return WaveOf({{"data", sound, size}}, fmt);
  };
  const auto aif = [&](const Bytes& comm, const char* offset, uint32_t size = 17) {
    Bytes ssnd = Hex(offset);
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
    int frames;  // -1: rejected
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
      {"no sound", WaveOf({}), -1},
      {"2^31 frames", aif(AifFormatChunk(1, 0x80000000, 16), atOnce), 4},
      {"frames of length 0", aif(AifFormatChunk(1, 0, 16), atOnce, 0), 5},
      {"fewer frames", aif(AifFormatChunk(1, 3, 16), atOnce), 3},
      {"offset", aif(AifFormatChunk(1, 3, 16), "00000002 00000000"), 3},
      {"far offset", aif(AifFormatChunk(1, 3, 16), "7F000000 00000000"), -1},
      {"garbage", Octets(1000, 0x55), -1},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const Reading reading = ReadBack(folder, row.bytes);
    EXPECT_FALSE(reading.reason.empty() && row.frames != 3);
    const int frames =
        reading.sample == nullptr ? -1 : static_cast<int>(reading.sample->FrameCount());
    EXPECT_EQ(frames, row.frames) << reading.reason;
  }
  // An empty sound chunk before other chunks is not a streamed one.
  const Reading empty = ReadBack(folder, WaveOf({{"data", {}}, {"LIST", sound}}));
  ASSERT_NE(empty.sample, nullptr);
  EXPECT_EQ(empty.sample->FrameCount(), 0u);
  EXPECT_TRUE(empty.sample->IsValid());
  EXPECT_EQ(empty.sample->otherChunks.size(), 1u);
}

TEST(DamagedSampleFile, LoopsAreLimitedAndClampedToTheSound) {
  const TempFolder folder;
  const auto file = [](const Bytes& smpl) { return WaveOf({{"smpl", smpl}, {"data", Bytes(8)}}); };
  EXPECT_EQ(ReadBack(folder, file(SmplWithLoops(40000, 3))).sample->parameters.loops.size(), 3u);
  const Reading many = ReadBack(folder, file(SmplWithLoops(40000, 40000)));
  ASSERT_EQ(many.sample->parameters.loops.size(), 16u);
  EXPECT_EQ(many.sample->parameters.loops[2].start, 2u);
  EXPECT_FALSE(many.reason.empty());
  auto outside = SmplWithLoops(2, 2);
  outside[36 + 12] = std::byte{4};      // ends one frame late
  outside[36 + 24 + 8] = std::byte{4};  // starts after the sound
  outside[36 + 24 + 12] = std::byte{9};
  const Reading pulled = ReadBack(folder, file(outside));
  ASSERT_EQ(pulled.sample->parameters.loops.size(), 1u);
  EXPECT_EQ(pulled.sample->parameters.loops[0].end, 3u);
}

TEST(DamagedSampleFile, OnlyRegularFilesAreRead) {
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

TEST(DamagedSampleFile, AnOddChunkMayLackItsPaddingByte) {
  const TempFolder folder;
  const auto ids = [&](bool padded, const std::string& next) {
    Octets bytes = WaveOf({{"data", Hex("616263")}, {next, Hex("00000000")}});
    if (!padded) bytes.erase(bytes.begin() + 12 + 24 + 8 + 3);
    if (!padded) --bytes[4];
    WriteBytes(folder.File("odd"), bytes);
    std::string all;
    for (const ChunkInfo& chunk : ListFileChunks(folder.File("odd"))) all += chunk.id + "|";
    return all;
  };
  EXPECT_EQ(ids(false, "LIST"), "fmt |data|LIST|");
  EXPECT_EQ(ids(true, "wxyz"), "fmt |data|wxyz|");
  // Only known IDs are searched for at the unpadded offset.
  EXPECT_EQ(ids(false, "wxyz").find("wxyz"), std::string::npos);
}

TEST(AtomicFile, ReplacesCompletelyOrNotAtAllAndKeepsOwnerModeAndAttributes) {
  const TempFolder folder;
  const std::string path = folder.File("target");
  WriteBytes(path, Octets{1, 2, 3});
  ASSERT_TRUE(AtomicFile(path).Write("xyz", 3));
  EXPECT_EQ(ReadBytes<Octets>(path), (Octets{1, 2, 3})) << "destroyed before the commit";
  EXPECT_EQ(folder.EntryCount(), 1u);

  const bool privileged = geteuid() == 0;
  if (privileged) {
    ASSERT_EQ(chown(path.c_str(), 1234, 2345), 0);
  }
  chmod(path.c_str(), 06751);
  const bool attributes = setxattr(path.c_str(), "user.zyl", "kept", 4, 0) == 0;
  ASSERT_EQ(symlink("target", folder.File("link").c_str()), 0);
  const std::string large(300000, 7);
  AtomicFile file(folder.File("link"));
  ASSERT_TRUE(file.Write(large.data(), large.size()) && file.Write("t", 1));
  EXPECT_EQ(ReadBytes<Octets>(path), (Octets{1, 2, 3}));
  ASSERT_TRUE(file.Commit());
  EXPECT_FALSE(file.Write("x", 1) || file.Commit());
  EXPECT_EQ(ReadBytes(path), large + "t");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.File("link")));
  struct stat status {};
  stat(path.c_str(), &status);
  EXPECT_EQ(status.st_mode & 07777, 06751u);
  EXPECT_TRUE(!privileged || (status.st_uid == 1234 && status.st_gid == 2345));
  EXPECT_TRUE(!attributes || getxattr(path.c_str(), "user.zyl", nullptr, 0) == 4);
  EXPECT_EQ(folder.EntryCount(), 2u);
}

TEST(AtomicFile, RefusesATargetThatTheProcessMayNotWrite) {
  const TempFolder folder;
  const std::string path = folder.File("target");
  WriteBytes(path, Octets{1});
  chmod(path.c_str(), 0444);
  EXPECT_FALSE(AtomicFile(path).Good()) << "read-only for every user";
  chmod(path.c_str(), 0644);
  EXPECT_TRUE(AtomicFile(path).Good());
  if (geteuid() != 0) return;
  // Another user's file, in a folder that every user may write to.
  chmod(folder.File("").c_str(), 0777);
  ASSERT_EQ(seteuid(65534), 0);
  const bool foreign = AtomicFile(path).Good();
  const bool fresh = AtomicFile(folder.File("new")).Good();
  ASSERT_EQ(seteuid(0), 0);
  EXPECT_FALSE(foreign);
  EXPECT_TRUE(fresh);
  EXPECT_EQ(ReadBytes<Octets>(path), Octets{1});
}

TEST(Pool, LeavesLargeBlocksToTheHeap) {
  zyl::FreeBlock(zyl::AllocateBlock(40), 40);
  zyl::FreeBlock(zyl::AllocateBlock(1024), 1024);
}

TEST(AtomicFile, FailsWithoutItsFolder) {
  const TempFolder folder;
  EXPECT_FALSE(RiffFile(folder.File("no/such/file.wav")).Good());
  std::filesystem::create_directory(folder.File("gone"));
  RiffFile vanishing(folder.File("gone/file.wav"));
  std::filesystem::remove_all(folder.File("gone"));
  EXPECT_FALSE(vanishing.Close());
}

}  // namespace
}  // namespace zyl::test
