// Sample objects through script methods: ownership of objects and records, sample arguments, and
// the properties of a sample.
#include "sample/CSample.h"

#include <array>

#include "support/ProgramRecord.h"

namespace zyl::test {
namespace {

// The module does not export type information, so vptr checks are off.
__attribute__((no_sanitize("vptr"))) genericSample*& RecordOf(RIOObject* object) {
  return reinterpret_cast<CSample*>(object)->sample;
}
// Whether the object of `value` has been destroyed.
bool IsDestroyed(const ROCParam& value) { return value.Object() == nullptr; }

class SampleObjects : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    WriteWave(mono = Path("mono.wav"), {{1, 2, 3, 4}}, 44100);
    WriteWave(stereo = Path("stereo.wav"), {{1, 2, 3}, {-1, -2, -3}}, 48000);
    program.Make(2);
  }
  void TearDown() override {
    Program()("DeleteTempSample");
    program.Delete();
    for (const std::string& path : {mono, stereo}) {
      EXPECT_EQ(findSampleFN(path.c_str(), 0, -1), nullptr) << "a use was leaked";
    }
    ProgramTest::TearDown();
  }
  RIOObject* Zone(int keygroup, int zone) const {
    return program("SampleGet", keygroup, zone).Object();
  }
  int32_t Uses(RIOObject* sample) const { return program("SampleGetRefCount", sample).Int(); }
  void Fill(int keygroup, int zone, const std::string& path) const {
    program("ZoneSampleSet", keygroup, zone, path);
    EXPECT_TRUE(program("ZoneSampleExists", keygroup, zone).Bool());
  }
  // Counts OnDeletingSmpl notifications, and calls `during` in each.
  void ListenForDeleting(std::function<void(RIOObject*)> during = {}) {
    program("Register", &listener);
    listener["OnDeletingSmpl"] = [this, during](ROCParams& arguments, ROCParam**) {
      EXPECT_EQ(arguments.Entry(0)->Object(), program.Algo());
      ++deleted;
      if (during) during(arguments.Entry(1)->Object());
    };
  }

  std::string mono, stereo;
  int deleted = 0;
};

TEST_F(SampleObjects, AZoneHasOneObjectWithOneUse) {
  EXPECT_EQ(Zone(0, 0), nullptr);
  Fill(0, 0, mono);
  Fill(1, 3, mono);
  RIOObject* sample = Zone(0, 0);
  ASSERT_NE(sample, nullptr);
  EXPECT_EQ(sample->GetTypeID(), 5587);
  EXPECT_EQ(Uses(sample), 3) << "two zones and the object";
  EXPECT_EQ(Zone(0, 0), sample);
  EXPECT_EQ(Zone(1, 3), sample) << "zones of one file share the record";
  for (const std::string& name : {std::string("mono.wav"), mono}) {
    EXPECT_EQ(program("SampleGetByName", name).Object(), sample);
  }
  EXPECT_EQ(program("SampleGetByName", "other.wav").Object(), nullptr);
  const Program other;
  other("Create", program.Algo());
  EXPECT_NE(other("SampleGet", 0, 0).Object(), sample) << "each program object has its own";
  EXPECT_EQ(Uses(sample), 6);
}

