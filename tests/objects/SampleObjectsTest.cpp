// Sample objects as scripts see them: who holds them and their records, how methods take them, and
// the simple properties of a sample.
#include "sample/CSample.h"

#include <array>

#include "support/ProgramRecord.h"
#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

// Removes the record of an object. The module does not export type information, so vptr checks are
// off.
__attribute__((no_sanitize("vptr"))) void TakeRecord(RIOObject* object) {
  auto* sample = reinterpret_cast<CSample*>(object);
  sample->sample->deleteSample();
  sample->sample = nullptr;
}
__attribute__((no_sanitize("vptr"))) genericSample* RecordOf(RIOObject* object) {
  return reinterpret_cast<CSample*>(object)->sample;
}
__attribute__((no_sanitize("vptr"))) int32_t References(RIOObject* object) {
  return reinterpret_cast<CSample*>(object)->refCount;
}

// Detects the deletion of an object.
class Watch {
 public:
  explicit Watch(RIOObject* object) : value_(object) {}
  bool Gone() const { return value_.Object() == nullptr; }

 private:
  ROCParam value_;
};

class SampleObjects : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    mono = Path("mono.wav");
    stereo = Path("stereo.wav");
    WriteWave(mono, {{1, 2, 3, 4}}, 44100);
    WriteWave(stereo, {{1, 2, 3}, {-1, -2, -3}}, 48000);
    program.Make(2);
  }
  void TearDown() override {
    Program()("DeleteTempSample");
    program.Delete();
    for (const std::string& path : {mono, stereo}) {
      EXPECT_EQ(findSampleFN(path.c_str(), 0, -1), nullptr) << "a use was not given back";
    }
    ModuleTest::TearDown();
  }
  RIOObject* Zone(int keygroup, int zone) const {
    return program("SampleGet", keygroup, zone).Object();
  }
  int32_t Uses(RIOObject* sample) const { return program("SampleGetRefCount", sample).Int(); }
  void Fill(int keygroup, int zone, const std::string& path) const {
    EXPECT_TRUE(program("ZoneSampleSet", keygroup, zone, path).Ok());
    EXPECT_TRUE(program("ZoneSampleExists", keygroup, zone).Bool());
  }
  // Counts notifications of samples about to be deleted; `during` runs inside each.
  void ListenForDeleting(std::function<void(RIOObject*)> during = {}) {
    program("Register", static_cast<RIOObject*>(&listener));
    listener["OnDeletingSmpl"] = [this, during](ROCParams& arguments, ROCParam**) {
      ASSERT_EQ(arguments.count, 2);
      EXPECT_EQ(arguments.Entry(0)->Object(), program.Algo());
      RIOObject* sample = arguments.Entry(1)->Object();
      ASSERT_TRUE(sample != nullptr && sample->isCSample());
      ++told;
      if (during) during(sample);
    };
  }

  std::string mono;
  std::string stereo;
  Listener listener;
  Program program;
  int told = 0;
};

// ---- Objects of a program ----

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
  EXPECT_EQ(program("SampleGetByName", "mono.wav").Object(), sample);
  EXPECT_EQ(program("SampleGetByName", mono).Object(), sample);
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
  const Watch first(Zone(0, 0));
  ListenForDeleting([&](RIOObject* sample) {
    EXPECT_EQ(program("SampleFileName", sample).Text(), told == 1 ? "mono.wav" : "stereo.wav")
        << "the object is whole while it is told of";
  });
  program("Dirty", false);
  Fill(0, 0, stereo);
  EXPECT_TRUE(program("Dirty").Bool());
  EXPECT_TRUE(first.Gone());
  EXPECT_EQ(told, 1);
  EXPECT_EQ(program("Zonename", 0, 0, "unused").Text(), "stereo");
  // The object of a record that other zones still play goes too, and is made anew when asked for.
  const Watch second(Zone(0, 1));
  program("ZoneSampleSet", 0, 1);
  EXPECT_TRUE(second.Gone());
  EXPECT_EQ(told, 2);
  EXPECT_FALSE(program("ZoneSampleExists", 0, 1).Bool());
  EXPECT_EQ(program("ZoneSamplePath", 0, 1).Text() + program("Zonename", 0, 1).Text(), "");
  EXPECT_EQ(Uses(Zone(1, 1)), 3);
}

