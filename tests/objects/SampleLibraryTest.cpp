// Sample records of the library: copies on edit, counting of locks, storing.
#include "support/ProgramRecord.h"
#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

// Releases a record at the end of its scope.
struct Giver {
  void operator()(genericSample* record) const { record->deleteSample(); }
};
using Held = std::unique_ptr<genericSample, Giver>;

Held Load(const std::string& path, int channel) {
  return Held(loadSample(path.c_str(), 1, 0, channel));
}

class SampleLibrary : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    path = Path("pair.wav");
    WriteWave(path, {{1, 2, 3}, {-1, -2, -3}}, 48000);
  }
  std::string path;
};

TEST_F(SampleLibrary, EditsCopyPinnedChannels) {
  const Held left = Load(path, 0);
  const Held whole(left->createChannelRef(-1));
  const auto pinned = left->Pin().channels;
  std::byte* before = left->buffer;
  const auto set = left->GetBufferSetMethod(0);
  (left.get()->*set)(0, 77);
  EXPECT_NE(left->buffer, before);
  EXPECT_EQ(whole->buffer, left->buffer);
  EXPECT_EQ(pinned[0].get()[0], std::byte{1});
  EXPECT_EQ(left->getChannelBuffer(1), pinned[1].get()) << "the other channel was not edited";
  before = left->buffer;
  (left.get()->*set)(1, 78);
  EXPECT_EQ(left->buffer, before) << "nobody holds the copy";
}

TEST_F(SampleLibrary, ALockedProgramLocksTheSamplesOfItsZones) {
  const Program program;
  program.Make(2);
  program("ZoneSampleSet", 0, 0, path);
  {
    const ProgramRecord record(program);
    for (int i = 0; i < 2; ++i) lockAkaiProgram(record.Get());
    const auto sound = [&](int k, int z) { return record->sampleTable[kZones * k + z]; };
    EXPECT_EQ(sound(0, 0)->lockValue, 1);
    const std::string other = Path("other.wav");
    WriteWave(other, {{1, 2, 3, 4}});
    const Held first = Load(path, 0);
    program("ZoneSampleSet", 0, 0, other);
    EXPECT_EQ(first->lockValue, 0);
    EXPECT_EQ(sound(0, 0)->lockValue, 1);
    EXPECT_TRUE(program("KGCreate", 0, program.Algo(), 0).Ok());
    EXPECT_EQ(sound(0, 0), sound(1, 0));
    EXPECT_EQ(sound(0, 0)->lockValue, 2);
    program("KGDelete", 1);
    EXPECT_EQ(sound(0, 0)->lockValue, 1);
    program("SampleReload", other);
    EXPECT_EQ(sound(0, 0)->lockValue, 1);
    EXPECT_GT(record->getTotalLockedMem(true), 2 * 4);
    unlockAkaiProgram(record.Get());
    EXPECT_EQ(sound(0, 0)->lockValue, 1);
    unlockAkaiProgram(record.Get());
    EXPECT_EQ(sound(0, 0)->lockValue, 0);
    lockAkaiProgram(record.Get());
  }
  // Deleting a locked program releases its locks.
}

TEST_F(SampleLibrary, OnlyAWholeWriteToItsPathCleansASample) {
  const Held whole = Load(path, -1);
  const auto store = [&](const std::string& target, int mask) {
    whole->shared().dirty = true;
    const bool stored = writeSample(whole.get(), target.c_str(), mask);
    return std::pair(stored, whole->shared().dirty);
  };
  EXPECT_EQ(store(path, 0), std::pair(true, false));
  EXPECT_EQ(store(Path("copy.wav"), 0), std::pair(true, true));
  EXPECT_EQ(store(Path("./pair.wav"), 0), std::pair(true, false)) << "the same file";
  EXPECT_EQ(store(path, 2), std::pair(true, true)) << "one channel is not all of it";
  EXPECT_EQ(store(Path("no/such/folder/x.wav"), 0), std::pair(false, true));
}

}  // namespace
}  // namespace zyl::test
