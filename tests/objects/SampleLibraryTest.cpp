// The sample records of the library: one file's records and what they share, counting of uses and
// locks, reading anew, storing, memory figures.
#include "support/ProgramRecord.h"
#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

// A record that is given back at the end of its scope.
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

struct Told : AkaiInfoDispatcher {
  Told() { g_pInfoDispatcher = this; }
  ~Told() { g_pInfoDispatcher = before; }
  void OnSampleDeleting(genericSample* sample) override {
    EXPECT_EQ(sample->useCount, 1) << "it is still in use while its end is told";
    channels.push_back(sample->channel);
  }
  AkaiInfoDispatcher* before = g_pInfoDispatcher;
  std::vector<int> channels;
};

TEST_F(SampleLibrary, OneFileIsLoadedOnceAndEachOfItsRecordsIsCounted) {
  EXPECT_EQ(findSampleFN(path.c_str(), 0, 0), nullptr);
  const Told told;
  {
    const Held right = Load(path, 1);
    const Held again = Load(path, 1);
    ASSERT_NE(right, nullptr);
    EXPECT_EQ(right.get(), again.get());
    EXPECT_EQ(right->useCount, 2);
    genericSample* left = findSampleFN(path.c_str(), 0, 0);
    ASSERT_NE(left, nullptr);
    EXPECT_EQ(left->useCount, 0) << "finding adds no use";
    EXPECT_EQ(right->prevChannel, left);
    EXPECT_EQ(left->nextChannel, right.get());
    EXPECT_EQ(left->sourceId, right->sourceId);
    EXPECT_NE(left->recordId, right->recordId);
    const Held whole(right->createChannelRef(-1));
    EXPECT_EQ(whole->channel, -1);
    EXPECT_EQ(whole->buffer, left->buffer);
    EXPECT_EQ(right->createChannelRef(2), nullptr);
    EXPECT_EQ(Load(path, 2), nullptr);
    EXPECT_EQ(Load(Path("missing.wav"), 0), nullptr);
    whole->shared().key = 11;
    EXPECT_EQ(right->shared().key, 11);
    EXPECT_EQ(findSampleFN((path + "/../pair.wav").c_str(), 0, 1), right.get());
    EXPECT_TRUE(told.channels.empty());
  }
  EXPECT_EQ(told.channels, (std::vector<int>{-1, 1})) << "each record once, with its last use";
  EXPECT_EQ(findSampleFN(path.c_str(), 0, 1), nullptr);
}

TEST_F(SampleLibrary, ValuesInAWiderContainerKeepTheirWidth) {
  // 24 valid bits in 32, as an extensible header says it.
  const std::vector<int32_t> values = {0x12345600, -0x12345600, 0x7FFFFF00};
  std::string image = "RIFF";
  const auto put = [&](uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) image += static_cast<char>(value >> (8 * i));
  };
  put(60 + 12, 4);
  image += "WAVEfmt ";
  put(40, 4);
  for (const uint32_t half : {0xFFFEu, 1u}) put(half, 2);
  put(44100, 4);
  put(44100 * 4, 4);
  for (const uint32_t half : {4u, 32u, 22u, 24u}) put(half, 2);
  put(4, 4);
  put(1, 2);
  image += std::string("\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 14);
  image += "data";
  put(12, 4);
  for (const int32_t value : values) put(static_cast<uint32_t>(value), 4);
  const std::string wide = Path("wide.wav");
  std::ofstream(wide, std::ios::binary) << image;
  const Held sample = Load(wide, 0);
  ASSERT_NE(sample, nullptr) << diagnostics;
  ASSERT_EQ(sample->getChannelBytesPS(-1), 4);
  const auto get = sample->GetBufferGetMethod();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ((sample.get()->*get)(i), values[static_cast<size_t>(i)]) << i;
  }
}

TEST_F(SampleLibrary, AnEditSparesWhatAWorkerHolds) {
  const Held left = Load(path, 0);
  const Held whole(left->createChannelRef(-1));
  const auto pinned = left->PinChannels();
  std::byte* before = left->buffer;
  const auto set = left->GetBufferSetMethod(0);
  (left.get()->*set)(0, 77);
  EXPECT_NE(left->buffer, before);
  EXPECT_EQ(whole->buffer, left->buffer);
  EXPECT_EQ(pinned[0].get()[0], std::byte{1});
  EXPECT_EQ((left.get()->*left->GetBufferGetMethod())(0), 77);
  EXPECT_EQ(left->getChannelBuffer(1), pinned[1].get()) << "the other channel was not edited";
  before = left->buffer;
  (left.get()->*set)(1, 78);
  EXPECT_EQ(left->buffer, before) << "nobody holds the copy";
}

// ---- Locks ----

