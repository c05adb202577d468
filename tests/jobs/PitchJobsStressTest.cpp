// Everything that may happen to samples, programs and the module while pitch jobs run, in an order
// and at moments that a fixed seed gives. Built with a sanitizer, this is where it would speak.
#include <chrono>
#include <climits>
#include <random>
#include <thread>

#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

class PitchJobsStress : public ModuleTest, private ROCPadListener {
 protected:
  static constexpr int kPrograms = 3;
  static constexpr int kKeygroups = 2;

  void SetUp() override {
    ModuleTest::SetUp();
    // From a sound without a single window to one that takes some milliseconds.
    const int frames[] = {1000, 5000, 12000, 30000, 60000};
    for (int i = 0; i < 5; ++i) {
      std::vector<std::vector<int16_t>> channels(i % 2 == 0 ? 1 : 2);
      for (auto& channel : channels) {
        for (int j = 0; j < frames[i]; ++j)
          channel.push_back(static_cast<int16_t>(random_() >> 17));
      }
      paths_.push_back(Path("sound" + std::to_string(i) + ".wav"));
      WriteWave(paths_.back(), channels);
    }
    watcher_.AddPad("progressUpdate", newROCParam(0))->SetListener(this);
    watcher_.AddPad("pitchDataFinished", newROCParam(""))->SetListener(this);
    watcher_["OnDeletingSmpl"] = [this](ROCParams&, ROCParam**) { Interfere(); };
  }
  void TearDown() override {
    End();
    ModuleTest::TearDown();
  }