TEST_F(SampleObjects, ReplacingAZoneSampleDeletesItsObject) {
  Fill(0, 0, mono);
  Fill(0, 1, stereo);
  Fill(1, 1, stereo);
  Zone(0, 1);
  const ROCParam first(Zone(0, 0));
  ListenForDeleting([&](RIOObject* sample) {
    EXPECT_EQ(program("SampleFileName", sample).Text(), deleted == 1 ? "mono.wav" : "stereo.wav");
  });
  program("Dirty", false);
  Fill(0, 0, stereo);
  EXPECT_TRUE(program("Dirty").Bool());
  EXPECT_TRUE(IsDestroyed(first));
  EXPECT_EQ(deleted, 1);
  EXPECT_EQ(program("Zonename", 0, 0, "unused").Text(), "stereo");
  // The object is deleted even if other zones play its record.
  const ROCParam second(Zone(0, 1));
  program("ZoneSampleSet", 0, 1);
  EXPECT_TRUE(IsDestroyed(second));
  EXPECT_EQ(deleted, 2);
  EXPECT_FALSE(program("ZoneSampleExists", 0, 1).Bool());
  EXPECT_EQ(program("ZoneSamplePath", 0, 1).Text() + program("Zonename", 0, 1).Text(), "");
  EXPECT_EQ(Uses(Zone(1, 1)), 3);
  // A zone can have a path without a sample.
  program("Dirty", false);
  EXPECT_EQ(program("ZoneSamplePath", 0, 2, "later.wav").Text(), "");
  EXPECT_EQ(program("ZoneSamplePath", 0, 2).Text(), "later.wav");
  EXPECT_FALSE(program("Dirty").Bool());
  program("ZoneSampleSet", 0, 3, Path("missing.wav"));
  EXPECT_FALSE(program("ZoneSampleExists", 0, 3).Bool());
  EXPECT_EQ(program("ZoneSamplePath", 0, 3).Text(), Path("missing.wav"));
  EXPECT_NE(diagnostics.find("missing.wav"), std::string::npos);
}

TEST_F(SampleObjects, OnlyPrepareDeleteNotifies) {
  Fill(0, 0, mono);
  RIOObject* sample = Zone(0, 0);
  program("Create", NullObject{});
  EXPECT_EQ(Uses(sample), 1) << "the object outlives its program record";
  Fill(0, 0, stereo);  // deletes it: no zone plays its record
  ListenForDeleting();
  for (const bool prepare : {true, false}) {
    const ROCParam object(Zone(0, 0));
    prepare ? void(program("PrepareDelete")) : program.Delete();
    EXPECT_TRUE(IsDestroyed(object));
  }
  EXPECT_EQ(deleted, 1);
}

TEST_F(SampleObjects, ObjectsWithoutARecordAreDropped) {
  for (const char* method : {"SampleGetSize", "SampleFileName"}) {
    Fill(0, 0, mono);
    const ROCParam dead(Zone(0, 0));
    RIOObject* object = dead.Object();
    EXPECT_EQ(program("SampleFileName", object).Text(), "mono.wav");
    std::exchange(RecordOf(object), nullptr)->deleteSample();
    EXPECT_EQ(program(method, object).Ok(), method == std::string("SampleFileName"));
    EXPECT_TRUE(IsDestroyed(dead));
  }
  Fill(1, 2, mono);
  EXPECT_EQ(program("SampleFileName", 1, 2, "unused").Text(), "mono.wav");
  EXPECT_EQ(program("SampleFileName").Text(), "");
}

TEST_F(SampleObjects, ReadingATemporarySampleAgainAddsAReference) {
  EXPECT_EQ(program("GetTempSample", mono).Object(), nullptr) << "it is not in memory";
  const ROCParam read(program("ReadTempSample", mono).Object());
  RIOObject* sample = read.Object();
  ASSERT_NE(sample, nullptr);
  EXPECT_EQ(program("ReadTempSample", mono, 0, false).Object(), sample);
  EXPECT_EQ(Uses(sample), 1);
  program("DeleteTempSample", sample);
  EXPECT_EQ(program("GetTempSample", mono).Object(), sample) << "one reference remains";
  program("DeleteTempSample", sample);
  EXPECT_TRUE(IsDestroyed(read));
  const ROCParam twice(program("ReadTempSample", mono).Object());
  program("ReadTempSample", mono);
  program("DeleteTempSample");
  EXPECT_TRUE(IsDestroyed(twice)) << "all are deleted regardless of their counts";
}