TEST_F(SampleLibrary, ALockFollowsItsSoundThroughEveryChange) {
  const Program program;
  program.Make();
  program("ZoneSampleSet", 0, 0, path);
  const ProgramRecord record(program);
  EXPECT_EQ(record->getTotalLockedMem(true), 0);
  const Held whole = Load(path, -1);
  EXPECT_EQ(lockSample(whole.get()), 1);
  EXPECT_EQ(lockSample(whole.get()), 2);
  EXPECT_NE(whole->memLocked, 0);
  EXPECT_EQ(record->getTotalLockedMem(true), 2 * 3 * 2) << "two channels of three values";
  whole->setChannelCount(3);
  EXPECT_EQ(record->getTotalLockedMem(true), 3 * 3 * 2);
  whole->setBitsPerSample(32);
  EXPECT_EQ(record->getTotalLockedMem(true), 3 * 3 * 4);
  whole->setChannelCount(1);
  unlockSample(whole.get());
  EXPECT_EQ(record->getTotalLockedMem(true), 1 * 3 * 4);
  unlockSample(whole.get());
  EXPECT_EQ(record->getTotalLockedMem(true), 0);
  EXPECT_EQ(whole->memLocked, 0);
  unlockSample(whole.get());
  EXPECT_EQ(lockSample(whole.get()), 1) << "an unlock too many leaves no debt";
}

TEST_F(SampleLibrary, ALockedProgramHoldsWhateverItsZonesPlay) {
  const Program program;
  program.Make(2);
  program("ZoneSampleSet", 0, 0, path);
  {
    const ProgramRecord record(program);
    lockAkaiProgram(record.Get());
    lockAkaiProgram(record.Get());
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
    EXPECT_GT(record->getTotalLockedMem(true), 8);
    EXPECT_LE(record->getTotalLockedMem(true), record->getTotalMem(true));
    unlockAkaiProgram(record.Get());
    EXPECT_EQ(sound(0, 0)->lockValue, 1);
    unlockAkaiProgram(record.Get());
    EXPECT_EQ(sound(0, 0)->lockValue, 0);
    EXPECT_EQ(record->getTotalLockedMem(true), 0);
    lockAkaiProgram(record.Get());
  }
  // The last use ends a program that is still locked, and with it its locks.
}

TEST_F(SampleLibrary, PagesThatSoundsShareStayLockedUntilTheLast) {
  // Small sounds lie side by side in few pages. The program's own locked memory is what counts.
  constexpr size_t kCount = 24;
  std::vector<Held> samples;
  const int32_t before = qxGetLockedMemory();
  for (size_t i = 0; i < kCount; ++i) {
    const std::string small = Path("small" + std::to_string(i) + ".wav");
    WriteWave(small, {std::vector<int16_t>(40 + i)});
    samples.push_back(Load(small, 0));
  }
  // What one holds alone, it holds when all others came and went.
  for (const size_t keep : {size_t{0}, kCount / 2, kCount - 1}) {
    lockSample(samples[keep].get());
    const int32_t alone = qxGetLockedMemory();
    if (alone == before) GTEST_SKIP() << "no memory can be locked here";
    for (size_t i = 1; i < kCount; ++i) lockSample(samples[(keep + i) % kCount].get());
    for (size_t i = 1; i < kCount; ++i) unlockSample(samples[(keep + 7 * i) % kCount].get());
    EXPECT_EQ(qxGetLockedMemory(), alone);
    unlockSample(samples[keep].get());
    EXPECT_EQ(qxGetLockedMemory(), before);
  }
  for (const Held& sample : samples) lockSample(sample.get());
  samples.clear();
  EXPECT_EQ(qxGetLockedMemory(), before) << "the last use lets go";
}

// ---- Storing ----

TEST_F(SampleLibrary, AStoredSampleIsCleanWhereItWasStoredWhole) {
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
  EXPECT_EQ(store(Path("none.txt"), 0), std::pair(false, true));
  EXPECT_EQ(store(Path("no/such/folder/x.wav"), 0), std::pair(false, true));
}

TEST_F(SampleLibrary, ANameComesBackFromTheFileThatCarriesIt) {
  for (const char* extension : {"wav", "aif"}) {
    const std::string target = Path("take.") + extension;
    const Held made(newSample());
    made->create(getTypeFromExtension(extension), 1);
    made->setFilePath(target);
    EXPECT_STREQ(made->name, "take");
    made->setName("Long Tone");
    made->setBuffers({}, 2, 4);  // silence
    ASSERT_TRUE(writeSample(made.get(), target.c_str(), 0)) << diagnostics;
    made->setFilePath("");
    const Held read = Load(target, 0);
    ASSERT_NE(read, nullptr);
    EXPECT_STREQ(read->name, "Long Tone");
  }
  EXPECT_STREQ(Load(path, 0)->name, "pair");
}

}  // namespace
}  // namespace zyl::test