TEST_F(SampleObjects, AZoneKeepsAPathWithoutAFile) {
  EXPECT_EQ(program("ZoneSamplePath", 0, 2, "later.wav").Text(), "");
  EXPECT_EQ(program("ZoneSamplePath", 0, 2).Text(), "later.wav");
  EXPECT_FALSE(program("Dirty").Bool());
  EXPECT_EQ(program("ZoneSampleSet", 0, 3, Path("missing.wav")).result, nullptr);
  EXPECT_FALSE(program("ZoneSampleExists", 0, 3).Bool());
  EXPECT_EQ(program("ZoneSamplePath", 0, 3).Text(), Path("missing.wav"));
  EXPECT_NE(diagnostics.find("missing.wav"), std::string::npos);
}

TEST_F(SampleObjects, NotifiedScriptsMayChangeTheProgram) {
  Fill(0, 0, mono);
  Fill(1, 0, stereo);
  Zone(0, 0);
  Zone(1, 0);
  // It asks for its sample again, replaces the zone that is being replaced, drops a keygroup.
  ListenForDeleting([&](RIOObject*) {
    if (told > 1) return;
    program("SampleGet", 0, 0);
    program("ZoneSampleSet", 0, 0, stereo);
    program("KGDelete", 1);
  });
  program("ZoneSampleSet", 0, 0, mono);
  EXPECT_EQ(program("Zonename", 0, 0).Text(), "mono");
  listener["OnDeletingSmpl"] = [&](ROCParams&, ROCParam**) {
    if (++told < 100) program("SampleGet", 0, 0);
  };
  told = 0;
  program("SampleGet", 0, 0);
  program("PrepareDelete");
  EXPECT_LT(told, 10) << "objects that are made meanwhile wait for the next end";
}

TEST_F(SampleObjects, OnlyPrepareDeleteNotifies) {
  Fill(0, 0, mono);
  RIOObject* sample = Zone(0, 0);
  program("Create", NullObject{});
  EXPECT_EQ(Uses(sample), 1) << "the object outlives the program that it was handed out for";
  Fill(0, 0, stereo);
  ListenForDeleting();
  const Watch prepared(Zone(0, 0));
  program("PrepareDelete");
  EXPECT_TRUE(prepared.Gone());
  EXPECT_EQ(told, 1);
  const Watch last(Zone(0, 0));
  program.Delete();
  EXPECT_TRUE(last.Gone());
  EXPECT_EQ(told, 1);
}

// ---- The sample argument ----

TEST_F(SampleObjects, ObjectsWithoutARecordAreDropped) {
  for (const char* method : {"SampleGetSize", "SampleLock", "SampleChannel", "SampleGetBuffer"}) {
    SCOPED_TRACE(method);
    Fill(0, 0, mono);
    RIOObject* dead = Zone(0, 0);
    TakeRecord(dead);
    const Watch watch(dead);
    ExpectArgValue(program(method, dead), "Sample", 1);
    EXPECT_TRUE(watch.Gone());
  }
  Fill(1, 2, mono);
  RIOObject* sample = Zone(1, 2);
  EXPECT_EQ(program("SampleFileName", sample).Text(), "mono.wav");
  EXPECT_EQ(program("SampleFileName", 1, 2, "unused").Text(), "mono.wav");
  EXPECT_EQ(program("SampleFileName").Text(), "");
  const Watch watch(sample);
  TakeRecord(sample);
  EXPECT_EQ(program("SampleFileName", sample).Text(), "");
  EXPECT_TRUE(watch.Gone());
}

// ---- Temporary samples ----