TEST_F(SampleObjects, TemporarySamplesAreFoundByChannelAndSharedWithPrograms) {
  Fill(0, 0, stereo);
  RIOObject* left = program("GetTempSample", stereo).Object();
  ASSERT_NE(left, nullptr) << "the program has it in memory";
  EXPECT_EQ(RecordOf(left), RecordOf(Zone(0, 0)));
  EXPECT_NE(left, Zone(0, 0));
  EXPECT_EQ(Uses(left), 3);
  RIOObject* right = program("GetTempSample", stereo, 1).Object();
  RIOObject* whole = program("GetTempSample", stereo, -1).Object();
  ASSERT_TRUE(right != nullptr && whole != nullptr);
  EXPECT_EQ(RecordOf(right)->channel, 1);
  EXPECT_EQ(RecordOf(whole)->channel, -1);
  EXPECT_EQ(RecordOf(right)->prevChannel, RecordOf(left)) << "one file is loaded once";
  EXPECT_EQ(Uses(right), 1);
  for (const int channel : {2, -2}) {
    EXPECT_EQ(program("ReadTempSample", stereo, channel).Object(), nullptr);
  }
  program("Samplekey", right, 300);
  EXPECT_EQ(program("Samplekey", left).Int(), 44) << "one file's records share their parameters";
  program("DeleteTempSample", left);
  EXPECT_EQ(Uses(Zone(0, 0)), 2);
  ListenForDeleting();
  program("DeleteTempSample");
  EXPECT_EQ(deleted, 0) << "temporary samples belong to no program";
  program("DeleteTempSample", Zone(0, 0));
  EXPECT_EQ(Uses(Zone(0, 0)), 2) << "a program's object is not a temporary sample";
}

TEST_F(SampleObjects, ACreatedTemporarySampleIsEmptyAndFoundByItsPath) {
  EXPECT_EQ(program("CreateTempSample", Path("new.txt")).Object(), nullptr);
  const ROCParam made(program("CreateTempSample", Path("new.wav")).Object());
  RIOObject* sample = made.Object();
  ASSERT_NE(sample, nullptr);
  EXPECT_EQ(program("CreateTempSample", Path("new.wav")).Object(), sample);
  EXPECT_EQ(program("SampleChannelCount", sample).Int(), 1);
  EXPECT_EQ(program("SampleGetSize", sample).Int(), 0);
  // The name follows the path until one is set.
  program("SampleFilePath", sample, Path("moved.wav"));
  EXPECT_EQ(program("SampleName", sample, "Kick").Text(), "moved");
  program("SampleFilePath", sample, Path("last.wav"));
  EXPECT_EQ(program("SampleName", sample).Text(), "Kick");
  program("DeleteTempSample", sample);
  EXPECT_TRUE(IsDestroyed(made)) << "creating it again added no reference";
}

TEST_F(SampleObjects, DeletingATemporarySampleUnlocksIt) {
  Fill(0, 0, mono);
  RIOObject* zone = Zone(0, 0);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(program("GetTempSample", mono, 0, true).Int(), 1);
  RIOObject* sample = program("GetTempSample", mono).Object();
  EXPECT_TRUE(program("SampleLock", zone).Bool());
  program("DeleteTempSample", sample);
  EXPECT_FALSE(program("SampleLock", zone).Bool());
  // With TempSample the script owns the lock.
  program("ReadTempSample", mono, 0, true);
  sample = program("GetTempSample", mono).Object();
  EXPECT_TRUE(program("SampleLock", sample, true, 0).Bool());
  program("DeleteTempSample", sample);
  EXPECT_EQ(program("SampleMemory", zone, true).Int(), 2 * 4 + 560);
  EXPECT_TRUE(program("SampleLock", zone, false).Bool());
  EXPECT_TRUE(program("SampleLock", 0, 0, false).Bool()) << "locks are counted";
  EXPECT_EQ(program("SampleMemory", zone, true).Int(), 0);
  EXPECT_FALSE(program("SampleLock", 1, 1, true).Bool()) << "an empty zone";
  EXPECT_FALSE(program("SampleLock", zone).Bool());
  // Without the lock, an integer identifies the record.
  const int32_t id = program("GetTempSample", mono, 0, false).Int();
  EXPECT_EQ(program("GetTempSample", mono, 0, false).Int(), id);
  program("ReadTempSample", stereo);
  EXPECT_NE(program("GetTempSample", stereo, 0, false).Int(), id);
  EXPECT_EQ(program("ReadTempSample", Path("no.wav"), 0, true).Int(), 0);
}