  int Any(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
  const Program& AnyProgram() { return *programs_[static_cast<size_t>(Any(kPrograms))]; }
  const std::string& AnyPath() { return paths_[static_cast<size_t>(Any(5))]; }

  void OnSend(ROCPad&, const ROCParam&) override { Interfere(); }
  void OnUpdate(ROCPad&, const ROCParam&) override { Interfere(); }
  // What is told of discards samples now and then, also the one that it is told of.
  void Interfere() {
    if (interfering_ || Any(3) != 0) return;
    interfering_ = true;
    for (const auto& program : programs_) {
      if (program == nullptr) continue;
      if (Any(2) == 0) (*program)("ZoneSampleSet", Any(kKeygroups), Any(4));
      if (Any(8) == 0) (*program)("PrepareDelete");
    }
    if (Any(4) == 0 && programs_[0] != nullptr) (*programs_[0])("DeleteTempSample");
    interfering_ = false;
  }

  void Renew(size_t i) {
    programs_[i].reset();
    programs_[i] = std::make_unique<Program>();
    const Program& program = *programs_[i];
    program.Make(kKeygroups);
    if (Any(2) == 0) program("Register", static_cast<RIOObject*>(&watcher_));
    if (Any(2) == 0) {
      program("PitchDataProgressCB", static_cast<RIOObject*>(&watcher_));
      program("PitchDataProgressCBFinish", static_cast<RIOObject*>(&watcher_));
    }
    for (int z = 0; z < 6; ++z) program("ZoneSampleSet", z / 4, z % 4, AnyPath());
  }
  void Begin() {
    for (size_t i = 0; i < kPrograms; ++i) Renew(i);
  }
  // Programs go one by one; temporary samples, and their jobs, are left to the unloading module.
  void End() {
    for (auto& program : programs_) program.reset();
  }

  RIOObject* AnySample(const Program& program) {
    if (Any(3) == 0) return program("ReadTempSample", AnyPath(), Any(2) - 1).Object();
    return program("SampleGet", Any(kKeygroups), Any(4)).Object();
  }
  void Start(const Program& program) {
    switch (Any(3)) {
      case 0:
        program("CalcSamplePitch", AnySample(program), 2000, 50, Any(3), 10);
        break;
      case 1:
        program("CalcKeygroupPitch", Any(kKeygroups));
        break;
      default:
        program("CalcProgramPitch", 2000, 50, 0, Any(2) == 0 ? 10 : INT_MAX);
    }
  }
  void Read(const Program& program) {
    ROCParam handle(0);
    RIOObject* sample = AnySample(program);
    if (sample == nullptr) return;
    const int count = program("SampleGetPitchData", sample, &handle).Int();
    std::string bytes;
    std::string reason;
    qxBufferBytes(static_cast<uint32_t>(handle.Int()), static_cast<size_t>(count) * 4, bytes,
                  reason);
  }
  void Edit(const Program& program) {
    RIOObject* sample = AnySample(program);
    if (sample == nullptr) return;
    switch (Any(5)) {
      case 0:
        program("SampleSetValues", sample, 0, 100000, Any(1000));
        break;
      case 1:
        program("SampleReverseValues", sample, 10, 4000);
        break;
      case 2:
        program("SampleSize", sample, Any(20000));
        break;
      case 3:
        program("SampleBits", sample, 8 + 8 * Any(4));
        break;
      default:
        program("SampleName", sample, "renamed");
    }
  }
  void Query(const Program& program) {
    EXPECT_GE(program("PitchDataProgressRatio").Int(), 0);
    EXPECT_GE(program("PitchDataTimeLeft").Int(), 0);
    const std::shared_ptr<ROCParam> names(ROCParam::NewArray(0), deleteROCParam);
    const int count = program("PitchDataCalcSamples", names.get()).Int();
    EXPECT_EQ(count, names->ElementCount());
  }
  void Clear(const Program& program) {
    if (Any(2) == 0) {
      program("ClearProgramPitch");
    } else if (RIOObject* sample = AnySample(program)) {
      program("ClearSamplePitch", sample);
    }
  }
  void Discard(const Program& program) {
    switch (Any(3)) {
      case 0:
        program("ZoneSampleSet", Any(kKeygroups), Any(4));
        break;
      case 1:
        program("ZoneSampleSet", Any(kKeygroups), Any(4), AnyPath());
        break;
      default:
        program("DeleteTempSample");
    }
  }
  void Round() {
    const Program& program = AnyProgram();
    switch (Any(12)) {
      case 0:
        program("PitchDataCalcCancel");
        break;
      case 1:
        Renew(static_cast<size_t>(Any(kPrograms)));
        break;
      case 2:
        program("SampleReload", AnyPath());
        break;
      case 3:
        Query(program);
        break;
      case 4:
        ZylPump(0);
        break;
      case 5:
        Read(program);
        break;
      case 6:
        Clear(program);
        break;
      case 7:
      case 8:
        Edit(program);
        break;
      default:
        Discard(program);
    }
  }
  void Pause() {
    if (Any(2) == 0) std::this_thread::sleep_for(std::chrono::microseconds(Any(1500)));
  }

  std::mt19937 random_{20};
  std::vector<std::string> paths_;
  std::unique_ptr<Program> programs_[kPrograms];
  Listener watcher_;
  bool interfering_ = false;
};

TEST_F(PitchJobsStress, AThousandRoundsOfEverything) {
  int unloads = 0;
  int running = 0;
  Begin();
  for (int round = 0; round < 1000; ++round) {
    Start(AnyProgram());
    Pause();
    Round();
    Pause();
    if (Any(7) != 0) continue;
    running += AnyProgram()("PitchDataCalculating").Int() > 0 ? 1 : 0;
    End();
    LoadModule();
    ++unloads;
    if (Any(2) == 0) ZylPump(0);
    for (const std::string& path : paths_) {
      for (const int channel : {-1, 0, 1}) {
        ASSERT_EQ(findSampleFN(path.c_str(), 0, channel), nullptr) << path << " in " << round;
      }
    }
    Begin();
  }
  EXPECT_GE(unloads, 100);
  EXPECT_GE(running, 50) << "how often jobs were there at unload";
  // After all that, a job still does what it is there for.
  End();
  LoadModule();
  Begin();
  RIOObject* sample = programs_[0]->operator()("ReadTempSample", paths_[2], 0).Object();
  EXPECT_TRUE((*programs_[0])("CalcSamplePitch", sample).Bool());
  for (int i = 0; i < 60000 && (*programs_[0])("PitchDataCalculating").Int() > 0; ++i) {
    (*programs_[0])("PitchDataProgressRatio");
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ROCParam handle(0);
  EXPECT_EQ((*programs_[0])("SampleGetPitchData", sample, &handle).Int(), 12000 / 128 + 1);
}

}  // namespace
}  // namespace zyl::test