TEST_F(SampleObjects, ReadingATemporarySampleAgainAddsAReference) {
  EXPECT_EQ(program("GetTempSample", mono).Object(), nullptr) << "it is not in memory";
  RIOObject* sample = program("ReadTempSample", mono).Object();
  ASSERT_NE(sample, nullptr);
  EXPECT_EQ(program("ReadTempSample", mono, 0, false).Object(), sample);
  EXPECT_EQ(References(sample), 2);
  EXPECT_EQ(Uses(sample), 1);
  const Watch watch(sample);
  EXPECT_EQ(program("DeleteTempSample", sample).result, nullptr);
  EXPECT_EQ(program("GetTempSample", mono).Object(), sample) << "one reader has it still";
  program("DeleteTempSample", sample);
  EXPECT_TRUE(watch.Gone());
  program("ReadTempSample", mono);
  const Watch twice(program("ReadTempSample", mono).Object());
  program("DeleteTempSample");
  EXPECT_TRUE(twice.Gone()) << "all go, whatever their counts";
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
  EXPECT_EQ(told, 0) << "temporary samples belong to no program";
  program("DeleteTempSample", Zone(0, 0));
  EXPECT_EQ(Uses(Zone(0, 0)), 2) << "a program's object is no temporary one";
}

TEST_F(SampleObjects, ACreatedTemporarySampleIsEmptyAndFoundByItsPath) {
  EXPECT_EQ(program("CreateTempSample", Path("new.txt")).Object(), nullptr);
  RIOObject* made = program("CreateTempSample", Path("new.wav")).Object();
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(program("CreateTempSample", Path("new.wav")).Object(), made);
  EXPECT_EQ(References(made), 1);
  EXPECT_EQ(RecordOf(made)->getChannelCount(), 1);
  EXPECT_EQ(RecordOf(made)->shared().frameCount, 0);
  EXPECT_EQ(program("SampleName", made).Text(), "new");
  // A name that was given stays when the path changes.
  program("SampleFilePath", made, Path("moved.wav"));
  EXPECT_EQ(program("SampleName", made, "Kick").Text(), "moved");
  EXPECT_EQ(program("SampleFilePath", made, Path("last.wav")).Text(), Path("moved.wav"));
  EXPECT_EQ(program("SampleName", made).Text(), "Kick");
}

TEST_F(SampleObjects, DeletingATemporarySampleUnlocksIt) {
  Fill(0, 0, mono);
  RIOObject* zone = Zone(0, 0);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(program("GetTempSample", mono, 0, true).Int(), 1);
  RIOObject* sample = program("GetTempSample", mono).Object();
  EXPECT_TRUE(program("SampleLock", zone).Bool());
  program("DeleteTempSample", sample);
  EXPECT_FALSE(program("SampleLock", zone).Bool());
  // With "TempSample" the lock is the caller's own from then on.
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
  // Without the lock, an integer names the record.
  const int32_t id = program("GetTempSample", mono, 0, false).Int();
  EXPECT_NE(id, 0);
  EXPECT_EQ(program("GetTempSample", mono, 0, false).Int(), id);
  program("ReadTempSample", stereo);
  EXPECT_NE(program("GetTempSample", stereo, 0, false).Int(), id);
  std::string bytes;
  std::string reason;
  EXPECT_FALSE(qxBufferBytes(static_cast<uint32_t>(id), 1, bytes, reason)) << "it is no buffer";
  EXPECT_EQ(program("ReadTempSample", Path("no.wav"), 0, true).Int(), 0);
}

// ---- Locks, reading anew, properties ----