TEST_F(SampleObjects, ReloadingUpdatesZonesAndObjects) {
  Fill(0, 0, mono);
  const Program other;
  other("Create", program.Algo());
  RIOObject* sample = Zone(0, 0);
  RIOObject* temporary = program("ReadTempSample", mono).Object();
  program("Samplekey", sample, 1);
  genericSample* old = RecordOf(sample);
  WriteWave(mono, {{9, 8, 7, 6, 5, 4}}, 22050);
  EXPECT_EQ(program("SampleReload", mono).result, nullptr);
  EXPECT_NE(RecordOf(sample), old);
  EXPECT_EQ(Zone(0, 0), sample) << "the object has the zone's new record";
  EXPECT_EQ(program("SampleSampleRate", sample).Int(), 22050);
  EXPECT_EQ(program("Samplekey", sample).Int(), 60);
  EXPECT_EQ(Uses(sample), 3);
  EXPECT_EQ(other("SampleSampleRate", other("SampleGet", 0, 0).Object()).Int(), 22050);
  // Temporary samples keep the old sound, without its path.
  EXPECT_EQ(RecordOf(temporary), old);
  EXPECT_EQ(Uses(temporary), 1);
  EXPECT_EQ(program("SampleFilePath", temporary).Text(), "");
  // A file that cannot be read changes nothing, and a zone whose channel is missing keeps its
  // sound.
  Fill(1, 0, stereo);
  program("SampleChannel", 1, 0, 1);
  old = RecordOf(Zone(1, 0));
  std::filesystem::remove(stereo);
  program("SampleReload", stereo);
  WriteWave(stereo, {{5, 5}});
  program("SampleReload", stereo);
  EXPECT_EQ(RecordOf(Zone(1, 0)), old);
}

TEST_F(SampleObjects, PropertiesSetTheirDirtyFlags) {
  Fill(0, 0, stereo);
  RIOObject* sample = Zone(0, 0);
  const std::tuple<const char*, int32_t, int32_t> properties[] = {
      {"Samplekey", -70, 186},
      {"SampleholdLoopTuneOff", 200, -56},
      {"SampleSampleRate", 96000, 96000},
      {"Sampletune", -70000, -70000},
  };
  for (const auto& [method, given, stored] : properties) {
    SCOPED_TRACE(method);
    const int32_t before = program(method, sample).Int();
    for (const int32_t value : {before, given}) {
      program("SampleDirty", 0, 0, false);
      program("Dirty", false);
      EXPECT_EQ(program(method, sample, value).Int(), before);
      EXPECT_EQ(program("SampleDirty", 0, 0).Bool(), value != before);
      program("SampleDirty", 0, 0, false);
      EXPECT_EQ(program("Dirty").Bool(), value != before);
    }
    EXPECT_EQ(program(method, sample).Int(), stored);
  }
  program("Dirty", false);
  program("SampleName", sample, "Snare");
  EXPECT_EQ(program("Zonename", 0, 0).Text(), "Snare");
  EXPECT_FALSE(program("SampleDirty", 0, 0, false).Bool()) << "read after the store";
  EXPECT_FALSE(program("SampleDirty", 1, 1, true).Bool()) << "an empty zone";
  EXPECT_EQ(program("SampleFilePath", sample, Path("elsewhere.wav")).Text(), stereo);
  EXPECT_EQ(program("ZoneSamplePath", 0, 0).Text(), Path("elsewhere.wav"));
  EXPECT_FALSE(program("SampleDirty", 0, 0).Bool() || program("Dirty").Bool());
}