TEST_F(SampleObjects, ReloadingReachesZonesAndObjects) {
  Fill(0, 0, mono);
  Fill(1, 0, stereo);
  const Program other;
  other("Create", program.Algo());
  RIOObject* sample = Zone(0, 0);
  const Watch watch(sample);
  RIOObject* temporary = program("ReadTempSample", mono).Object();
  program("Samplekey", sample, 1);
  genericSample* old = RecordOf(sample);
  WriteWave(mono, {{9, 8, 7, 6, 5, 4}}, 22050);
  EXPECT_EQ(program("SampleReload", mono).result, nullptr);
  EXPECT_FALSE(watch.Gone());
  EXPECT_NE(RecordOf(sample), old);
  EXPECT_EQ(Zone(0, 0), sample) << "the object has the zone's new record";
  EXPECT_EQ(program("SampleSampleRate", sample).Int(), 22050);
  EXPECT_EQ(program("Samplekey", sample).Int(), 60);
  EXPECT_EQ(Uses(sample), 3);
  EXPECT_EQ(other("SampleSampleRate", other("SampleGet", 0, 0).Object()).Int(), 22050);
  // Temporary samples keep the old sound, which has no path any more.
  EXPECT_EQ(RecordOf(temporary), old);
  EXPECT_EQ(Uses(temporary), 1);
  EXPECT_EQ(program("SampleFilePath", temporary).Text(), "");
  // A file that cannot be read changes nothing.
  std::filesystem::remove(stereo);
  RIOObject* kept = Zone(1, 0);
  old = RecordOf(kept);
  program("SampleReload", stereo);
  EXPECT_EQ(RecordOf(kept), old);
  // A zone whose channel is gone keeps its sound.
  const std::string third = Path("third.wav");
  WriteWave(third, {{1}, {2}});
  Fill(0, 0, third);
  program("SampleChannel", 0, 0, 1);
  WriteWave(third, {{5, 5}});
  program("SampleReload", third);
  EXPECT_TRUE(program("ZoneSampleExists", 0, 0).Bool());
}

TEST_F(SampleObjects, PropertiesSetTheirDirtyMarks) {
  Fill(0, 0, stereo);
  RIOObject* sample = Zone(0, 0);
  struct {
    const char* method;
    int32_t given;
    int32_t stored;
  } const properties[] = {
      {"Samplekey", -70, 186},
      {"SampleholdLoopTuneOff", 200, -56},
      {"SampleSampleRate", 96000, 96000},
      {"Sampletune", -70000, -70000},
  };
  for (const auto& property : properties) {
    SCOPED_TRACE(property.method);
    const int32_t before = program(property.method, sample).Int();
    program("SampleDirty", 0, 0, false);
    program("Dirty", false);
    EXPECT_EQ(program(property.method, sample, before).Int(), before);
    EXPECT_FALSE(program("SampleDirty", 0, 0).Bool());
    EXPECT_EQ(program(property.method, sample, property.given).Int(), before);
    EXPECT_TRUE(program("SampleDirty", 0, 0).Bool());
    EXPECT_TRUE(program("Dirty", false).Bool());
    EXPECT_EQ(program(property.method, sample).Int(), property.stored);
  }
  program("SampleName", sample, "Snare");
  EXPECT_EQ(program("Zonename", 0, 0).Text(), "Snare");
  EXPECT_FALSE(program("SampleDirty", 0, 0, false).Bool()) << "read after the store";
  EXPECT_FALSE(program("SampleDirty", 1, 1, true).Bool()) << "an empty zone";
  EXPECT_FALSE(program("Dirty", false).Bool());
  EXPECT_EQ(program("SampleFilePath", sample, Path("elsewhere.wav")).Text(), stereo);
  EXPECT_EQ(program("ZoneSamplePath", 0, 0).Text(), Path("elsewhere.wav"));
  EXPECT_FALSE(program("SampleDirty", 0, 0).Bool());
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
      {2 * host, 0x7FFF8000, (3072 - 0x8000) * 65536},  // only the low 16 bits are left
  };
  for (const auto& [rateHz, tune, expected] : cases) {
    program("SampleSampleRate", sample, rateHz);
    program("Sampletune", sample, tune);
    EXPECT_EQ(program("SampleRecalcTune", sample, 99).Int(), expected) << rateHz;
    EXPECT_EQ(program("Sampletune", sample).Int(), tune);
  }
}

}  // namespace
}  // namespace zyl::test