TEST_F(SampleObjects, RecalcTuneFollowsTheHostRate) {
  Fill(0, 0, mono);
  RIOObject* sample = Zone(0, 0);
  const auto host = static_cast<int32_t>(UnitAttribute::sampleRate);
  const std::array<int32_t, 3> cases[] = {
      {host, -3, -3 * 65536},
      {2 * host, 5, 3077 * 65536},
      {host / 2, 0, -3072 * 65536},
      {0, 7, 0},
      {2 * host, 0x7FFF8000, (3072 - 0x8000) * 65536},  // truncated to 16 bits
  };
  for (const auto& [rateHz, tune, expected] : cases) {
    program("SampleSampleRate", sample, rateHz);
    program("Sampletune", sample, tune);
    EXPECT_EQ(program("SampleRecalcTune", sample, 99).Int(), expected) << rateHz;
    EXPECT_EQ(program("Sampletune", sample).Int(), tune);
  }
}

// ---- Records of the library ----

TEST_F(SampleObjects, EditsCopyPinnedChannels) {
  RIOObject* object = program("ReadTempSample", stereo, 0).Object();
  genericSample* left = RecordOf(object);
  const auto pinned = left->Pin().channels;
  const std::byte* before = left->buffer;
  program("SampleValue", object, 0, 77);
  EXPECT_NE(left->buffer, before);
  EXPECT_EQ(RecordOf(program("ReadTempSample", stereo, -1).Object())->buffer, left->buffer);
  EXPECT_EQ(pinned[0].get()[0], std::byte{1});
  EXPECT_EQ(left->getChannelBuffer(1), pinned[1].get()) << "the other channel was not edited";
  before = left->buffer;
  program("SampleValue", object, 1, 78);
  EXPECT_EQ(left->buffer, before) << "the copy is not pinned";
}

// Deleting a locked program releases its locks.
TEST_F(SampleObjects, ALockedProgramLocksTheSamplesOfItsZones) {
  Fill(0, 0, stereo);
  const ProgramRecord record(program);
  for (int i = 0; i < 2; ++i) lockAkaiProgram(record.Get());
  const auto locks = [&] { return record->sampleTable[0]->lockValue; };
  genericSample* first = RecordOf(program("ReadTempSample", stereo).Object());
  EXPECT_EQ(locks(), 1);
  program("ZoneSampleSet", 0, 0, mono);
  EXPECT_EQ(first->lockValue, 0);
  EXPECT_EQ(locks(), 1);
  EXPECT_TRUE(program("KGCreate", 0, program.Algo(), 0).Ok());
  EXPECT_EQ(locks(), 2);
  program("KGDelete", 1);
  EXPECT_EQ(locks(), 1);
  program("SampleReload", mono);
  EXPECT_EQ(locks(), 1);
  EXPECT_GT(record->getTotalLockedMem(true), 2 * 4);
  for (const uint32_t left : {1u, 0u}) {
    unlockAkaiProgram(record.Get());
    EXPECT_EQ(locks(), left);
  }
  lockAkaiProgram(record.Get());
}

TEST_F(SampleObjects, OnlyAWholeWriteToItsPathCleansASample) {
  genericSample* whole = RecordOf(program("ReadTempSample", stereo, -1).Object());
  const std::tuple<std::string, int, bool, bool> rows[] = {
      {stereo, 0, true, false},
      {Path("copy.wav"), 0, true, true},
      {Path("./stereo.wav"), 0, true, false},  // the same file
      {stereo, 2, true, true},                 // not the whole sample
      {Path("no/such/folder/x.wav"), 0, false, true}};
  for (const auto& [target, mask, stored, dirty] : rows) {
    whole->shared().dirty = true;
    EXPECT_EQ(writeSample(whole, target.c_str(), mask), stored) << target;
    EXPECT_EQ(whole->shared().dirty, dirty) << target << mask;
  }
}

}  // namespace
}  // namespace zyl::test
